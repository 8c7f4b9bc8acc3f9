#include "bench/program.h"

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>

#include "com/error.h"
#include "com/strings.h"

namespace vtdn::bench {
namespace {

std::wstring besideThisProgram(const wchar_t* file) {
    wchar_t path[MAX_PATH];
    const std::wstring program(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\') + 1) + file;
}

}  // namespace

int runBench(const Measure& measure) {
    CoInitialize(nullptr);
    int status = 1;
    try {
        print(measure(besideThisProgram(L"VTWrapDN.dll"), besideThisProgram(L"VTEngine.dll")));
        status = 0;
    } catch (const com::Error& error) {
        std::fprintf(stderr, "%ld, %s\n", error.number(), com::toUtf8(error.description()).c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    CoUninitialize();
    return status;
}

}  // namespace vtdn::bench

// Measures the figures that the component is held to and prints them as one JSON object; what is behind each
// goes to the standard error. Works in the current folder, which must be empty, on the libraries beside this
// program.

#include <windows.h>

#include <cstdio>
#include <exception>
#include <string>

#include "bench/calls.h"
#include "bench/year.h"
#include "com/error.h"
#include "com/strings.h"

namespace {

std::wstring besideThisProgram(const wchar_t* file) {
    wchar_t path[MAX_PATH];
    const std::wstring program(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\') + 1) + file;
}

}  // namespace

int main() {
    using namespace vtdn;
    CoInitialize(nullptr);
    int status = 1;
    try {
        const std::wstring component = besideThisProgram(L"VTWrapDN.dll");
        std::vector<bench::Figure> figures = bench::measureCalls(component);
        for (bench::Figure& figure : bench::measureYear(component, besideThisProgram(L"VTEngine.dll"), "."))
            figures.push_back(std::move(figure));
        bench::print(figures);
        status = 0;
    } catch (const com::Error& error) {
        std::fprintf(stderr, "%ld, %s\n", error.number(), com::toUtf8(error.description()).c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    CoUninitialize();
    return status;
}

// Main of the component's test programs: one single-threaded apartment, and no cache of freed strings, so
// that the allocation spy sees each string end.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "support/component.h"

namespace {

std::unique_ptr<vtdn::test::Component> loaded;

/// Runs this program again with OANOCACHE set: the platform reads it when it loads.
int runWithoutStringCache() {
    SetEnvironmentVariableW(L"OANOCACHE", L"1");
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, GetCommandLineW(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process)) {
        std::fprintf(stderr, "cannot start the program again: error %lu\n", GetLastError());
        return 2;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 2;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return static_cast<int>(code);
}

}  // namespace

namespace vtdn::test {

std::wstring componentPath() {
    return besideProgram(VTDN_COMPONENT);
}

Component& component() {
    if (!loaded) loaded = std::make_unique<Component>(componentPath());
    return *loaded;
}

}  // namespace vtdn::test

int main(int argc, char** argv) {
    if (GetEnvironmentVariableW(L"OANOCACHE", nullptr, 0) == 0) return runWithoutStringCache();
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int result = RUN_ALL_TESTS();
    loaded.reset();
    CoUninitialize();
    return result;
}

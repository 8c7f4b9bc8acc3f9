// The platform's cache of freed strings, which hides from the allocation spy when a string ends.
#pragma once

#include <windows.h>

#include <cstdio>
#include <optional>

namespace vtdn::test {

/// When the cache is on, runs this program again without it (the platform reads OANOCACHE when it loads) and
/// returns the exit code of that run.
inline std::optional<int> runWithoutStringCache() {
    if (GetEnvironmentVariableW(L"OANOCACHE", nullptr, 0) != 0) return std::nullopt;
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

}  // namespace vtdn::test

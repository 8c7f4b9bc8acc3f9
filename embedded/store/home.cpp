#include "store/home.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cstdlib>
#endif

#include <filesystem>

#include "store/database.h"
#include "store/error.h"

namespace vtdn::store {
namespace {

// Empty when the variable is not set.
#ifdef _WIN32
std::filesystem::path folderIn(const wchar_t* variable) {
    // Not the C library's copy of the environment: a program may have changed the real one since it began.
    std::wstring value;
    DWORD needed = GetEnvironmentVariableW(variable, nullptr, 0);
    while (needed > value.size()) {
        value.resize(needed);
        needed = GetEnvironmentVariableW(variable, value.data(), needed);
    }
    value.resize(needed);
    return value;
}
#define VTDN_VARIABLE(name) L##name
#else
std::filesystem::path folderIn(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}
#define VTDN_VARIABLE(name) name
#endif

}  // namespace

std::string homeFolder() {
    if (const auto home = folderIn(VTDN_VARIABLE("VANTOR_HOME")); !home.empty()) return utf8Of(home);
    if (const auto shared = folderIn(VTDN_VARIABLE("ProgramData")); !shared.empty())
        return utf8Of(shared / "Vantor");
    throw Error(
        ErrorKind::databaseMissing,
        "There is no folder to look for the DAHS directory in. Set the environment variable VANTOR_HOME to "
        "the folder that holds directory.db.");
}

}  // namespace vtdn::store

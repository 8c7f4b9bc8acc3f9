// What is registered for a class, and what kind of file that is.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace vtdn::client {

/// Bitness of this program: 32 or 64.
inline constexpr int ownBits = sizeof(void*) == 8 ? 64 : 32;

/// The library that is registered for a class among the programs of a bitness; nothing when there is none.
std::optional<std::wstring> registeredServer(const CLSID& classId, int bits);

/// The class that a ProgID stands for, as it is written in the registry.
std::optional<CLSID> classOfProgId(const wchar_t* progId);

struct ModuleFile {
    bool exists = false;
    int bits = 0;         ///< 32 or 64; 0 when it is no program file of a known kind
    std::string version;  ///< "1.0.0.0"; empty when the file has no version resource
    std::string product;  ///< file description of the version resource
};

ModuleFile inspectModule(const std::wstring& file);

}  // namespace vtdn::client

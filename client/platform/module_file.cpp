#include "client/platform/module_file.h"

#include <objbase.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "com/strings.h"

namespace vtdn::client {

namespace {

std::optional<std::wstring> registryText(const std::wstring& key, REGSAM view) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS)
        return std::nullopt;
    std::array<wchar_t, 1024> text{};
    DWORD size = sizeof text;
    const LSTATUS status = RegGetValueW(handle, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size);
    RegCloseKey(handle);
    if (status != ERROR_SUCCESS) return std::nullopt;
    return std::wstring(text.data());
}

/// Bitness by the header of a program file.
int bitsOf(const std::wstring& file) {
    std::ifstream stream(std::filesystem::path(file), std::ios::binary);
    std::uint32_t header = 0;
    std::uint32_t signature = 0;
    std::uint16_t machine = 0;
    constexpr std::streamoff headerPlace = 0x3C;
    stream.seekg(headerPlace);
    stream.read(reinterpret_cast<char*>(&header), sizeof header);
    stream.seekg(header);
    stream.read(reinterpret_cast<char*>(&signature), sizeof signature);
    stream.read(reinterpret_cast<char*>(&machine), sizeof machine);
    if (!stream || signature != IMAGE_NT_SIGNATURE) return 0;
    if (machine == IMAGE_FILE_MACHINE_I386) return 32;
    return machine == IMAGE_FILE_MACHINE_AMD64 ? 64 : 0;
}

void readVersion(const std::wstring& file, ModuleFile& module) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
    if (size == 0) return;
    std::vector<std::byte> block(size);
    if (!GetFileVersionInfoW(file.c_str(), 0, size, block.data())) return;
    void* found = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.data(), L"\\", &found, &length) && length >= sizeof(VS_FIXEDFILEINFO)) {
        VS_FIXEDFILEINFO info;
        std::memcpy(&info, found, sizeof info);
        for (const DWORD part : {info.dwFileVersionMS >> 16, info.dwFileVersionMS & 0xFFFF,
                                 info.dwFileVersionLS >> 16, info.dwFileVersionLS & 0xFFFF})
            module.version += (module.version.empty() ? "" : ".") + std::to_string(part);
    }
    struct Translation {
        WORD language;
        WORD codePage;
    } translation{};
    if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &found, &length) ||
        length < sizeof translation)
        return;
    std::memcpy(&translation, found, sizeof translation);
    wchar_t path[64];
    swprintf(path, std::size(path), L"\\StringFileInfo\\%04x%04x\\FileDescription",
             static_cast<unsigned>(translation.language), static_cast<unsigned>(translation.codePage));
    if (VerQueryValueW(block.data(), path, &found, &length) && length > 1)
        module.product = com::toUtf8({static_cast<const wchar_t*>(found), length - 1});
}

}  // namespace

std::optional<std::wstring> registeredServer(const CLSID& classId, int bits) {
    wchar_t text[40];
    if (StringFromGUID2(classId, text, static_cast<int>(std::size(text))) == 0) return std::nullopt;
    return registryText(L"CLSID\\" + std::wstring(text) + L"\\InprocServer32",
                        bits == 64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY);
}

std::optional<CLSID> classOfProgId(const wchar_t* progId) {
    CLSID classId;
    if (FAILED(CLSIDFromProgID(progId, &classId))) return std::nullopt;
    return classId;
}

ModuleFile inspectModule(const std::wstring& file) {
    ModuleFile module;
    std::error_code ignored;
    module.exists = std::filesystem::exists(std::filesystem::path(file), ignored);
    if (!module.exists) return module;
    module.bits = bitsOf(file);
    readVersion(file, module);
    return module;
}

}  // namespace vtdn::client

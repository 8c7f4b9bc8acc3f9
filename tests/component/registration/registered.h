// What the tests of a registered component share: the registry's keys, and clients in other apartments.
#pragma once

#include <VTDI.h>
#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <string>

#include "com/ptr.h"
#include "fake_engine/lenient.h"
#include "support/client.h"
#include "support/other_apartment.h"

namespace vtdn::test {

inline std::wstring textOf(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

inline const std::wstring classKey = L"CLSID\\" + textOf(CLSID_DIWrapper);
inline const std::wstring interfaceKey = L"Interface\\" + textOf(__uuidof(_DIWrapper));
inline const std::wstring dataPointKey = L"Interface\\" + textOf(__uuidof(_DataPointBasicWrapper));
inline const std::wstring occurrenceKey = L"Interface\\" + textOf(__uuidof(_OccurrenceDataWrapper));
inline const std::wstring libraryKey = L"TypeLib\\" + textOf(LIBID_VTWrapperDN);

/// A value below Software\Classes; "(none)" when there is none.
inline std::wstring value(HKEY root, const std::wstring& path, const wchar_t* name = nullptr) {
    wchar_t text[1024];
    DWORD bytes = sizeof text;
    const LSTATUS status = RegGetValueW(root, (L"Software\\Classes\\" + path).c_str(), name, RRF_RT_REG_SZ,
                                        nullptr, text, &bytes);
    return status == ERROR_SUCCESS ? text : L"(none)";
}

inline bool exists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, (L"Software\\Classes\\" + path).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

inline void expectNothing(HKEY root) {
    EXPECT_FALSE(exists(root, classKey));
    EXPECT_FALSE(exists(root, interfaceKey));
    EXPECT_FALSE(exists(root, dataPointKey));
    EXPECT_FALSE(exists(root, occurrenceKey));
    EXPECT_FALSE(exists(root, libraryKey));
    EXPECT_FALSE(exists(root, L"VTWrapDN.DIWrapper"));
    EXPECT_FALSE(exists(root, L"VTWrapDN.DIWrapper.1"));
}

/// Each test begins and ends with nothing registered.
class Registration : public testing::Test {
  protected:
    void SetUp() override {
        expectNothing(HKEY_LOCAL_MACHINE);
        expectNothing(HKEY_CURRENT_USER);
    }
    void TearDown() override {
        static_cast<void>(component().call("DllUnregisterServer"));
        static_cast<void>(install(FALSE, L"user"));
    }
    static HRESULT install(BOOL on, const wchar_t* what) {
        using Function = HRESULT STDAPICALLTYPE(BOOL, PCWSTR);
        const FARPROC found = GetProcAddress(component().module(), "DllInstall");
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(found))(on, what);
    }
};

/// The engine's type library, registered as long as this object lives, as an engine's own registration leaves
/// it.
class EngineTypeLibrary {
  public:
    EngineTypeLibrary() {
        const std::wstring path = besideProgram(VTDN_ENGINE_LIBRARY);
        com::Ptr<ITypeLib> library;
        EXPECT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_REGISTER, library.receive()), S_OK);
    }
    ~EngineTypeLibrary() {
        const SYSKIND kind = sizeof(void*) == 4 ? SYS_WIN32 : SYS_WIN64;
        EXPECT_EQ(UnRegisterTypeLib(LIBID_VTDI, 1, 0, LOCALE_NEUTRAL, kind), S_OK);
    }
    EngineTypeLibrary(const EngineTypeLibrary&) = delete;
    EngineTypeLibrary& operator=(const EngineTypeLibrary&) = delete;
};

}  // namespace vtdn::test

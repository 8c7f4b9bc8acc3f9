// Self-registration of a class table.
#include <gtest/gtest.h>

#include <string>

#include "com/registration.h"
#include "probe.h"

namespace vtdn::test {
namespace {

using com::Scope;

constexpr const wchar_t* classKey = L"CLSID\\{0D1C3F5A-6B0E-4B8E-9A43-5E0A7C1F2B14}";
constexpr const wchar_t* libraryId = L"{0D1C3F5A-6B0E-4B8E-9A43-5E0A7C1F2B10}";
constexpr const wchar_t* interfaceKey = L"Interface\\{0D1C3F5A-6B0E-4B8E-9A43-5E0A7C1F2B12}";

constexpr CLSID otherClass = {0x0D1C3F5A, 0x6B0E, 0x4B8E, {0x9A, 0x43, 0x5E, 0x0A, 0x7C, 0x1F, 0x2B, 0x1F}};

const com::ClassEntry classes[] = {
    {CLSID_Probe, L"ToolkitTest.Probe.1", L"ToolkitTest.Probe", L"A probe", &com::createObject<Probe>},
};

/// The value of a key below Software\Classes; "-" when there is no such key.
std::wstring read(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t value[600] = L"";
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(root, (L"Software\\Classes\\" + key).c_str(), name, RRF_RT_REG_SZ,
                                        nullptr, value, &size);
    return status == ERROR_SUCCESS ? value : L"-";
}

class Registration : public testing::TestWithParam<Scope> {
  protected:
    [[nodiscard]] HKEY root() const {
        return GetParam() == Scope::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    }
    [[nodiscard]] std::wstring at(const std::wstring& key, const wchar_t* name = nullptr) const {
        return read(root(), key, name);
    }
    void TearDown() override { EXPECT_EQ(com::unregisterServer(classes, GetParam()), S_OK); }
    void expectNothing() const {
        for (const wchar_t* key : {classKey, L"ToolkitTest.Probe", L"ToolkitTest.Probe.1"})
            EXPECT_EQ(at(key), L"-") << key;
        com::Bstr path;
        EXPECT_NE(QueryPathOfRegTypeLib(LIBID_ToolkitTest, 1, 0, 0, path.receive()), S_OK);
    }
};

TEST_P(Registration, WritesTheClassItsNamesAndItsLibrary) {
    ASSERT_EQ(com::registerServer(classes, GetParam()), S_OK);
    const std::wstring key = classKey;
    EXPECT_EQ(at(key), L"A probe");
    EXPECT_EQ(at(key + L"\\InprocServer32"), com::module::path());
    EXPECT_EQ(at(key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(at(key + L"\\ProgID"), L"ToolkitTest.Probe.1");
    EXPECT_EQ(at(key + L"\\VersionIndependentProgID"), L"ToolkitTest.Probe");
    EXPECT_EQ(at(key + L"\\TypeLib"), libraryId);
    EXPECT_EQ(at(key + L"\\Version"), L"1.0");
    EXPECT_EQ(at(key + L"\\Programmable"), L"");
    EXPECT_EQ(at(L"ToolkitTest.Probe.1"), L"A probe");
    EXPECT_EQ(at(L"ToolkitTest.Probe.1\\CLSID"), key.substr(6));
    EXPECT_EQ(at(L"ToolkitTest.Probe\\CLSID"), key.substr(6));
    EXPECT_EQ(at(L"ToolkitTest.Probe\\CurVer"), L"ToolkitTest.Probe.1");
    com::Bstr path;
    EXPECT_EQ(QueryPathOfRegTypeLib(LIBID_ToolkitTest, 1, 0, 0, path.receive()), S_OK);
    EXPECT_EQ(std::wstring(path.get()), com::module::path());
    EXPECT_EQ(com::registerServer(classes, GetParam()), S_OK) << "again";
}

TEST_P(Registration, IsTakenOutWhole) {
    ASSERT_EQ(com::registerServer(classes, GetParam()), S_OK);
    EXPECT_EQ(com::unregisterServer(classes, GetParam()), S_OK);
    expectNothing();
    EXPECT_EQ(com::unregisterServer(classes, GetParam()), S_OK) << "nothing there";
}

TEST_P(Registration, LeavesWhatAnotherFileHasRegistered) {
    ASSERT_EQ(com::registerServer(classes, GetParam()), S_OK);
    const std::wstring server = std::wstring(L"Software\\Classes\\") + classKey + L"\\InprocServer32";
    const wchar_t other[] = L"C:\\other.dll";
    ASSERT_EQ(RegSetKeyValueW(root(), server.c_str(), nullptr, REG_SZ, other, sizeof other), ERROR_SUCCESS);
    EXPECT_EQ(com::unregisterServer(classes, GetParam()), S_OK);
    EXPECT_EQ(at(std::wstring(classKey) + L"\\InprocServer32"), other);
    ASSERT_EQ(RegDeleteTreeW(root(), (std::wstring(L"Software\\Classes\\") + classKey).c_str()),
              ERROR_SUCCESS);
}

TEST_P(Registration, ThatFailsMidwayLeavesNothing) {
    const std::wstring tooLong(300, L'x');
    const com::ClassEntry broken[] = {
        classes[0],
        {otherClass, tooLong.c_str(), L"ToolkitTest.Broken", L"Broken", &com::createObject<Probe>},
    };
    const HRESULT result = com::registerServer(broken, GetParam());
    EXPECT_TRUE(FAILED(result));
    EXPECT_EQ(HRESULT_FACILITY(result), FACILITY_WIN32);
    expectNothing();
    EXPECT_EQ(at(L"CLSID\\{0D1C3F5A-6B0E-4B8E-9A43-5E0A7C1F2B1F}"), L"-");
}

TEST_P(Registration, OfALibraryThatIsNotThereFails) {
    const com::ClassEntry broken[] = {
        {CLSID_Probe, L"ToolkitTest.Probe.1", L"ToolkitTest.Probe", L"A probe", &com::createObject<Probe>, 9},
    };
    EXPECT_TRUE(FAILED(com::registerServer(broken, GetParam())));
    expectNothing();
}

INSTANTIATE_TEST_SUITE_P(Scopes, Registration, testing::Values(Scope::machine, Scope::user),
                         [](const auto& scope) { return scope.param == Scope::user ? "User" : "Machine"; });

TEST(Install, KnowsWhomItIsFor) {
    EXPECT_EQ(com::install(classes, TRUE, L"everybody"), E_INVALIDARG);
    EXPECT_EQ(com::install(classes, TRUE, L"User"), S_OK);
    EXPECT_EQ(read(HKEY_CURRENT_USER, classKey), L"A probe");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, classKey), L"-");
    EXPECT_EQ(com::install(classes, FALSE, L"user"), S_OK);
    EXPECT_EQ(read(HKEY_CURRENT_USER, classKey), L"-");
    EXPECT_EQ(com::install(classes, TRUE, nullptr), S_OK);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, classKey), L"A probe");
    EXPECT_NE(read(HKEY_LOCAL_MACHINE, std::wstring(interfaceKey) + L"\\ProxyStubClsid32"), L"-");
    EXPECT_EQ(com::install(classes, FALSE, L""), S_OK);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, classKey), L"-");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, interfaceKey), L"-");
}

}  // namespace
}  // namespace vtdn::test

// Self-registration, activation with and without it, calls from another apartment, and what the file itself
// says: exports, imports, version. Writes to the registry: runs in a Wine prefix of its own.
#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "fake_engine/lenient.h"
#include "registration/registered.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::Ptr;

constexpr LONG pid = 530001;

/// Every key below Software\Classes, with its values: what a registration may change.
void collect(HKEY key, const std::wstring& path, std::set<std::wstring>& all) {
    all.insert(path);
    wchar_t name[512];
    for (DWORD i = 0;; ++i) {
        DWORD size = 512;
        if (RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        HKEY child = nullptr;
        if (RegOpenKeyExW(key, name, 0, KEY_READ, &child) != ERROR_SUCCESS) continue;
        collect(child, path + L"\\" + name, all);
        RegCloseKey(child);
    }
}
std::set<std::wstring> allKeys(HKEY root) {
    std::set<std::wstring> all;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, L"Software\\Classes", 0, KEY_READ, &key) == ERROR_SUCCESS) {
        collect(key, L"", all);
        RegCloseKey(key);
    }
    return all;
}

/// Runs a program of the platform and returns its exit code.
DWORD run(std::wstring command) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        return GetLastError();
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return code;
}
DWORD regsvr32(const std::wstring& switches) {
    return run(L"regsvr32 /s " + switches + L" \"" + componentPath() + L"\"");
}

void expectRegistered(HKEY root) {
    EXPECT_EQ(value(root, classKey + L"\\InprocServer32"), componentPath());
    EXPECT_EQ(value(root, classKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(value(root, classKey + L"\\ProgID"), L"VTWrapDN.DIWrapper.1");
    EXPECT_EQ(value(root, classKey + L"\\VersionIndependentProgID"), L"VTWrapDN.DIWrapper");
    EXPECT_EQ(value(root, classKey + L"\\TypeLib"), textOf(LIBID_VTWrapperDN));
    EXPECT_TRUE(exists(root, classKey + L"\\Programmable"));
    EXPECT_EQ(value(root, L"VTWrapDN.DIWrapper.1\\CLSID"), textOf(CLSID_DIWrapper));
    EXPECT_EQ(value(root, L"VTWrapDN.DIWrapper\\CLSID"), textOf(CLSID_DIWrapper));
    EXPECT_EQ(value(root, L"VTWrapDN.DIWrapper\\CurVer"), L"VTWrapDN.DIWrapper.1");
    EXPECT_EQ(value(root, libraryKey + L"\\1.0"), L"Vantor 5 Wrapper For .NET");
    const wchar_t* bits = sizeof(void*) == 4 ? L"win32" : L"win64";
    EXPECT_EQ(value(root, libraryKey + L"\\1.0\\0\\" + bits), componentPath());
    // Calls from other apartments go through the type library's marshaller.
    EXPECT_EQ(value(root, interfaceKey), L"_DIWrapper");
    EXPECT_EQ(value(root, dataPointKey), L"_DataPointBasicWrapper");
    EXPECT_EQ(value(root, occurrenceKey), L"_OccurrenceDataWrapper");
    for (const std::wstring& key : {interfaceKey, dataPointKey, occurrenceKey}) {
        EXPECT_EQ(value(root, key + L"\\ProxyStubClsid32"), L"{00020424-0000-0000-C000-000000000046}");
        EXPECT_EQ(value(root, key + L"\\TypeLib"), textOf(LIBID_VTWrapperDN));
        EXPECT_EQ(value(root, key + L"\\TypeLib", L"Version"), L"1.0");
    }
    // A class that cannot be created has no keys.
    for (const CLSID& id : {CLSID_DataPointBasicWrapper, CLSID_OccurrenceDataWrapper})
        EXPECT_FALSE(exists(root, L"CLSID\\" + textOf(id)));
    EXPECT_FALSE(exists(root, L"VTWrapDN.DataPointBasicWrapper"));
    EXPECT_FALSE(exists(root, L"VTWrapDN.OccurrenceDataWrapper"));
}

TEST_F(Registration, Regsvr32WritesTheKeysAndTakesEachOneOut) {
    const auto before = allKeys(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(regsvr32(L""), 0U);
    expectRegistered(HKEY_LOCAL_MACHINE);
    expectNothing(HKEY_CURRENT_USER);
    EXPECT_EQ(regsvr32(L""), 0U) << "a second time changes nothing";
    expectRegistered(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(regsvr32(L"/u"), 0U);
    expectNothing(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(allKeys(HKEY_LOCAL_MACHINE), before);
    EXPECT_EQ(regsvr32(L"/u"), 0U) << "what is not there is no failure";
}

TEST_F(Registration, DllInstallForTheUserWritesTheUsersClassKeysOnly) {
    EXPECT_EQ(install(TRUE, L"user"), S_OK);
    EXPECT_EQ(value(HKEY_CURRENT_USER, classKey + L"\\InprocServer32"), componentPath());
    EXPECT_EQ(value(HKEY_CURRENT_USER, classKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(value(HKEY_CURRENT_USER, L"VTWrapDN.DIWrapper\\CurVer"), L"VTWrapDN.DIWrapper.1");
    EXPECT_EQ(value(HKEY_CURRENT_USER, L"VTWrapDN.DIWrapper.1\\CLSID"), textOf(CLSID_DIWrapper));
    EXPECT_FALSE(exists(HKEY_LOCAL_MACHINE, classKey));
    EXPECT_FALSE(exists(HKEY_LOCAL_MACHINE, L"VTWrapDN.DIWrapper"));
    // Wine registers a user's type library for everybody.
    EXPECT_TRUE(exists(HKEY_CURRENT_USER, libraryKey) || exists(HKEY_LOCAL_MACHINE, libraryKey));
    EXPECT_EQ(install(FALSE, L"USER"), S_OK);
    expectNothing(HKEY_CURRENT_USER);
    expectNothing(HKEY_LOCAL_MACHINE);
}

TEST_F(Registration, DllInstallWithoutAUserIsForTheMachineAndAnythingElseIsRefused) {
    EXPECT_EQ(install(TRUE, nullptr), S_OK);
    expectRegistered(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(install(FALSE, L""), S_OK);
    expectNothing(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(install(TRUE, L"everybody"), E_INVALIDARG);
    expectNothing(HKEY_LOCAL_MACHINE);
    expectNothing(HKEY_CURRENT_USER);
}

void furnish(fake::Site& site) {
    site.parameters[pid].name = L"Flow";
    site.parameters[pid].usedPids = L"530002,530003";
    site.parameters[pid].run = {{com::Variant::of(2.5), 1}, {com::Variant::of(L"N/A"), 2}};
    site.parameters[530002].ioType = 38;
    site.parameters[530003].ioType = 4;
    site.knownMcs = {5};
}

/// Calls of every kind of argument.
void use(const Client& client) {
    EXPECT_TRUE(client.setup(3));
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 3);
    EXPECT_EQ(client.text(&_DIWrapper::Param_Name, pid), L"Flow");
    BSTR editable = SysAllocString(L"old");
    BSTR constant = nullptr;
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_FindPIDsUsedByPID, pid, &editable, &constant));
    EXPECT_EQ(com::view(editable), L"000530002");
    EXPECT_EQ(com::view(constant), L"000530003");
    SysFreeString(editable);
    SysFreeString(constant);
    const Bstr type(L"1h");
    Array<LONG> integers(1, 5);
    Array<BSTR> texts(0, 2);
    Array<LONG> mcs(0, 2);
    Array<VARIANT_BOOL> flags(0, 2);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetDataArray_Integer, pid, 39448.0, LONG{2}, type.get(),
                           LONG{1}, integers.inOut(), mcs.inOut(), flags.inOut()));
    EXPECT_EQ(integers.values(), (std::vector<LONG>{2, 0}));
    EXPECT_EQ(mcs.values(), (std::vector<LONG>{1, 2}));
    EXPECT_EQ(flags.values(), (std::vector<bool>{false, true}));
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetDataArray_String, pid, 39448.0, LONG{2}, type.get(), LONG{1},
                           texts.inOut(), mcs.inOut()));
    EXPECT_EQ(texts.values(), (std::vector<std::wstring>{L"2.5", L"N/A"}));
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteVMC_String, pid, 39448.0, 12.5f, LONG{5}));
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_WriteMC, pid, 39448.0, LONG{6}));
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"'6' is not a known monitor code (WDN-010)"});
}

TEST_F(Registration, ARegisteredClassIsMadeByItsNames) {
    ASSERT_EQ(component().call("DllRegisterServer"), S_OK);
    fake::Site site;
    furnish(site);
    const fake::LenientServer server(site);
    for (const wchar_t* name : {L"VTWrapDN.DIWrapper", L"VTWrapDN.DIWrapper.1"}) {
        CLSID id{};
        ASSERT_EQ(CLSIDFromProgID(name, &id), S_OK);
        Ptr<_DIWrapper> wrapper;
        ASSERT_EQ(
            CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_DIWrapper), wrapper.receiveVoid()),
            S_OK);
        use(Client(wrapper));
    }
}

/// Hands a wrapper of this apartment to a client in another one.
void useFromAnotherApartment(const Ptr<_DIWrapper>& wrapper) {
    Ptr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(_DIWrapper), wrapper.get(), stream.receive()),
              S_OK);
    inAnotherApartment([&stream, &wrapper] {
        Ptr<_DIWrapper> proxy;
        const HRESULT result =
            CoGetInterfaceAndReleaseStream(stream.detach(), __uuidof(_DIWrapper), proxy.receiveVoid());
        ASSERT_EQ(result, S_OK);
        EXPECT_NE(proxy.get(), wrapper.get());
        use(Client(proxy));
    });
}

TEST_F(Registration, AClientInAnotherApartmentCallsThroughTheTypeLibrarysMarshaller) {
    ASSERT_EQ(component().call("DllRegisterServer"), S_OK);
    fake::Site site;
    furnish(site);
    const fake::LenientServer server(site);
    useFromAnotherApartment(component().create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_EQ(site.objects, 0);
}

TEST_F(Registration, AFailureOfTheEngineReachesAClientInAnotherApartment) {
    ASSERT_EQ(component().call("DllRegisterServer"), S_OK);
    class Failing : public fake::Tap {
      public:
        HRESULT onCall(const char* call) override {
            if (std::string_view(call) != "DIParam.Name") return S_OK;
            SetErrorInfo(0, com::makeErrorInfo(L"Engine", L"The database is away.", GUID_NULL).get());
            return static_cast<HRESULT>(0x80041234);
        }
    } failing;
    fake::Site site;
    furnish(site);
    site.tap = &failing;
    const fake::LenientServer server(site);
    const Client client;
    EXPECT_TRUE(client.setup());
    Ptr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(_DIWrapper), client.get(), stream.receive()),
              S_OK);
    inAnotherApartment([&stream] {
        Ptr<_DIWrapper> proxy;
        ASSERT_EQ(CoGetInterfaceAndReleaseStream(stream.detach(), __uuidof(_DIWrapper), proxy.receiveVoid()),
                  S_OK);
        EXPECT_EQ(Client(proxy).failure(&_DIWrapper::Param_Name, pid).result,
                  static_cast<HRESULT>(0x80041234));
    });
}

// ---- Without registration

/// The activation context of the manifest inside the library, in force as long as this object lives.
class ManifestContext {
  public:
    ManifestContext() {
        const std::wstring path = componentPath();
        const std::wstring folder = path.substr(0, path.find_last_of(L'\\'));
        ACTCTXW request{};
        request.cbSize = sizeof request;
        request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
        request.lpSource = path.c_str();
        request.lpAssemblyDirectory = folder.c_str();
        request.lpResourceName = MAKEINTRESOURCEW(1);
        context_ = CreateActCtxW(&request);
        EXPECT_NE(context_, INVALID_HANDLE_VALUE) << GetLastError();
        EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
    }
    ~ManifestContext() {
        DeactivateActCtx(0, cookie_);
        ReleaseActCtx(context_);
    }
    ManifestContext(const ManifestContext&) = delete;
    ManifestContext& operator=(const ManifestContext&) = delete;

  private:
    HANDLE context_ = nullptr;
    ULONG_PTR cookie_ = 0;
};

TEST_F(Registration, TheManifestInsideActivatesAnUnregisteredClass) {
    fake::Site site;
    furnish(site);
    const fake::LenientServer server(site);
    Ptr<_DIWrapper> wrapper;
    EXPECT_EQ(CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_DIWrapper),
                               wrapper.receiveVoid()),
              REGDB_E_CLASSNOTREG);
    const ManifestContext context;
    // By its name too, under which the context may give it another identity.
    CLSID id{};
    EXPECT_EQ(CLSIDFromProgID(L"VTWrapDN.DIWrapper", &id), S_OK);
    EXPECT_EQ(
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_DIWrapper), wrapper.receiveVoid()),
        S_OK);
    ASSERT_EQ(CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_DIWrapper),
                               wrapper.receiveVoid()),
              S_OK);
    use(Client(wrapper));
}

TEST_F(Registration, TheManifestInsideNamesTheMarshallerOfEveryInterface) {
    const struct {
        IID iid;
        const wchar_t* name;
    } interfaces[] = {{__uuidof(_DIWrapper), L"_DIWrapper"},
                      {__uuidof(_DataPointBasicWrapper), L"_DataPointBasicWrapper"},
                      {__uuidof(_OccurrenceDataWrapper), L"_OccurrenceDataWrapper"}};
    const auto find = [](const IID& iid, ACTCTX_SECTION_KEYED_DATA& found) {
        found = {};
        found.cbSize = sizeof found;
        return FindActCtxSectionGuid(0, nullptr, ACTIVATION_CONTEXT_SECTION_COM_INTERFACE_REDIRECTION, &iid,
                                     &found);
    };
    ACTCTX_SECTION_KEYED_DATA found;
    for (const auto& one : interfaces) EXPECT_FALSE(find(one.iid, found)) << "without the manifest";
    const ManifestContext context;
    for (const auto& one : interfaces) EXPECT_TRUE(find(one.iid, found)) << com::toUtf8(one.name);
    EXPECT_FALSE(find(__uuidof(DIEngine), found));
}

// ---- The file itself

/// Walks the headers of the loaded library.
class Image {
  public:
    Image() : base_(reinterpret_cast<const BYTE*>(component().module())) {
        const auto* dos = at<IMAGE_DOS_HEADER>(0);
        headers_ = at<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
    }
    [[nodiscard]] std::set<std::string> exports() const {
        const auto* table = directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        const auto* names = at<DWORD>(table->AddressOfNames);
        std::set<std::string> all;
        for (DWORD i = 0; i < table->NumberOfNames; ++i) all.insert(at<char>(names[i]));
        return all;
    }
    [[nodiscard]] std::set<std::string> imports() const {
        std::set<std::string> all;
        for (const auto* one = directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
             one->Name != 0; ++one) {
            std::string name = at<char>(one->Name);
            for (char& c : name) c = static_cast<char>(tolower(c));
            all.insert(name);
        }
        return all;
    }

    [[nodiscard]] WORD characteristics() const { return headers_->OptionalHeader.DllCharacteristics; }

  private:
    template <class T>
    [[nodiscard]] const T* at(DWORD offset) const {
        return static_cast<const T*>(static_cast<const void*>(base_ + offset));
    }
    template <class T>
    [[nodiscard]] const T* directory(int which) const {
        return at<T>(headers_->OptionalHeader.DataDirectory[which].VirtualAddress);
    }

    const BYTE* base_;
    const IMAGE_NT_HEADERS* headers_ = nullptr;
};

TEST(File, ExportsExactlyTheFiveEntryPointsUndecorated) {
    EXPECT_EQ(Image().exports(), (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                                                        "DllRegisterServer", "DllUnregisterServer"}));
}

TEST(File, ImportsOnlyWhatEveryWindowsHas) {
    const std::set<std::string> system = {"advapi32.dll", "kernel32.dll", "msvcrt.dll",  "ole32.dll",
                                          "oleaut32.dll", "user32.dll",   "ucrtbase.dll"};
    const auto imports = Image().imports();
    for (const std::string& name : imports) {
        EXPECT_TRUE(system.contains(name) || name.starts_with("api-ms-win-")) << name;
    }
    EXPECT_TRUE(imports.contains("oleaut32.dll")) << "automation comes from the platform";
}

TEST(File, CanBeLoadedAnywhereAndHasNoExecutableData) {
    constexpr WORD wanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    EXPECT_EQ(Image().characteristics() & wanted, wanted);
}

TEST(File, HasAVersionAndTheFlagOfSelfRegistration) {
    const std::wstring path = componentPath();
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    ASSERT_GT(size, 0U);
    std::vector<BYTE> data(size);
    ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, size, data.data()));
    const auto text = [&data](const wchar_t* name) -> std::wstring {
        void* found = nullptr;
        UINT length = 0;
        const std::wstring block = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
        if (!VerQueryValueW(data.data(), block.c_str(), &found, &length)) return L"(none)";
        return static_cast<const wchar_t*>(found);
    };
    EXPECT_EQ(text(L"FileDescription"), L"Vantor 5 Wrapper For .NET");
    EXPECT_EQ(text(L"OriginalFilename"), L"VTWrapDN.dll");
    EXPECT_EQ(text(L"OLESelfRegister"), L"");
    void* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(data.data(), L"\\", &fixed, &length));
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(fixed);
    EXPECT_EQ(info->dwSignature, 0xFEEF04BDU);
    EXPECT_GT(info->dwFileVersionMS, 0U);
    EXPECT_EQ(info->dwFileType, static_cast<DWORD>(VFT_DLL));
}

}  // namespace
}  // namespace vtdn::test

#include "com/registration.h"

#include <set>
#include <string>

#include "com/error.h"
#include "com/strings.h"

// Exported by the platform, but not in every compiler's headers.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* file, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID lcid,
                                                   SYSKIND system);

namespace vtdn::com {
namespace {

std::wstring textOf(REFGUID id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

void checkRegistry(LSTATUS status) {
    if (status != ERROR_SUCCESS) throwError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

/// An open registry key.
class Key {
  public:
    /// Opens or makes `path`.
    Key(HKEY parent, const std::wstring& path) {
        checkRegistry(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                                      &key_, nullptr));
    }
    ~Key() { RegCloseKey(key_); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    [[nodiscard]] HKEY get() const noexcept { return key_; }
    /// A null name means the key's own value.
    void set(const wchar_t* name, const std::wstring& value) const {
        checkRegistry(RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                                     (static_cast<DWORD>(value.size()) + 1) * DWORD{sizeof(wchar_t)}));
    }
    /// The value of the key `path` below; empty when there is none.
    [[nodiscard]] std::wstring read(const std::wstring& path) const {
        DWORD bytes = 0;
        if (RegGetValueW(key_, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) !=
            ERROR_SUCCESS)
            return {};
        std::wstring value(bytes / sizeof(wchar_t), L'\0');
        if (RegGetValueW(key_, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &bytes) !=
            ERROR_SUCCESS)
            return {};
        value.resize(bytes / sizeof(wchar_t));
        while (!value.empty() && value.back() == L'\0') value.pop_back();
        return value;
    }
    void removeTree(const std::wstring& path) const {
        const LSTATUS status = RegDeleteTreeW(key_, path.c_str());
        if (status != ERROR_FILE_NOT_FOUND) checkRegistry(status);
    }

  private:
    HKEY key_ = nullptr;
};

bool samePath(const std::wstring& a, const std::wstring& b) noexcept {
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                                TRUE) == CSTR_EQUAL;
}

/// What identifies a type library of this module.
struct Library {
    Ptr<ITypeLib> object;
    GUID id;
    WORD major;
    WORD minor;
    LCID lcid;
    SYSKIND system;
    std::wstring file;  ///< where it is found: this module, with the resource when it is not the first

    explicit Library(unsigned resource) : object(module::typeLibrary(resource)), file(module::path()) {
        if (resource != 1) file += L'\\' + std::to_wstring(resource);
        TLIBATTR* attributes = nullptr;
        check(object->GetLibAttr(&attributes));
        id = attributes->guid;
        major = attributes->wMajorVerNum;
        minor = attributes->wMinorVerNum;
        lcid = attributes->lcid;
        system = attributes->syskind;
        object->ReleaseTLibAttr(attributes);
    }
    [[nodiscard]] std::wstring version() const {
        return std::to_wstring(major) + L'.' + std::to_wstring(minor);
    }
};

/// One registration: the table, and the place where classes stand.
class Registration {
  public:
    Registration(std::span<const ClassEntry> classes, Scope scope)
        : classes_(classes),
          scope_(scope),
          root_(scope == Scope::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, L"Software\\Classes"),
          file_(module::path()) {
        for (const ClassEntry& entry : classes_) libraries_.insert(entry.typeLibrary);
    }

    void write() const {
        for (const ClassEntry& entry : classes_) writeClass(entry);
        for (const unsigned resource : libraries_) writeLibrary(Library(resource));
    }

    /// Tries everything, then throws the first failure. `all`: also what other files have registered.
    void remove(bool all) const {
        HRESULT first = S_OK;
        const auto attempt = [&first](auto&& body) {
            try {
                body();
            } catch (const Error& error) {
                if (SUCCEEDED(first)) first = error.result();
            }
        };
        for (const ClassEntry& entry : classes_)
            if (all || isOurs(entry)) attempt([&] { removeClass(entry); });
        for (const unsigned resource : libraries_) attempt([&] { removeLibrary(Library(resource), all); });
        if (FAILED(first)) throwError(first);
    }

  private:
    static std::wstring classKey(const ClassEntry& entry) { return L"CLSID\\" + textOf(entry.id); }

    [[nodiscard]] bool isOurs(const ClassEntry& entry) const {
        const std::wstring server = root_.read(classKey(entry) + L"\\InprocServer32");
        return server.empty() || samePath(server, file_);
    }

    void set(const std::wstring& path, const std::wstring& value) const {
        Key(root_.get(), path).set(nullptr, value);
    }

    void writeClass(const ClassEntry& entry) const {
        const std::wstring key = classKey(entry);
        const Library library(entry.typeLibrary);
        set(key, entry.description);
        const Key server(root_.get(), key + L"\\InprocServer32");
        server.set(nullptr, file_);
        server.set(L"ThreadingModel", L"Apartment");
        set(key + L"\\ProgID", entry.progId);
        set(key + L"\\VersionIndependentProgID", entry.independentProgId);
        set(key + L"\\TypeLib", textOf(library.id));
        set(key + L"\\Version", library.version());
        set(key + L"\\Programmable", L"");
        for (const wchar_t* name : {entry.progId, entry.independentProgId}) {
            set(name, entry.description);
            set(std::wstring(name) + L"\\CLSID", textOf(entry.id));
        }
        set(std::wstring(entry.independentProgId) + L"\\CurVer", entry.progId);
    }

    void removeClass(const ClassEntry& entry) const {
        root_.removeTree(classKey(entry));
        root_.removeTree(entry.progId);
        root_.removeTree(entry.independentProgId);
    }

    void writeLibrary(const Library& library) const {
        const auto file = const_cast<OLECHAR*>(library.file.c_str());
        check(scope_ == Scope::user ? RegisterTypeLibForUser(library.object.get(), file, nullptr)
                                    : RegisterTypeLib(library.object.get(), file, nullptr));
    }

    void removeLibrary(const Library& library, bool all) const {
        Bstr registered;
        if (FAILED(QueryPathOfRegTypeLib(library.id, library.major, library.minor, library.lcid,
                                         registered.receive())))
            return;
        // The path comes with a NUL inside its length on some versions of the platform.
        const std::wstring path(registered.get());
        if (!all && !samePath(path, library.file)) return;
        check(scope_ == Scope::user ? UnRegisterTypeLibForUser(library.id, library.major, library.minor,
                                                               library.lcid, library.system)
                                    : UnRegisterTypeLib(library.id, library.major, library.minor,
                                                        library.lcid, library.system));
    }

    std::span<const ClassEntry> classes_;
    Scope scope_;
    Key root_;
    std::wstring file_;
    std::set<unsigned> libraries_;
};

constexpr const wchar_t* source = L"Registration";

}  // namespace

HRESULT registerServer(std::span<const ClassEntry> classes, Scope scope) noexcept {
    return guard(source, IID_NULL, [&]() -> HRESULT {
        const Registration registration(classes, scope);
        try {
            registration.write();
            return S_OK;
        } catch (...) {
            const HRESULT failure = currentExceptionToResult(source, IID_NULL);
            const Error error = lastError(failure);
            // What cannot be taken out either is of no interest beside the failure itself.
            static_cast<void>(guard(source, IID_NULL, [&] { registration.remove(true); }));
            SetErrorInfo(0, error.info().get());
            return failure;
        }
    });
}

HRESULT unregisterServer(std::span<const ClassEntry> classes, Scope scope) noexcept {
    return guard(source, IID_NULL, [&] { Registration(classes, scope).remove(false); });
}

HRESULT install(std::span<const ClassEntry> classes, BOOL install, const wchar_t* what) noexcept {
    Scope scope = Scope::machine;
    if (what && *what != L'\0') {
        if (CompareStringOrdinal(what, -1, L"user", -1, TRUE) != CSTR_EQUAL) return E_INVALIDARG;
        scope = Scope::user;
    }
    return install ? registerServer(classes, scope) : unregisterServer(classes, scope);
}

}  // namespace vtdn::com

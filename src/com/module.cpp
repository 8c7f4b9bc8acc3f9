#include "com/module.h"

#include <atomic>

#include "com/error.h"

// Placed by the linker at the start of the module's image; its address is the module's handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier): the linker's name

namespace vtdn::com::module {
namespace {

std::atomic<LONG> locks{0};

HRESULT loadTypeLibrary(const std::wstring& file, unsigned resource, Ptr<ITypeLib>& library) {
    const std::wstring place = file + L'\\' + std::to_wstring(resource);
    return LoadTypeLibEx(place.c_str(), REGKIND_NONE, library.receive());
}

}  // namespace

void lock() noexcept {
    locks.fetch_add(1, std::memory_order_relaxed);
}

void unlock() noexcept {
    locks.fetch_sub(1, std::memory_order_acq_rel);
}

bool isLocked() noexcept {
    return locks.load(std::memory_order_acquire) != 0;
}

HINSTANCE handle() noexcept {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring path() {
    std::wstring file(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(handle(), file.data(), static_cast<DWORD>(file.size()));
        if (length == 0) throwError(HRESULT_FROM_WIN32(GetLastError()), L"The module's file has no name");
        if (length < file.size()) {
            file.resize(length);
            return file;
        }
        file.resize(file.size() * 2);  // cut off: a long path
    }
}

Ptr<ITypeLib> typeLibrary(unsigned resource) {
    Ptr<ITypeLib> library;
    check(loadTypeLibrary(path(), resource, library));
    return library;
}

Ptr<ITypeInfo> typeInfo(REFGUID id) {
    const std::wstring file = path();
    Ptr<ITypeLib> library;
    for (unsigned resource = 1; SUCCEEDED(loadTypeLibrary(file, resource, library)); ++resource) {
        Ptr<ITypeInfo> info;
        if (SUCCEEDED(library->GetTypeInfoOfGuid(id, info.receive()))) return info;
    }
    throwError(TYPE_E_ELEMENTNOTFOUND);
}

}  // namespace vtdn::com::module

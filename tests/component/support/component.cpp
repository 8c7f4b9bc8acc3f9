#include "support/component.h"

#include <stdexcept>

#include "com/error.h"

namespace vtdn::test {

namespace {

template <class Function>
Function* exported(HMODULE module, const char* name) {
    const FARPROC found = GetProcAddress(module, name);
    if (!found) throw std::runtime_error(std::string("The component does not export ") + name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

}  // namespace

std::wstring besideProgram(const std::wstring& relative) {
    wchar_t program[MAX_PATH];
    const std::wstring path(program, GetModuleFileNameW(nullptr, program, MAX_PATH));
    wchar_t full[MAX_PATH];
    const std::wstring joined = path.substr(0, path.find_last_of(L'\\') + 1) + relative;
    return {full, GetFullPathNameW(joined.c_str(), MAX_PATH, full, nullptr)};
}

Component::Component(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {
    if (!module_) {
        throw std::runtime_error("The component cannot be loaded: error " + std::to_string(GetLastError()));
    }
}

Component::~Component() {
    FreeLibrary(module_);
}

HRESULT Component::getClassObject(REFCLSID classId, REFIID iid, void** out) const {
    using Function = HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**);
    return exported<Function>(module_, "DllGetClassObject")(classId, iid, out);
}

HRESULT Component::canUnloadNow() const {
    return call("DllCanUnloadNow");
}

HRESULT Component::call(const char* name) const {
    return exported<HRESULT STDAPICALLTYPE()>(module_, name)();
}

void Component::createInstance(REFCLSID classId, REFIID iid, void** out) const {
    com::Ptr<IClassFactory> factory;
    com::check(getClassObject(classId, __uuidof(IClassFactory), factory.receiveVoid()));
    com::check(factory->CreateInstance(nullptr, iid, out));
}

}  // namespace vtdn::test

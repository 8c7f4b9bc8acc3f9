#include "bench/component.h"

#include <iterator>

#include "com/error.h"

namespace vtdn::bench {

com::Ptr<IClassFactory> classFactory(const std::wstring& library, REFCLSID clsid) {
    const HMODULE module = LoadLibraryW(library.c_str());
    if (!module) com::throwError(HRESULT_FROM_WIN32(GetLastError()), L"cannot load " + library);
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto get = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    com::Ptr<IClassFactory> factory;
    com::check(get(clsid, IID_IClassFactory, factory.receiveVoid()));
    return factory;
}

com::Ptr<_DIWrapper> makeWrapper(const std::wstring& componentFile) {
    com::Ptr<_DIWrapper> wrapper;
    com::check(classFactory(componentFile, CLSID_DIWrapper)
                   ->CreateInstance(nullptr, IID__DIWrapper, wrapper.receiveVoid()));
    return wrapper;
}

EmbeddedEngine::EmbeddedEngine(const std::wstring& engineFile) {
    const GUID classes[] = {CLSID_DIEngineClass, CLSID_DIDataArrayClass, CLSID_DIDataArrayItemClass};
    for (std::size_t i = 0; i < std::size(classes); ++i)
        com::check(CoRegisterClassObject(classes[i], classFactory(engineFile, classes[i]).get(),
                                         CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookies_[i]));
}

EmbeddedEngine::~EmbeddedEngine() {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

}  // namespace vtdn::bench

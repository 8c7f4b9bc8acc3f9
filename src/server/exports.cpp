// What COM and the registration tools ask the library for.
#include "com/class_factory.h"
#include "com/registration.h"
#include "diwrapper/DIWrapper.h"

namespace {

namespace com = vtdn::com;

constexpr com::ClassEntry classes[] = {
    {CLSID_DIWrapper, L"VTWrapDN.DIWrapper.1", L"VTWrapDN.DIWrapper",
     L"A wrapper around the data-interface engine of one DAHS", &com::createObject<vtdn::DIWrapper>},
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object) {
    return com::classObject(classes, id, iid, object);
}

STDAPI DllCanUnloadNow() {
    return com::canUnloadNow();
}

STDAPI DllRegisterServer() {
    return com::registerServer(classes, com::Scope::machine);
}

STDAPI DllUnregisterServer() {
    return com::unregisterServer(classes, com::Scope::machine);
}

STDAPI DllInstall(BOOL install, PCWSTR what) {
    return com::install(classes, install, what);
}

#include "engine_library.h"

#include <VTDI.h>

#include "com/error.h"

namespace vtdn::embedded::test {

void EngineLibrary::serve() {
    for (const CLSID* classId : {&CLSID_DIEngineClass, &CLSID_DIDataArrayClass, &CLSID_DIDataArrayItemClass,
                                 &CLSID_DIDataPointClass}) {
        com::Ptr<IUnknown> factory;
        com::check(getClassObject(*classId, IID_IUnknown, factory.receiveVoid()));
        DWORD cookie = 0;
        com::check(CoRegisterClassObject(*classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                         &cookie));
        cookies_.push_back(cookie);
    }
}

void EngineLibrary::stopServing() {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
    cookies_.clear();
}

}  // namespace vtdn::embedded::test

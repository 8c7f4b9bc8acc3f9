// What VTEngine.dll exports.
#include <VTDI.h>

#include <array>

#include "com/class_factory.h"
#include "com/registration.h"
#include "data_interface/data_array.h"
#include "data_interface/data_array_item.h"
#include "data_interface/data_point.h"
#include "data_interface/engine.h"

namespace {

using namespace vtdn;

constexpr std::array classes{
    com::ClassEntry{CLSID_DIEngineClass, L"VTDI.DIEngine.1", L"VTDI.DIEngine",
                    L"Vantor 5 data-interface engine", &com::createObject<embedded::Engine>},
    com::ClassEntry{CLSID_DIDataArrayClass, L"VTDI.DIDataArray.1", L"VTDI.DIDataArray",
                    L"Vantor 5 data-interface engine: run of intervals",
                    &com::createObject<embedded::DataArray>},
    com::ClassEntry{CLSID_DIDataArrayItemClass, L"VTDI.DIDataArrayItem.1", L"VTDI.DIDataArrayItem",
                    L"Vantor 5 data-interface engine: one interval",
                    &com::createObject<embedded::DataArrayItem>},
    com::ClassEntry{CLSID_DIDataPointClass, L"VTDI.DIDataPoint.1", L"VTDI.DIDataPoint",
                    L"Vantor 5 data-interface engine: data point", &com::createObject<embedded::DataPoint>},
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
    return com::classObject(classes, classId, iid, object);
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

// The classes that a DLL offers, as one table, and what COM asks a DLL for them.
//
//     constexpr com::ClassEntry classes[] = {
//         {CLSID_Wrapper, L"Library.Wrapper.1", L"Library.Wrapper", L"A wrapper",
//         &com::createObject<Wrapper>},
//     };
//     STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** out) { return com::classObject(classes, id,
//     iid, out); } STDAPI DllCanUnloadNow() { return com::canUnloadNow(); }
#pragma once

#include <span>

#include "com/object.h"
#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com {

struct ClassEntry {
    const CLSID& id;
    const wchar_t* progId;             ///< with the version: "Library.Class.1"
    const wchar_t* independentProgId;  ///< without it: "Library.Class"
    const wchar_t* description;
    Ptr<IUnknown> (*create)();
    unsigned typeLibrary = 1;  ///< resource that describes it
};

template <class T>
Ptr<IUnknown> createObject() {
    return Ptr<IUnknown>(make<T>()->unknown());
}

/// DllGetClassObject: CLASS_E_CLASSNOTAVAILABLE for a class that is not in the table. `classes` has to
/// outlive the factory, as a constant table does.
HRESULT classObject(std::span<const ClassEntry> classes, REFCLSID id, REFIID iid, void** out) noexcept;

/// DllCanUnloadNow: S_OK when there is no object, no factory and no lock.
HRESULT canUnloadNow() noexcept;

}  // namespace vtdn::com

// Recognising an object of this component's own class, and taking out the object that it holds for its
// operations (the engine's record behind a record wrapper). No type library lists any of this.
//
// Two ways lead to the same answer:
//  - An object of the caller's apartment is asked by QueryInterface for IOwnObject, a private interface. An
//  object that
//    a client in another apartment hands back arrives here as itself, too: unmarshalling at home gives the
//    original.
//  - An object of another apartment is a proxy, and a private interface has no marshaller. Its IDispatch has:
//  a
//    reserved dispatch id that no name leads to asks the same question, and the held object comes back
//    marshalled.
// Objects that are not ours answer neither, or not for the class that is asked for.
#pragma once

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com {

/// Implemented by a class that holds an object for its operations: listed among the interfaces of its Object.
MIDL_INTERFACE("6C0B1D3A-6E2C-4B0F-9C57-2E4C7D0E5A91")
IOwnObject : public IUnknown {
  public:
    /// The held object (may be null) when the asked object is of class `wanted`; DISP_E_TYPEMISMATCH
    /// otherwise.
    virtual HRESULT STDMETHODCALLTYPE HeldObject(REFCLSID wanted, IDispatch * *held) = 0;
};

/// Negative, so that it can never be a member's own.
inline constexpr DISPID ownObjectDispatchId = -0x56544E;

/// What `object`, of class `wanted`, holds; empty for a null object or one that holds nothing. Throws
/// DISP_E_TYPEMISMATCH (error 13) for an object that is not of this class.
[[nodiscard]] Ptr<IDispatch> heldObject(IUnknown* object, REFCLSID wanted);

/// The answer to a call of ownObjectDispatchId, whose argument is the class id as text.
HRESULT invokeOwnObject(IUnknown* self, const DISPPARAMS* arguments, VARIANT* result) noexcept;

}  // namespace vtdn::com

#ifdef __CRT_UUID_DECL
__CRT_UUID_DECL(vtdn::com::IOwnObject, 0x6C0B1D3A, 0x6E2C, 0x4B0F, 0x9C, 0x57, 0x2E, 0x4C, 0x7D, 0x0E, 0x5A,
                0x91)
#endif

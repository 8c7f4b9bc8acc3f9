#include "com/own_object.h"

#include "com/error.h"
#include "com/variant.h"

namespace vtdn::com {

Ptr<IDispatch> heldObject(IUnknown* object, REFCLSID wanted) {
    if (!object) return nullptr;
    const Ptr<IUnknown> asked(object);
    Ptr<IDispatch> held;
    if (const Ptr<IOwnObject> own = asked.as<IOwnObject>()) {
        check(own->HeldObject(wanted, held.receive()));
        return held;
    }
    if (const Ptr<IDispatch> proxy = asked.as<IDispatch>(IID_IDispatch)) {
        wchar_t text[39];
        StringFromGUID2(wanted, text, 39);
        Variant argument = Variant::of(text);
        DISPPARAMS arguments{argument.inOut(), nullptr, 1, 0};
        Variant answer;
        const HRESULT result =
            proxy->Invoke(ownObjectDispatchId, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &arguments,
                          answer.receive(), nullptr, nullptr);
        if (SUCCEEDED(result) && answer.type() == VT_DISPATCH) return Ptr<IDispatch>(answer.get().pdispVal);
    }
    throwError(DISP_E_TYPEMISMATCH);
}

HRESULT invokeOwnObject(IUnknown* self, const DISPPARAMS* arguments, VARIANT* result) noexcept {
    CLSID wanted;
    if (!result || !arguments || arguments->cArgs != 1 || arguments->rgvarg[0].vt != VT_BSTR ||
        FAILED(CLSIDFromString(arguments->rgvarg[0].bstrVal, &wanted)))
        return DISP_E_MEMBERNOTFOUND;
    VariantInit(result);
    const Ptr<IOwnObject> own = Ptr<IUnknown>(self).as<IOwnObject>();
    if (!own) return DISP_E_MEMBERNOTFOUND;
    Ptr<IDispatch> held;
    const HRESULT answer = own->HeldObject(wanted, held.receive());
    if (FAILED(answer)) return answer;
    result->vt = VT_DISPATCH;
    result->pdispVal = held.detach();
    return S_OK;
}

}  // namespace vtdn::com

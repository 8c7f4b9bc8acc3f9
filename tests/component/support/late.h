// Late-bound calls as clients make them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "com/platform.h"
#include "com/ptr.h"
#include "com/variant.h"

namespace vtdn::test {

/// References to variables of a client.
inline VARIANT reference(VARTYPE type, void* variable) noexcept {
    VARIANT v;
    VariantInit(&v);
    v.vt = static_cast<VARTYPE>(VT_BYREF | type);
    v.byref = variable;
    return v;
}
inline VARIANT ref(LONG& variable) noexcept {
    return reference(VT_I4, &variable);
}
inline VARIANT ref(float& variable) noexcept {
    return reference(VT_R4, &variable);
}
inline VARIANT ref(BSTR& variable) noexcept {
    return reference(VT_BSTR, &variable);
}
inline VARIANT ref(com::Variant& variable) noexcept {
    return reference(VT_VARIANT, variable.inOut());
}
inline VARIANT refArray(VARTYPE type, SAFEARRAY*& variable) noexcept {
    return reference(static_cast<VARTYPE>(VT_ARRAY | type), &variable);
}
inline VARIANT array(VARTYPE type, SAFEARRAY* value) noexcept {
    VARIANT v;
    VariantInit(&v);
    v.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    v.parray = value;
    return v;
}

/// One late-bound caller: makes calls by name and keeps what came back from the last.
class Late {
  public:
    explicit Late(IDispatch* object) noexcept : object_(object) {}
    Late(const Late&) = delete;
    Late& operator=(const Late&) = delete;
    ~Late() { clear(); }

    /// The arguments in their declared order.
    HRESULT call(const wchar_t* name, std::vector<VARIANT> arguments = {}, WORD flags = DISPATCH_METHOD) {
        return callNamed(name, {}, std::move(arguments), flags);
    }
    /// `names` belong to the last of the arguments.
    HRESULT callNamed(const wchar_t* name, std::vector<std::wstring> names, std::vector<VARIANT> arguments,
                      WORD flags = DISPATCH_METHOD) {
        std::vector<LPOLESTR> pointers{const_cast<OLECHAR*>(name)};
        for (std::wstring& text : names) pointers.push_back(text.data());
        std::vector<DISPID> ids(pointers.size());
        const HRESULT known = object_->GetIDsOfNames(
            IID_NULL, pointers.data(), static_cast<UINT>(pointers.size()), LOCALE_USER_DEFAULT, ids.data());
        if (FAILED(known)) return known;
        std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
        return callId(ids.front(), std::move(named), std::move(arguments), flags);
    }
    HRESULT get(const wchar_t* name, std::vector<VARIANT> arguments = {}) {
        return call(name, std::move(arguments), DISPATCH_PROPERTYGET);
    }
    /// The last of the arguments is the new value.
    HRESULT put(const wchar_t* name, std::vector<VARIANT> arguments, WORD flags = DISPATCH_PROPERTYPUT) {
        OLECHAR* pointer = const_cast<OLECHAR*>(name);
        DISPID id = DISPID_UNKNOWN;
        const HRESULT known = object_->GetIDsOfNames(IID_NULL, &pointer, 1, LOCALE_USER_DEFAULT, &id);
        return FAILED(known) ? known : callId(id, {DISPID_PROPERTYPUT}, std::move(arguments), flags);
    }
    HRESULT callId(DISPID id, std::vector<DISPID> named, std::vector<VARIANT> arguments, WORD flags) {
        clear();
        std::vector<VARIANT> wire(arguments.rbegin(), arguments.rend());
        DISPPARAMS list{wire.data(), named.data(), static_cast<UINT>(wire.size()),
                        static_cast<UINT>(named.size())};
        return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &list, result.receive(), &exception,
                               &bad);
    }

    /// The last result as text.
    [[nodiscard]] std::wstring text() const {
        com::Bstr converted;
        return FAILED(com::toText(result.get(), converted)) ? L"?" : std::wstring(converted.view());
    }
    [[nodiscard]] std::wstring description() const {
        return std::wstring(com::view(exception.bstrDescription));
    }
    [[nodiscard]] std::wstring source() const { return std::wstring(com::view(exception.bstrSource)); }

    static constexpr UINT none = 0xFFFF;
    com::Variant result;
    EXCEPINFO exception{};
    UINT bad = none;  ///< index in rgvarg: the last argument is 0

  private:
    void clear() noexcept {
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
        exception = {};
        bad = none;
    }

    com::Ptr<IDispatch> object_;
};

}  // namespace vtdn::test

#include "com/variant.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include "com/error.h"
#include "com/safe_array.h"

namespace vtdn::com {
namespace {

/// Not every compiler's headers declare the source of a copy as const; the platform only reads it.
VARIANT* source(const VARIANT& value) noexcept {
    return const_cast<VARIANT*>(&value);
}

Variant withType(VARTYPE type) noexcept {
    Variant v;
    v.inOut()->vt = type;
    return v;
}

/// Calls `use` with the value itself: by-reference variants are followed.
template <class Use>
HRESULT withValue(const VARIANT& variant, Use use) noexcept {
    const VARIANT* value = &variant;
    // Twice: a script's variable may hold a reference to another variable.
    for (int depth = 0; depth < 2 && value->vt == (VT_BYREF | VT_VARIANT) && value->pvarVal; ++depth)
        value = value->pvarVal;
    if (!(value->vt & VT_BYREF)) return use(*value);
    if (!value->byref) return DISP_E_TYPEMISMATCH;
    Variant copy;
    const HRESULT result = VariantCopyInd(copy.inOut(), source(*value));
    return FAILED(result) ? result : use(copy.get());
}

/// The platform's conversion, after what it would answer differently from an automation client's own
/// language.
HRESULT convert(const VARIANT& value, VARTYPE type, Variant& out) noexcept {
    switch (value.vt) {
        case VT_NULL:
            return invalidUseOfNull;
        case VT_ERROR:
            return DISP_E_TYPEMISMATCH;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if (!value.punkVal) return unsetObject;
            break;
        default:
            break;
    }
    // With True and False for booleans; a text that holds NUL counts up to it, as everywhere on the platform.
    return VariantChangeTypeEx(out.receive(), source(value), GetUserDefaultLCID(), VARIANT_ALPHABOOL, type);
}

/// Half to even, whatever the rounding mode; `value` is within the range of 32 bits by at least one.
double roundHalfEven(double value) noexcept {
    const double below = std::floor(value);
    const double fraction = value - below;
    if (fraction < 0.5) return below;
    if (fraction > 0.5) return below + 1;
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

template <class Int>
HRESULT wholeNumber(double value, Int& out) noexcept {
    constexpr double lowest = std::numeric_limits<Int>::min();
    constexpr double highest = std::numeric_limits<Int>::max();
    // Written so that a NaN is out of range.
    if (!(value >= lowest - 1 && value <= highest + 1)) return DISP_E_OVERFLOW;
    const double rounded = roundHalfEven(value);
    if (rounded < lowest || rounded > highest) return DISP_E_OVERFLOW;
    out = static_cast<Int>(rounded);
    return S_OK;
}

template <class Int>
HRESULT toInteger(const VARIANT& variant, Int& out) noexcept {
    constexpr VARTYPE type = sizeof(Int) == 2 ? VT_I2 : VT_I4;
    return withValue(variant, [&](const VARIANT& value) noexcept -> HRESULT {
        switch (value.vt) {
            case VT_I2:
                out = value.iVal;
                return S_OK;
            case VT_I4:
                if (value.lVal < std::numeric_limits<Int>::min() ||
                    value.lVal > std::numeric_limits<Int>::max())
                    return DISP_E_OVERFLOW;
                out = static_cast<Int>(value.lVal);
                return S_OK;
            case VT_UI4:
            case VT_UINT:
                // Not every platform's own conversion sees that it does not fit.
                if (value.ulVal > static_cast<ULONG>(std::numeric_limits<Int>::max())) return DISP_E_OVERFLOW;
                out = static_cast<Int>(value.ulVal);
                return S_OK;
            case VT_R4:
                return wholeNumber(value.fltVal, out);
            case VT_R8:
                return wholeNumber(value.dblVal, out);
            default:
                break;
        }
        Variant converted;
        const HRESULT result = convert(value, type, converted);
        if (FAILED(result)) return result;
        if constexpr (type == VT_I2)
            out = converted.get().iVal;
        else
            out = converted.get().lVal;
        return S_OK;
    });
}

}  // namespace

Variant::Variant(const Variant& other) : Variant() {
    check(VariantCopy(&value_, source(other.value_)));
}

Variant& Variant::operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

Variant Variant::copyOf(const VARIANT& value) {
    Variant v;
    check(VariantCopyInd(&v.value_, source(value)));
    return v;
}

Variant Variant::null() noexcept {
    return withType(VT_NULL);
}

Variant Variant::missing() noexcept {
    Variant v = withType(VT_ERROR);
    v.value_.scode = DISP_E_PARAMNOTFOUND;
    return v;
}

Variant Variant::of(LONG value) noexcept {
    Variant v = withType(VT_I4);
    v.value_.lVal = value;
    return v;
}

Variant Variant::of(float value) noexcept {
    Variant v = withType(VT_R4);
    v.value_.fltVal = value;
    return v;
}

Variant Variant::of(double value) noexcept {
    Variant v = withType(VT_R8);
    v.value_.dblVal = value;
    return v;
}

Variant Variant::of(std::wstring_view text) {
    Bstr owned(text);
    Variant v = withType(VT_BSTR);
    v.value_.bstrVal = owned.detach();
    return v;
}

Variant Variant::ofBool(bool value) noexcept {
    Variant v = withType(VT_BOOL);
    v.value_.boolVal = variantBool(value);
    return v;
}

Variant Variant::ofDate(DATE value) noexcept {
    Variant v = withType(VT_DATE);
    v.value_.date = value;
    return v;
}

Variant Variant::of(IDispatch* object) noexcept {
    Variant v = withType(VT_DISPATCH);
    v.value_.pdispVal = object;
    if (object) object->AddRef();
    return v;
}

Variant Variant::of(SAFEARRAY* array) {
    SAFEARRAY* copy = nullptr;
    if (array) {
        needElementType(array, VT_VARIANT);
        check(SafeArrayCopy(array, &copy));
    }
    Variant v = withType(VT_ARRAY | VT_VARIANT);
    v.value_.parray = copy;
    return v;
}

void Variant::detachTo(VARIANT* out) noexcept {
    *out = value_;
    VariantInit(&value_);
}

bool isNumeric(const VARIANT& variant) noexcept {
    const HRESULT result = withValue(variant, [](const VARIANT& value) noexcept -> HRESULT {
        switch (value.vt) {
            case VT_I1:
            case VT_I2:
            case VT_I4:
            case VT_I8:
            case VT_INT:
            case VT_UI1:
            case VT_UI2:
            case VT_UI4:
            case VT_UI8:
            case VT_UINT:
            case VT_R4:
            case VT_R8:
            case VT_CY:
            case VT_DECIMAL:
            case VT_BOOL:
                return S_OK;
            case VT_BSTR: {
                // Parses with NUMPRS_STD and then converts, so that a number beyond a double is none.
                double number = 0;
                return value.bstrVal ? VarR8FromStr(value.bstrVal, GetUserDefaultLCID(), 0, &number)
                                     : DISP_E_TYPEMISMATCH;
            }
            default:
                return DISP_E_TYPEMISMATCH;
        }
    });
    return SUCCEEDED(result);
}

HRESULT toInt16(const VARIANT& value, std::int16_t& out) noexcept {
    return toInteger(value, out);
}

HRESULT toInt32(const VARIANT& value, LONG& out) noexcept {
    return toInteger(value, out);
}

HRESULT toSingle(const VARIANT& variant, float& out) noexcept {
    return withValue(variant, [&](const VARIANT& value) noexcept -> HRESULT {
        switch (value.vt) {
            case VT_R4:
                out = value.fltVal;
                return S_OK;
            case VT_I4:
                out = static_cast<float>(value.lVal);
                return S_OK;
            case VT_R8:
                if (std::fabs(value.dblVal) > FLT_MAX) return DISP_E_OVERFLOW;
                out = static_cast<float>(value.dblVal);
                return S_OK;
            default:
                break;
        }
        Variant converted;
        const HRESULT result = convert(value, VT_R4, converted);
        if (SUCCEEDED(result)) out = converted.get().fltVal;
        return result;
    });
}

HRESULT toBool(const VARIANT& variant, bool& out) noexcept {
    return withValue(variant, [&](const VARIANT& value) noexcept -> HRESULT {
        if (value.vt == VT_BOOL) {
            out = value.boolVal != VARIANT_FALSE;
            return S_OK;
        }
        Variant converted;
        const HRESULT result = convert(value, VT_BOOL, converted);
        if (SUCCEEDED(result)) out = converted.get().boolVal != VARIANT_FALSE;
        return result;
    });
}

HRESULT toText(const VARIANT& variant, Bstr& out) noexcept {
    return withValue(variant, [&](const VARIANT& value) noexcept -> HRESULT {
        if (value.vt == VT_BSTR) {
            BSTR copy = SysAllocStringLen(value.bstrVal, SysStringLen(value.bstrVal));
            if (!copy) return E_OUTOFMEMORY;
            out = Bstr::adopt(copy);
            return S_OK;
        }
        Variant converted;
        const HRESULT result = convert(value, VT_BSTR, converted);
        if (FAILED(result)) return result;
        VARIANT text;
        converted.detachTo(&text);
        out = Bstr::adopt(text.bstrVal);
        return S_OK;
    });
}

}  // namespace vtdn::com

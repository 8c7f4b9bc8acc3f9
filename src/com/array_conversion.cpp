#include "com/array_conversion.h"

#include <cstring>
#include <utility>

#include "com/safe_array.h"
#include "com/variant.h"

namespace vtdn::com {
namespace {

/// Locks an array's elements, whatever its dimensions.
class Elements {
  public:
    explicit Elements(SAFEARRAY* array) noexcept
        : array_(array), result_(SafeArrayAccessData(array, &data_)) {}
    ~Elements() {
        if (SUCCEEDED(result_)) SafeArrayUnaccessData(array_);
    }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;

    [[nodiscard]] HRESULT result() const noexcept { return result_; }
    [[nodiscard]] BYTE* at(std::size_t index) const noexcept {
        return static_cast<BYTE*>(data_) + index * array_->cbElements;
    }
    [[nodiscard]] VARIANT& variant(std::size_t index) const noexcept {
        return static_cast<VARIANT*>(data_)[index];
    }

  private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
    HRESULT result_;
};

std::size_t elementCount(const SAFEARRAY* array) noexcept {
    std::size_t count = 1;
    for (USHORT i = 0; i < array->cDims; ++i) count *= array->rgsabound[i].cElements;
    return array->cDims == 0 ? 0 : count;
}

bool sameDimensions(const SAFEARRAY* a, const SAFEARRAY* b) noexcept {
    return a->cDims == b->cDims &&
           std::memcmp(a->rgsabound, b->rgsabound, a->cDims * sizeof(SAFEARRAYBOUND)) == 0;
}

/// An array of the same dimensions; the descriptor keeps its bounds in the reverse of the order that the
/// platform's function takes.
SafeArray likeIt(const SAFEARRAY* array, VARTYPE type) noexcept {
    constexpr USHORT most = 60;
    SAFEARRAYBOUND bounds[most];
    const USHORT dims = array->cDims;
    if (dims > most || !canHold(type, elementCount(array))) return SafeArray();
    for (USHORT i = 0; i < dims; ++i) bounds[i] = array->rgsabound[dims - 1 - i];
    return SafeArray(SafeArrayCreate(type, dims, bounds));
}

bool isObject(VARTYPE type) noexcept {
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

HRESULT convertElement(const VARIANT& from, VARTYPE type, REFIID iid, BYTE* to, std::size_t size) noexcept {
    if (isObject(type)) return objectArgument(from, iid, reinterpret_cast<IUnknown**>(to));
    VARIANT converted;
    const HRESULT result = convertArgument(from, type, converted);
    // Every element type that is not an object lies in the union of a variant as it lies in an array.
    if (SUCCEEDED(result)) std::memcpy(to, &converted.llVal, size);
    return result;
}

}  // namespace

HRESULT convertArgument(const VARIANT& value, VARTYPE type, VARIANT& out) noexcept {
    VariantInit(&out);
    if (value.vt == VT_ERROR) return DISP_E_TYPEMISMATCH;
    const HRESULT result = VariantChangeTypeEx(&out, const_cast<VARIANT*>(&value), GetUserDefaultLCID(),
                                               VARIANT_ALPHABOOL, type);
    if (SUCCEEDED(result) || result == DISP_E_OVERFLOW || result == E_OUTOFMEMORY) return result;
    return DISP_E_TYPEMISMATCH;
}

HRESULT objectArgument(const VARIANT& value, REFIID iid, IUnknown** out) noexcept {
    *out = nullptr;
    const VARIANT& direct = value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal ? *value.pvarVal : value;
    if (direct.vt == VT_EMPTY) return S_OK;
    if (!isObject(direct.vt)) return DISP_E_TYPEMISMATCH;
    if (!direct.punkVal) return S_OK;
    const HRESULT result = direct.punkVal->QueryInterface(iid, reinterpret_cast<void**>(out));
    if (SUCCEEDED(result)) return S_OK;
    *out = nullptr;
    return result == E_OUTOFMEMORY ? result : DISP_E_TYPEMISMATCH;
}

HRESULT fromVariants(SAFEARRAY* variants, VARTYPE type, REFIID iid, SAFEARRAY** out) noexcept {
    *out = nullptr;
    if (!variants) return S_OK;
    SafeArray made = likeIt(variants, type);
    if (!made.get()) return E_OUTOFMEMORY;
    {
        const Elements from(variants);
        if (FAILED(from.result())) return from.result();
        const Elements to(made.get());
        if (FAILED(to.result())) return to.result();
        const std::size_t count = elementCount(variants);
        for (std::size_t i = 0; i < count; ++i) {
            const HRESULT result =
                convertElement(from.variant(i), type, iid, to.at(i), made.get()->cbElements);
            if (FAILED(result)) return result;
        }
    }
    made.detachTo(out);
    return S_OK;
}

HRESULT toVariants(SAFEARRAY* array, VARTYPE type, SAFEARRAY** out) noexcept {
    *out = nullptr;
    if (!array) return S_OK;
    SafeArray made = likeIt(array, VT_VARIANT);
    if (!made.get()) return E_OUTOFMEMORY;
    {
        const Elements from(array);
        if (FAILED(from.result())) return from.result();
        const Elements to(made.get());
        if (FAILED(to.result())) return to.result();
        const std::size_t count = elementCount(array);
        for (std::size_t i = 0; i < count; ++i) {
            VARIANT shallow;
            VariantInit(&shallow);
            shallow.vt = type;
            std::memcpy(&shallow.llVal, from.at(i), array->cbElements);
            const HRESULT result = VariantCopy(&to.variant(i), &shallow);
            if (FAILED(result)) return result;
        }
    }
    made.detachTo(out);
    return S_OK;
}

HRESULT replaceVariants(SAFEARRAY** target, SAFEARRAY** fresh) noexcept {
    if (*target && *fresh && sameDimensions(*target, *fresh)) {
        const Elements to(*target);
        if (FAILED(to.result())) return to.result();
        const Elements from(*fresh);
        if (FAILED(from.result())) return from.result();
        const std::size_t count = elementCount(*target);
        for (std::size_t i = 0; i < count; ++i) std::swap(to.variant(i), from.variant(i));
        return S_OK;
    }
    if (*target && (isFixed(**target) || (*target)->cLocks != 0)) return DISP_E_ARRAYISLOCKED;
    std::swap(*target, *fresh);
    return S_OK;
}

}  // namespace vtdn::com

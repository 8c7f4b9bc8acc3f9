#include "com/safe_array.h"

#include <limits>
#include <new>

namespace vtdn::com {
bool isFixed(const SAFEARRAY& array) noexcept {
    return (array.fFeatures & (FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE)) != 0;
}

Bounds bounds(SAFEARRAY* array) {
    if (SafeArrayGetDim(array) != 1) throwError(DISP_E_BADINDEX);
    Bounds b{};
    check(SafeArrayGetLBound(array, 1, &b.lower));
    check(SafeArrayGetUBound(array, 1, &b.upper));
    return b;
}

void needElementType(SAFEARRAY* array, VARTYPE type) {
    VARTYPE found = VT_EMPTY;
    if (!array || FAILED(SafeArrayGetVartype(array, &found)) || found != type)
        throwError(DISP_E_TYPEMISMATCH);
}

SafeArray SafeArray::create(VARTYPE type, LONG count) {
    if (count < 0) throwError(DISP_E_BADINDEX);
    SAFEARRAY* descriptor = nullptr;
    check(SafeArrayAllocDescriptorEx(type, 1, &descriptor));
    SafeArray array(descriptor);
    // Not every platform notices a size that wraps around.
    if (static_cast<std::size_t>(count) > std::numeric_limits<std::size_t>::max() / descriptor->cbElements)
        throw std::bad_alloc();
    descriptor->rgsabound[0] = {static_cast<ULONG>(count), 0};
    if (FAILED(SafeArrayAllocData(descriptor))) throw std::bad_alloc();
    return array;
}

void redimension(SAFEARRAY** array, VARTYPE type, LONG count) {
    const Bounds have = bounds(*array);
    needElementType(*array, type);
    if (have.lower == 0 && have.upper == static_cast<long long>(count) - 1) return;
    if (count <= 0) throwError(DISP_E_BADINDEX);
    if (isFixed(**array) || (*array)->cLocks != 0) throwError(DISP_E_ARRAYISLOCKED);
    SafeArray fresh = SafeArray::create(type, count);
    check(SafeArrayDestroy(*array));
    fresh.detachTo(array);
}

}  // namespace vtdn::com

#include "com/safe_array.h"

#include <limits>
#include <new>

namespace vtdn::com {
std::size_t elementSize(VARTYPE type) noexcept {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        case VT_VARIANT:
        case VT_DECIMAL:
            return sizeof(VARIANT);
        default:
            return sizeof(void*);
    }
}

bool canHold(VARTYPE type, std::size_t count) noexcept {
    return count <= std::numeric_limits<ULONG>::max() / elementSize(type);
}

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
    if (!canHold(type, static_cast<std::size_t>(count))) throw std::bad_alloc();
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), 0};
    SafeArray array(SafeArrayCreate(type, 1, &bound));
    if (!array.get()) throw std::bad_alloc();
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

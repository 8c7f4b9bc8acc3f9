#include "data_interface/data_array_item.h"

#include "data_interface/failure.h"
#include "data_interface/value.h"

namespace vtdn::embedded {

HRESULT DataArrayItem::get_Value(VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArrayItem), [&] {
        com::needPointers(result);
        VariantInit(result);
        toVariant(item_.value).detachTo(result);
    });
}

HRESULT DataArrayItem::put_Value(VARIANT value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArrayItem), [&] { item_.value = fromVariant(value); });
}

HRESULT DataArrayItem::get_MC(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArrayItem), [&] {
        com::needPointers(result);
        *result = item_.code;
    });
}

HRESULT DataArrayItem::put_MC(LONG value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArrayItem), [&] { item_.code = value; });
}

}  // namespace vtdn::embedded

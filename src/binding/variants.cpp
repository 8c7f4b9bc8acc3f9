#include "binding/variants.h"

#include "com/error.h"
#include "common/pid.h"

namespace vtdn::binding {

bool isValidPid(const VARIANT& value) noexcept {
    switch (value.vt) {
        case VT_I2:
        case VT_I4:
        case VT_R4:
        case VT_R8:
        case VT_DECIMAL: {
            LONG pid = 0;
            return SUCCEEDED(com::toInt32(value, pid)) && common::isValidPid(static_cast<std::int32_t>(pid));
        }
        case VT_BSTR:
            return common::isValidPid(com::view(value.bstrVal));
        default:
            return false;
    }
}

com::Variant nullToEmpty(const VARIANT& value) {
    return value.vt == VT_NULL ? com::Variant() : com::Variant::copyOf(value);
}

bool isTrue(const com::Variant& value) {
    bool truth = false;
    if (!value.isNull()) com::check(com::toBool(value.get(), truth));
    return truth;
}

}  // namespace vtdn::binding

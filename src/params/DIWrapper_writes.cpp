#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/writes.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Param_WriteMC(LONG lngPID, DATE dtmTStamp, LONG lngMC,
                                      VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeMc, lngPID, dtmTStamp, {std::nullopt, lngMC});
    });
}

STDMETHODIMP DIWrapper::Param_WriteValue_Null(LONG lngPID, DATE dtmTStamp, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeValueNull, lngPID, dtmTStamp, {com::Variant::null()});
    });
}

STDMETHODIMP DIWrapper::Param_WriteValue_Integer(LONG lngPID, DATE dtmTStamp, LONG lngValue,
                                                 VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeValueInteger, lngPID, dtmTStamp,
                             {com::Variant::of(lngValue)});
    });
}

STDMETHODIMP DIWrapper::Param_WriteValue_Single(LONG lngPID, DATE dtmTStamp, float sngValue,
                                                VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeValueSingle, lngPID, dtmTStamp,
                             {com::Variant::of(sngValue)});
    });
}

STDMETHODIMP DIWrapper::Param_WriteValue_String(LONG lngPID, DATE dtmTStamp, BSTR strValue,
                                                VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeValueString, lngPID, dtmTStamp,
                             {com::Variant::of(com::view(strValue))});
    });
}

STDMETHODIMP DIWrapper::Param_WriteVMC_Null(LONG lngPID, DATE dtmTStamp, LONG lngMC,
                                            VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeVmcNull, lngPID, dtmTStamp,
                             {com::Variant::null(), lngMC});
    });
}

STDMETHODIMP DIWrapper::Param_WriteVMC_Integer(LONG lngPID, DATE dtmTStamp, LONG lngValue, LONG lngMC,
                                               VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeVmcInteger, lngPID, dtmTStamp,
                             {com::Variant::of(lngValue), lngMC});
    });
}

STDMETHODIMP DIWrapper::Param_WriteVMC_Single(LONG lngPID, DATE dtmTStamp, float sngValue, LONG lngMC,
                                              VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeVmcSingle, lngPID, dtmTStamp,
                             {com::Variant::of(sngValue), lngMC});
    });
}

// A number under its name: the argument is declared as a single, and stored as one.
STDMETHODIMP DIWrapper::Param_WriteVMC_String(LONG lngPID, DATE dtmTStamp, float strValue, LONG lngMC,
                                              VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return params::write(session_, params::writeVmcString, lngPID, dtmTStamp,
                             {com::Variant::of(strValue), lngMC});
    });
}

}  // namespace vtdn

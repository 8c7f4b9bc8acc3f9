#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/special.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Param_CallSF_CalcOpTime(LONG lngPID, DATE dtmStart, DATE dtmEnd,
                                                LONG* result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return params::callOperatingTime(session_, lngPID, dtmStart, dtmEnd); });
}

STDMETHODIMP DIWrapper::Param_GetSpecialValue_Int32(LONG lngPID, LONG lngSpecialValueID,
                                                    LONG* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return params::specialValueAsLong(session_, lngPID, lngSpecialValueID); });
}

STDMETHODIMP DIWrapper::Param_GetSpecialValue_Boolean(LONG lngPID, LONG lngSpecialValueID,
                                                      VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return params::specialValueAsBool(session_, lngPID, lngSpecialValueID); });
}

STDMETHODIMP DIWrapper::Param_GetSpecialValue_String(LONG lngPID, LONG lngSpecialValueID,
                                                     BSTR* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return params::specialValueAsText(session_, lngPID, lngSpecialValueID); });
}

STDMETHODIMP DIWrapper::Param_GetSpecialFunction_Boolean(LONG lngPID, LONG lngSpecialFunctionID,
                                                         SAFEARRAY** varMoreArgs,
                                                         VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(varMoreArgs);
        return params::specialFunctionAsBool(session_, lngPID, lngSpecialFunctionID, *varMoreArgs);
    });
}

STDMETHODIMP DIWrapper::Param_GetSpecialFunction_Int32(LONG lngPID, LONG lngSpecialFunctionID,
                                                       SAFEARRAY** varMoreArgs, LONG* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(varMoreArgs);
        return params::specialFunctionAsLong(session_, lngPID, lngSpecialFunctionID, *varMoreArgs);
    });
}

STDMETHODIMP DIWrapper::Param_GetSpecialFunction_Real32(LONG lngPID, LONG lngSpecialFunctionID,
                                                        SAFEARRAY** varMoreArgs, LONG* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(varMoreArgs);
        return params::specialFunctionAsRoundedSingle(session_, lngPID, lngSpecialFunctionID, *varMoreArgs);
    });
}

STDMETHODIMP DIWrapper::Param_GetSpecialFunction_String(LONG lngPID, LONG lngSpecialFunctionID,
                                                        SAFEARRAY** varMoreArgs, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(varMoreArgs);
        return params::specialFunctionAsText(session_, lngPID, lngSpecialFunctionID, *varMoreArgs);
    });
}

}  // namespace vtdn

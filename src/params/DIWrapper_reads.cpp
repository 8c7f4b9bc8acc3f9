#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/reads.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Param_GetData_String(LONG lngPID, DATE dtmStartTime, BSTR* strValue, LONG* lngMC,
                                             VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(strValue, lngMC);
        ClientText value(strValue);
        *lngMC = 0;
        return params::readText(session_, lngPID, dtmStartTime, value.text(), *lngMC);
    });
}

STDMETHODIMP DIWrapper::Param_GetDataArray_Integer(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                                   BSTR strIntervalType, LONG lngIntervalLength,
                                                   SAFEARRAY** alngValues, SAFEARRAY** alngMCs,
                                                   SAFEARRAY** ablnNonNumeric,
                                                   VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(alngValues, alngMCs, ablnNonNumeric);
        return params::readIntegers(
            session_, {lngPID, dtmPeriodStart, lngCount, com::view(strIntervalType), lngIntervalLength},
            com::ClientArray<LONG>(alngValues), com::ClientArray<LONG>(alngMCs),
            com::ClientArray<VARIANT_BOOL>(ablnNonNumeric));
    });
}

STDMETHODIMP DIWrapper::Param_GetDataArray_Single(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                                  BSTR strIntervalType, LONG lngIntervalLength,
                                                  SAFEARRAY** asngValues, SAFEARRAY** alngMCs,
                                                  SAFEARRAY** ablnNonNumeric, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(asngValues, alngMCs, ablnNonNumeric);
        return params::readSingles(
            session_, {lngPID, dtmPeriodStart, lngCount, com::view(strIntervalType), lngIntervalLength},
            com::ClientArray<float>(asngValues), com::ClientArray<LONG>(alngMCs),
            com::ClientArray<VARIANT_BOOL>(ablnNonNumeric));
    });
}

STDMETHODIMP DIWrapper::Param_GetDataArray_String(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                                  BSTR strIntervalType, LONG lngIntervalLength,
                                                  SAFEARRAY** astrValues, SAFEARRAY** alngMCs,
                                                  VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(astrValues, alngMCs);
        return params::readTexts(
            session_, {lngPID, dtmPeriodStart, lngCount, com::view(strIntervalType), lngIntervalLength},
            com::ClientArray<BSTR>(astrValues), com::ClientArray<LONG>(alngMCs));
    });
}

}  // namespace vtdn

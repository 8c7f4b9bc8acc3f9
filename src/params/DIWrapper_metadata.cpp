#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/metadata.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Param_DoesExist(LONG lngPID, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::doesExist(session_, lngPID); });
}

STDMETHODIMP DIWrapper::Param_IsDBDataIO(LONG lngPID, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::isDatabaseIo(session_, lngPID); });
}

STDMETHODIMP DIWrapper::Param_Fmt(LONG lngPID, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::text(session_, params::format, lngPID); });
}

STDMETHODIMP DIWrapper::Param_IntervalType(LONG lngPID, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::text(session_, params::intervalType, lngPID); });
}

STDMETHODIMP DIWrapper::Param_MeasUnits(LONG lngPID, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::text(session_, params::measUnits, lngPID); });
}

STDMETHODIMP DIWrapper::Param_Name(LONG lngPID, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::text(session_, params::name, lngPID); });
}

STDMETHODIMP DIWrapper::Param_FindPIDsUsedByPID(LONG lngPID, BSTR* strEditablePIDs, BSTR* strConstantPIDs,
                                                VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(strEditablePIDs, strConstantPIDs);
        ClientText editable(strEditablePIDs);
        ClientText constant(strConstantPIDs);
        return params::findPidsUsedBy(session_, lngPID, editable.text(), constant.text());
    });
}

}  // namespace vtdn

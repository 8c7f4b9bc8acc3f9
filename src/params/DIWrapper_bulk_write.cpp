#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/bulk_write.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Param_WriteValues(LONG lngPID, DATE dtmPeriodStart, LONG lngIntervalCount,
                                          BSTR strIntervalType, LONG lngIntervalLength, BSTR strValues,
                                          SAFEARRAY** lngMCs, SAFEARRAY** lngFlags,
                                          VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(lngMCs, lngFlags);
        return params::writeValues(
            session_,
            {lngPID, dtmPeriodStart, lngIntervalCount, com::view(strIntervalType), lngIntervalLength},
            com::view(strValues), *lngMCs, *lngFlags);
    });
}

}  // namespace vtdn

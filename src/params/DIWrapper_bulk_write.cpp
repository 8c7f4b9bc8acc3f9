#include <string>
#include <utility>

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
        // Copies: what the engine raises may reach code that changes the client's texts.
        const std::wstring intervalType(com::view(strIntervalType));
        std::wstring values(com::view(strValues));
        return params::writeValues(
            session_, {lngPID, dtmPeriodStart, lngIntervalCount, intervalType, lngIntervalLength},
            std::move(values), *lngMCs, *lngFlags);
    });
}

}  // namespace vtdn

#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "occurrences/data_points.h"

namespace vtdn {

STDMETHODIMP DIWrapper::GetLongTermDataPoints(LONG lngTagID, BSTR strInterval, DATE dtmFirst, DATE dtmLast,
                                              SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return occurrences::longTermDataPoints(session_, {lngTagID, strInterval}, dtmFirst, dtmLast);
    });
}

STDMETHODIMP DIWrapper::GetShortTermDataPoints(LONG lngTagID, BSTR strInterval, DATE dtmFirst, DATE dtmLast,
                                               SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return occurrences::shortTermDataPoints(session_, {lngTagID, strInterval}, dtmFirst, dtmLast);
    });
}

STDMETHODIMP DIWrapper::MakeBlankDataPointWrapper(DATE dtmStart, _DataPointBasicWrapper** result) noexcept {
    return answer<_DIWrapper>(result, [&] { return occurrences::blankDataPoint(dtmStart); });
}

STDMETHODIMP DIWrapper::UpdateLongTermDataPointXValue(_DataPointBasicWrapper* objDPWrapper, LONG lngTagID,
                                                      BSTR strInterval, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return occurrences::updateLongTermXValue(session_, objDPWrapper, {lngTagID, strInterval});
    });
}

STDMETHODIMP DIWrapper::UpdateShortTermDataPointXValue(_DataPointBasicWrapper* objDPWrapper, LONG lngTagID,
                                                       BSTR strInterval, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return occurrences::updateShortTermXValue(session_, objDPWrapper, {lngTagID, strInterval});
    });
}

}  // namespace vtdn

#include "binding/names.h"
#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Params_FlushCache() noexcept {
    return com::guard(errorSource, __uuidof(_DIWrapper), [&] { binding::flushParameterCache(session_); });
}

STDMETHODIMP DIWrapper::Utils_GetUnitNames(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result, [&] { return binding::unitNames(session_); });
}

STDMETHODIMP DIWrapper::Utils_GetEDRUnitORISCodes(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return binding::reportedUnits(session_, binding::ReportedAs::orisCode); });
}

STDMETHODIMP DIWrapper::Utils_GetEDRUnitIDs(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return binding::reportedUnits(session_, binding::ReportedAs::unitId); });
}

STDMETHODIMP DIWrapper::Utils_GetLongMCNames(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return binding::codeNames(session_, binding::longMonitorCodes); });
}

STDMETHODIMP DIWrapper::Utils_GetShortMCNames(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return binding::codeNames(session_, binding::shortMonitorCodes); });
}

STDMETHODIMP DIWrapper::Utils_GetLongPCNames(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return binding::codeNames(session_, binding::longParameterCodes); });
}

STDMETHODIMP DIWrapper::Utils_GetShortPCNames(SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return binding::codeNames(session_, binding::shortParameterCodes); });
}

STDMETHODIMP DIWrapper::WriteStrToAlarm(DATE dtmTStamp, BSTR strAlarmMsg, BSTR strCategory,
                                        LONG lngAlarmSeverity, BSTR strAlarmGroup, BSTR strAlarmSource,
                                        VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        return binding::writeAlarm(
            session_, {dtmTStamp, strAlarmMsg, strCategory, lngAlarmSeverity, strAlarmGroup, strAlarmSource});
    });
}

}  // namespace vtdn

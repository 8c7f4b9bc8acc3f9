#include "binding/selected_dahs.h"
#include "binding/set_up.h"
#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"

namespace vtdn {

STDMETHODIMP DIWrapper::Setup(LONG lngDahsID, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return binding::setUp(session_, lngDahsID, binding::defaultClientName); });
}

STDMETHODIMP DIWrapper::Setup3(LONG lngDahsID, BSTR strClientAppName, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return binding::setUp(session_, lngDahsID, com::view(strClientAppName)); });
}

HRESULT DIWrapper::setUpForced(const engine::ForcedSite& site, std::wstring_view clientName,
                               VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return binding::setUp(session_, site, clientName); });
}

STDMETHODIMP DIWrapper::Setup2(BSTR strForceSiteID, BSTR strForceAlarmConnection,
                               BSTR strForceConfigConnection, BSTR strForceDataConnection,
                               BSTR strForceDataShortTermConnection, BSTR strForceRealtimeConnection,
                               VARIANT_BOOL* result) noexcept {
    return setUpForced({strForceSiteID, strForceAlarmConnection, strForceConfigConnection,
                        strForceDataConnection, strForceDataShortTermConnection, strForceRealtimeConnection},
                       binding::defaultClientName, result);
}

STDMETHODIMP DIWrapper::Setup4(BSTR strForceSiteID, BSTR strForceAlarmConnection,
                               BSTR strForceConfigConnection, BSTR strForceDataConnection,
                               BSTR strForceDataShortTermConnection, BSTR strForceRealtimeConnection,
                               BSTR strClientAppName, VARIANT_BOOL* result) noexcept {
    return setUpForced({strForceSiteID, strForceAlarmConnection, strForceConfigConnection,
                        strForceDataConnection, strForceDataShortTermConnection, strForceRealtimeConnection},
                       com::view(strClientAppName), result);
}

STDMETHODIMP DIWrapper::Teardown() noexcept {
    return com::guard(errorSource, __uuidof(_DIWrapper), [&] { binding::tearDown(session_); });
}

STDMETHODIMP DIWrapper::GetAndClearProblemsList(BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return session_.takeProblems(); });
}

STDMETHODIMP DIWrapper::SelectedDahs_DahsID(LONG* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return binding::selectedDahsId(session_); });
}

HRESULT DIWrapper::selectedDahs(engine::TextProperty<DISelectedDahs> property, BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return binding::selectedDahsText(session_, property); });
}

STDMETHODIMP DIWrapper::SelectedDahs_VantorDir(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_VantorDir, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_VantorSystemDir(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_SystemDir, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_AlarmConnection(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_AlarmConnection, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_ConfigConnection(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_ConfigConnection, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_DahsCompleteName(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_DahsCompleteName, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_DataConnection(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_DataConnection, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_RealtimeConnection(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_RealtimeConnection, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_DataShortTermConnection(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_DataShortTermConnection, result);
}

STDMETHODIMP DIWrapper::SelectedDahs_SiteID(BSTR* result) noexcept {
    return selectedDahs(&DISelectedDahs::get_SiteID, result);
}

}  // namespace vtdn

#include "data_interface/selected_dahs.h"

#include "com/computer.h"
#include "com/strings.h"

namespace vtdn::embedded {

HRESULT SelectedDahs::text(const std::string& value, BSTR* result) const noexcept {
    return com::guard(errorSource, __uuidof(DISelectedDahs), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(com::fromUtf8(value)).detach();
    });
}

HRESULT SelectedDahs::get_VantorDir(BSTR* result) noexcept {
    return text(session_->dahs().vantor_dir, result);
}

HRESULT SelectedDahs::get_SystemDir(BSTR* result) noexcept {
    return text(session_->dahs().system_dir, result);
}

HRESULT SelectedDahs::get_AlarmConnection(BSTR* result) noexcept {
    return text(session_->dahs().connections.alarm, result);
}

HRESULT SelectedDahs::get_ConfigConnection(BSTR* result) noexcept {
    return text(session_->dahs().connections.config, result);
}

HRESULT SelectedDahs::get_DataConnection(BSTR* result) noexcept {
    return text(session_->dahs().connections.data, result);
}

HRESULT SelectedDahs::get_DataShortTermConnection(BSTR* result) noexcept {
    return text(session_->dahs().connections.data_short_term, result);
}

HRESULT SelectedDahs::get_RealtimeConnection(BSTR* result) noexcept {
    return text(session_->dahs().connections.realtime, result);
}

HRESULT SelectedDahs::get_DahsID(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DISelectedDahs), [&] {
        com::needPointers(result);
        *result = session_->dahs().id;
    });
}

HRESULT SelectedDahs::get_DahsCompleteName(BSTR* result) noexcept {
    return text(session_->dahs().complete_name, result);
}

HRESULT SelectedDahs::get_SiteID(BSTR* result) noexcept {
    return text(session_->dahs().site_id, result);
}

HRESULT SelectedDahs::get_EditUserName(BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DISelectedDahs), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(com::userName()).detach();
    });
}

}  // namespace vtdn::embedded

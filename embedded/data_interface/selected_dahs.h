// The DAHS that an engine is set up on.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

/// Empty texts and id 0 while the engine is not set up. After SetupForced the id is 0, and the directories
/// and the complete name are empty: no entry of the directory was asked.
class SelectedDahs final : public com::Object<SelectedDahs, DISelectedDahs> {
  public:
    explicit SelectedDahs(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    HRESULT STDMETHODCALLTYPE get_VantorDir(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SystemDir(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_AlarmConnection(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ConfigConnection(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DataConnection(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DataShortTermConnection(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RealtimeConnection(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DahsID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DahsCompleteName(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* result) noexcept override;
    /// The user of this computer, as the operating system has it, also while the engine is not set up.
    HRESULT STDMETHODCALLTYPE get_EditUserName(BSTR* result) noexcept override;

  private:
    HRESULT text(const std::string& value, BSTR* result) const noexcept;

    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded

// The data-interface engine: what a client creates, sets up and closes.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/connection_point.h"
#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

/// Set up on one site at a time. Objects that it hands out before it is set up answer as for a site without
/// parameters and codes. A set-up that is refused is said as a message and gives False, and can be tried
/// again at once.
class Engine final : public com::Object<Engine, DIEngine, com::EventSource<DIID_DIEngineEvents>>,
                     public Listener {
  public:
    static constexpr const CLSID& classId = CLSID_DIEngineClass;
    static constexpr const IID& eventsId = DIID_DIEngineEvents;

    Engine();

    /// The source of the edits that do not name one: as much of any name as can be kept.
    HRESULT STDMETHODCALLTYPE SetClientAppName(BSTR name) noexcept override;
    /// "" while it is not set up.
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_AlarmWriter(DIAlarmWriter** result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LongTermData(DIQAManager** result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShortTermData(DIDataPointList** result) noexcept override;
    /// The parameters that carry a relationship, ascending by PID. The arguments are not looked at. Error 91
    /// while it is not set up.
    HRESULT STDMETHODCALLTYPE RelationshipParams(LONG first, LONG second,
                                                 DICollection** result) noexcept override;
    /// The parameters of all these types, ascending by PID, each once. The types are whole numbers in an
    /// array of VARIANT with one dimension; error 13 for anything else, 91 while it is not set up.
    HRESULT STDMETHODCALLTYPE ParamsOfTypes(SAFEARRAY* types, DICollection** result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Params(DIParams** result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Utils(DIUtils** result) noexcept override;
    HRESULT STDMETHODCALLTYPE SetupByDahsID(LONG dahsId, VARIANT_BOOL* result) noexcept override;
    /// The site id must be that of all five databases; an empty one takes theirs. The flag is not looked at.
    HRESULT STDMETHODCALLTYPE SetupForced(BSTR siteId, BSTR alarmConnection, BSTR configConnection,
                                          BSTR dataConnection, BSTR dataShortTermConnection,
                                          BSTR realtimeConnection, VARIANT_BOOL flag,
                                          VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Close() noexcept override;
    HRESULT STDMETHODCALLTYPE get_SelectedDahs(DISelectedDahs** result) noexcept override;

  private:
    ~Engine() override;
    void message(MessageType type, std::wstring_view sentence) override;
    /// Hands out the parameters whose PIDs `find` returns.
    template <class Find>
    HRESULT collect(DICollection** result, Find&& find) noexcept;
    /// Sets up on the DAHS that `find` returns. A second set-up is refused and leaves the first.
    template <class Find>
    HRESULT setUp(VARIANT_BOOL* result, Find&& find) noexcept;

    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded

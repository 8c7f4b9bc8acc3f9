#include "data_interface/engine.h"

#include "com/strings.h"
#include "data_interface/params.h"
#include "data_interface/selected_dahs.h"
#include "data_interface/utils.h"
#include "store/directory.h"
#include "store/home.h"

namespace vtdn::embedded {
namespace {

constexpr DISPID messageEvent = 1;

std::string utf8(BSTR text) {
    return com::toUtf8(com::view(text));
}

// An object of class T, which shares the engine's session.
template <class T, class I>
HRESULT handOut(const std::shared_ptr<Session>& session, I** result) noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::make<T>(session).detach();
    });
}

}  // namespace

Engine::Engine() : session_(std::make_shared<Session>(*this)) {}

Engine::~Engine() {
    session_->engineGone();
}

void Engine::message(MessageType type, std::wstring_view sentence) {
    // A listener may let go of the last reference to this engine.
    const com::Ptr<DIEngine> alive(this);
    raise(messageEvent, {com::Variant::of(static_cast<LONG>(type)), com::Variant::of(sentence)});
}

HRESULT Engine::SetClientAppName(BSTR) noexcept {
    return S_OK;
}

HRESULT Engine::get_Params(DIParams** result) noexcept {
    return handOut<Params>(session_, result);
}

HRESULT Engine::get_Utils(DIUtils** result) noexcept {
    return handOut<Utils>(session_, result);
}

HRESULT Engine::get_SelectedDahs(DISelectedDahs** result) noexcept {
    return handOut<SelectedDahs>(session_, result);
}

template <class Find>
HRESULT Engine::setUp(VARIANT_BOOL* result, Find&& find) noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        // A message can release the last reference of a client; the session outlives it for this call.
        const auto session = session_;
        if (session->isSetUp()) {
            session->say(MessageType::refusal, L"The engine is set up already, on the site " +
                                                   com::fromUtf8(session->dahs().site_id) +
                                                   L". Call Close before it is set up again.");
            return;
        }
        *result = com::variantBool(session->tried([&] { session->setUp(find()); }));
    });
}

HRESULT Engine::SetupByDahsID(LONG dahsId, VARIANT_BOOL* result) noexcept {
    return setUp(result, [&] { return store::Directory::open(store::homeFolder()).get(dahsId); });
}

HRESULT Engine::SetupForced(BSTR siteId, BSTR alarmConnection, BSTR configConnection, BSTR dataConnection,
                            BSTR dataShortTermConnection, BSTR realtimeConnection, VARIANT_BOOL,
                            VARIANT_BOOL* result) noexcept {
    return setUp(result, [&] {
        store::Dahs dahs;
        dahs.site_id = utf8(siteId);
        dahs.connections = {utf8(alarmConnection), utf8(configConnection), utf8(dataConnection),
                            utf8(dataShortTermConnection), utf8(realtimeConnection)};
        return dahs;
    });
}

HRESULT Engine::Close() noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] { session_->close(); });
}

}  // namespace vtdn::embedded

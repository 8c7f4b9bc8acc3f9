#include "data_interface/engine.h"

#include <set>
#include <utility>
#include <vector>

#include "com/safe_array.h"
#include "com/strings.h"
#include "data_interface/alarm_writer.h"
#include "data_interface/collection.h"
#include "data_interface/data_point_list.h"
#include "data_interface/param.h"
#include "data_interface/params.h"
#include "data_interface/qa_manager.h"
#include "data_interface/selected_dahs.h"
#include "data_interface/utils.h"
#include "data_interface/value.h"
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

[[noreturn]] void refuseTypes() {
    com::throwError(DISP_E_TYPEMISMATCH,
                    L"ParamsOfTypes takes parameter types, whole numbers, in an array of variants with one "
                    L"dimension.");
}

LONG typeIn(const VARIANT& element) {
    if (const auto number = wholeNumberIn(com::Variant::copyOf(element).get())) return *number;
    refuseTypes();
}

std::vector<LONG> typesIn(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    if (array == nullptr || SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)) ||
        type != VT_VARIANT)
        refuseTypes();
    std::vector<LONG> types;
    const com::ArrayView<VARIANT> given(array);
    for (const VARIANT& element : given) types.push_back(typeIn(element));
    return types;
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

HRESULT Engine::SetClientAppName(BSTR name) noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] {
        // So much of it fits into a text that is kept, whatever it holds: no character takes more bytes than
        // three.
        session_->nameClient(com::toUtf8(com::view(name).substr(0, store::longestText / 3)));
    });
}

HRESULT Engine::get_SiteID(BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(com::fromUtf8(session_->dahs().site_id)).detach();
    });
}

HRESULT Engine::get_AlarmWriter(DIAlarmWriter** result) noexcept {
    return handOut<AlarmWriter>(session_, result);
}

HRESULT Engine::get_LongTermData(DIQAManager** result) noexcept {
    return handOut<QAManager>(session_, result);
}

HRESULT Engine::get_ShortTermData(DIDataPointList** result) noexcept {
    return handOut<DataPointList>(session_, result);
}

template <class Find>
HRESULT Engine::collect(DICollection** result, Find&& find) noexcept {
    return com::guard(errorSource, __uuidof(DIEngine), [&] {
        com::needPointers(result);
        *result = nullptr;
        // A message can release the last reference of a client; the session outlives it for this call.
        const auto session = session_;
        std::vector<store::Pid> pids = find(*session);
        const std::size_t count = pids.size();
        *result = com::make<Collection>(session, count, [session, pids = std::move(pids)](std::size_t i) {
                      return com::Ptr<IDispatch>(com::make<Param>(session, pids[i]).get());
                  }).detach();
    });
}

HRESULT Engine::RelationshipParams(LONG, LONG, DICollection** result) noexcept {
    return collect(result, [](Session& session) {
        return session.onSite([](store::Site& site) {
            std::vector<store::Pid> pids;
            for (const auto& [pid, relationship] : site.relationships().relationships()) pids.push_back(pid);
            return pids;
        });
    });
}

HRESULT Engine::ParamsOfTypes(SAFEARRAY* types, DICollection** result) noexcept {
    return collect(result, [types](Session& session) {
        const auto wanted = session.reporting([&] { return typesIn(types); });
        return session.onSite([&](store::Site& site) {
            std::set<store::Pid> pids;
            for (const LONG type : wanted)
                for (const store::Pid pid : site.paramsOfType(type)) pids.insert(pid);
            return std::vector<store::Pid>(pids.begin(), pids.end());
        });
    });
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

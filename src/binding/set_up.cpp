#include "binding/set_up.h"

namespace vtdn::binding {
namespace {

/// Blanks are the only characters that a client name may not consist of.
bool isBlank(std::wstring_view text) noexcept {
    return text.find_first_not_of(L' ') == std::wstring_view::npos;
}

/// What all set-ups begin with; `answer` asks the engine for the rest.
template <class Answer>
bool setUpWith(Session& session, std::wstring_view clientName, Answer answer) {
    if (session.isSetUp()) return false;
    session.bind();
    const auto engine = session.engine();
    const com::Bstr name(isBlank(clientName) ? std::wstring_view(defaultClientName) : clientName);
    engine.setClientAppName(name.get());
    return answer(engine);
}

}  // namespace

bool setUp(Session& session, LONG dahsId, std::wstring_view clientName) {
    return setUpWith(session, clientName,
                     [&](const engine::Engine& engine) { return engine.setupByDahsId(dahsId); });
}

bool setUp(Session& session, const engine::ForcedSite& site, std::wstring_view clientName) {
    return setUpWith(session, clientName,
                     [&](const engine::Engine& engine) { return engine.setupForced(site); });
}

void tearDown(Session& session) {
    const auto engine = session.engine();
    if (!engine) return;
    engine.close();
    session.release();
}

}  // namespace vtdn::binding

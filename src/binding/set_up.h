// Beginning and ending the binding of a wrapper to a DAHS.
#pragma once

#include "binding/session.h"

namespace vtdn::binding {

/// The client name of set-ups that bring none, and of those that bring a blank one.
inline constexpr wchar_t defaultClientName[] = L"VantorDNWrapper";

/// Binds to a DAHS of the directory; false when already set up, or as the engine answers. From the creation
/// of the engine object on the session is set up, whatever comes after: a refusal and a failure leave it so
/// until the teardown.
bool setUp(Session& session, LONG dahsId, std::wstring_view clientName);
/// The same for a site that is given by its connection strings.
bool setUp(Session& session, const engine::ForcedSite& site, std::wstring_view clientName);

/// Closes the engine and lets go of it; nothing before set-up. When the engine fails to close, the session
/// stays set up.
void tearDown(Session& session);

}  // namespace vtdn::binding

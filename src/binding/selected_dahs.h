// The DAHS that a wrapper is bound to.
#pragma once

#include "binding/session.h"

namespace vtdn::binding {

/// A text of the selected DAHS; "" before set-up.
com::Bstr selectedDahsText(const Session& session, engine::TextProperty<DISelectedDahs> property);
/// Its id in the directory; 0 before set-up.
LONG selectedDahsId(const Session& session);

}  // namespace vtdn::binding

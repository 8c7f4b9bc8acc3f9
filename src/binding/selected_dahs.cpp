#include "binding/selected_dahs.h"

namespace vtdn::binding {

com::Bstr selectedDahsText(const Session& session, engine::TextProperty<DISelectedDahs> property) {
    const auto engine = session.engine();
    return engine ? engine.selectedDahs().text(property) : com::Bstr();
}

LONG selectedDahsId(const Session& session) {
    const auto engine = session.engine();
    return engine ? engine.selectedDahs().dahsId() : 0;
}

}  // namespace vtdn::binding

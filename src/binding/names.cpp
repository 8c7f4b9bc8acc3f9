#include "binding/names.h"

#include <limits>
#include <new>

#include "binding/variants.h"
#include "common/pid.h"

namespace vtdn::binding {
namespace {

constexpr LONG unitCount = 20;
constexpr LONG lowestSeverity = 0;
constexpr LONG highestSeverity = 4;
/// Whether the unit of a parameter reports electronically at all.
constexpr LONG reportsElectronically = -17;

engine::Engine neededEngine(const Session& session) {
    auto engine = session.engine();
    if (!engine) com::throwError(com::unsetObject);
    return engine;
}

/// An array of texts from index 0, each made by a call.
template <class Text>
com::SafeArray texts(LONG count, Text text) {
    auto array = com::SafeArray::of<BSTR>(count);
    const com::ArrayView<BSTR> elements(array.get());
    for (LONG i = 0; i < count; ++i) {
        com::Bstr one = text(i);
        // Managed clients tell a null string from "".
        if (!one.get()) one = com::Bstr(L"");
        elements[static_cast<std::size_t>(i)] = one.detach();
    }
    return array;
}

}  // namespace

void flushParameterCache(const Session& session) {
    neededEngine(session).params().flushCache();
}

com::SafeArray unitNames(const Session& session) {
    const auto engine = neededEngine(session);
    return texts(unitCount, [&](LONG unit) { return engine.utils().unitName(unit); });
}

com::SafeArray reportedUnits(const Session& session, ReportedAs what) {
    const auto params = neededEngine(session).params();
    return texts(unitCount, [&](LONG unit) {
        com::Bstr text;
        const std::int32_t pid = common::unitPid(unit);
        if (!params.exists(pid)) return text;
        const auto param = params.item(pid);
        if (isTrue(param.specialValue(reportsElectronically)))
            com::check(com::toText(param.specialValue(static_cast<LONG>(what)).get(), text));
        return text;
    });
}

com::SafeArray codeNames(const Session& session, const CodeNames& which) {
    const auto engine = neededEngine(session);
    const LONG highest = engine.utils().highest(which.highest);
    if (highest < 0) com::throwError(DISP_E_BADINDEX);
    if (highest == std::numeric_limits<LONG>::max()) throw std::bad_alloc();
    return texts(highest + 1,
                 [&](LONG code) { return engine.utils().name(which.name, code, which.longNames); });
}

bool writeAlarm(const Session& session, const engine::Alarm& alarm) {
    const auto engine = session.engine();
    if (!engine || alarm.severity < lowestSeverity || alarm.severity > highestSeverity) return false;
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    engine.alarmWriter().writeAlarm(siteId, alarm);
    return true;
}

}  // namespace vtdn::binding

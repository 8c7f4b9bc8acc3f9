#include "params/writes.h"

#include "params/arguments.h"

namespace vtdn::params {
namespace {

/// The function of a parameter that stores one interval: its arguments are the time and the interval.
constexpr LONG storeDataItem = 6;

bool passesMcCheck(binding::Session& session, const WriteKind& kind, const Content& content) {
    if (!kind.unknownMc || session.engine().utils().isKnownMc(*content.mc)) return true;
    session.addProblem(binding::unknownMonitorCode(*content.mc, *kind.unknownMc));
    return false;
}

void store(const engine::Param& param, DATE time, const engine::DataItem& item) {
    auto arguments = argumentArray(com::Variant::ofDate(time), com::Variant::of(item.get()));
    param.specialFunction(storeDataItem, arguments);
}

}  // namespace

bool write(binding::Session& session, const WriteKind& kind, std::int32_t pid, DATE time,
           const Content& content) {
    if (!session.isSetUp() || !passesMcCheck(session, kind, content)) return false;
    const auto param = session.writableParam(pid, kind.unknownPid, kind.notDatabase);
    if (!param) return false;
    const auto item = kind.newItem ? engine::DataItem::create() : param.dataItem(time);
    if (content.value) item.putValue(*content.value);
    if (content.mc) item.putMc(*content.mc);
    store(param, time, item);
    return true;
}

}  // namespace vtdn::params

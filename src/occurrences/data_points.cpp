#include "occurrences/data_points.h"

namespace vtdn::occurrences {
namespace {

/// The two managers of the engine differ in nothing but how they are fetched and what their lists are called.
struct LongTerm {
    static constexpr auto list = &DIQAManager::GetLongTermDataPoints;
    static engine::LongTermData of(const engine::Engine& engine) { return engine.longTermData(); }
};
struct ShortTerm {
    static constexpr auto list = &DIDataPointList::GetShortTermDataPoints;
    static engine::ShortTermData of(const engine::Engine& engine) { return engine.shortTermData(); }
};

template <class Term>
com::SafeArray listed(const binding::Session& session, const Tag& tag, DATE first, DATE last) {
    const auto engine = session.engine();
    if (!engine) return {};
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    return records::wrapAll<DataPointBasicWrapper>(
        Term::of(engine).list(Term::list, {siteId, tag.id, tag.interval}, first, last));
}

template <class Term>
bool updateXValue(const binding::Session& session, IUnknown* dataPoint, const Tag& tag) {
    const auto engine = session.engine();
    if (!engine) return false;
    const auto point = records::attachedTo<DataPointBasicWrapper>(dataPoint);
    if (!point) return false;
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    const DATE timeStamp = point.date(&DIDataPoint::get_TStamp);
    const auto xValue = point.text(&DIDataPoint::get_XValueXML);
    return Term::of(engine).updateXValue({siteId, tag.id, tag.interval}, timeStamp, xValue);
}

}  // namespace

com::SafeArray longTermDataPoints(const binding::Session& session, const Tag& tag, DATE first, DATE last) {
    return listed<LongTerm>(session, tag, first, last);
}

com::SafeArray shortTermDataPoints(const binding::Session& session, const Tag& tag, DATE first, DATE last) {
    return listed<ShortTerm>(session, tag, first, last);
}

com::Ptr<_DataPointBasicWrapper> blankDataPoint(DATE start) {
    auto point = engine::DataPoint::create();
    point.initialise(start);
    return com::Ptr<_DataPointBasicWrapper>(com::make<DataPointBasicWrapper>(std::move(point)).get());
}

bool updateLongTermXValue(const binding::Session& session, IUnknown* dataPoint, const Tag& tag) {
    return updateXValue<LongTerm>(session, dataPoint, tag);
}

bool updateShortTermXValue(const binding::Session& session, IUnknown* dataPoint, const Tag& tag) {
    return updateXValue<ShortTerm>(session, dataPoint, tag);
}

}  // namespace vtdn::occurrences

#include "data_interface/data_points.h"

#include <string>
#include <utility>
#include <vector>

#include "com/strings.h"
#include "data_interface/collection.h"
#include "data_interface/data_point.h"
#include "data_interface/date.h"
#include "data_interface/site_id.h"
#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

constexpr store::Time hour = 3600;

Term termOf(const store::Interval& interval) {
    return interval.months() == 0 && interval.seconds() < hour ? Term::shorter : Term::longer;
}

store::Interval checked(const store::Site& site, Term term, const DataPointKey& key) {
    const store::Interval interval = intervalOf(site, key);
    if (termOf(interval) == term) return interval;
    const std::wstring text = com::fromUtf8(interval.text());
    if (term == Term::longer)
        com::throwError(invalidCall,
                        L"The long-term data has data points of an hour and longer. Ask the "
                        L"short-term data for those of " +
                            text + L".");
    com::throwError(invalidCall,
                    L"The short-term data has data points of less than an hour. Ask the "
                    L"long-term data for those of " +
                        text + L".");
}

}  // namespace

store::Interval intervalOf(const store::Site& site, const DataPointKey& key) {
    needThisSite(site, key.siteId, L"The data points are", L"Ask that site's engine for them.");
    return store::Interval::parse(com::toUtf8(com::view(key.interval)));
}

com::Ptr<DICollection> dataPoints(const std::shared_ptr<Session>& session, Term term, const DataPointKey& key,
                                  DATE first, DATE last) {
    std::vector<store::DataPoint> points = session->onSite([&](store::Site& site) {
        const store::Interval interval = checked(site, term, key);
        return site.dataPoints(key.tagId, interval, timeOfDate(first), timeOfDate(last));
    });
    if (points.empty()) return {};
    const std::size_t count = points.size();
    const auto collection =
        com::make<Collection>(session, count, [points = std::move(points)](std::size_t i) {
            return com::Ptr<IDispatch>(com::make<DataPoint>(points[i]).get());
        });
    return com::Ptr<DICollection>(collection.get());
}

com::Ptr<DIDataPoint> findDataPoint(Session& session, const DataPointKey& key, DATE from, DATE to) {
    const std::optional<store::DataPoint> found = session.onSite([&](store::Site& site) {
        const store::Interval interval = intervalOf(site, key);
        return site.findDataPoint(key.tagId, interval, timeOfDate(from), timeOfDate(to));
    });
    if (!found) return {};
    const auto point = com::make<DataPoint>(*found);
    return com::Ptr<DIDataPoint>(point.get());
}

bool updateExtraValue(Session& session, Term term, const DataPointKey& key, DATE timeStamp, BSTR xValueXml) {
    return session.onSite([&](store::Site& site) {
        const store::Interval interval = checked(site, term, key);
        return site.setExtra(key.tagId, interval, timeOfDate(timeStamp), keptText(com::view(xValueXml)),
                             session.editNow());
    });
}

}  // namespace vtdn::embedded

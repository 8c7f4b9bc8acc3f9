#include "data_interface/occurrences.h"

#include <string>
#include <utility>
#include <vector>

#include "com/strings.h"
#include "data_interface/collection.h"
#include "data_interface/date.h"
#include "data_interface/occurrence.h"
#include "data_interface/pid_list.h"
#include "data_interface/site_id.h"

namespace vtdn::embedded {
namespace {

store::ExcludeFilter filterOf(LONG number) {
    for (const auto filter :
         {store::ExcludeFilter::none, store::ExcludeFilter::excludable, store::ExcludeFilter::counted})
        if (number == static_cast<LONG>(filter)) return filter;
    com::throwError(DISP_E_OVERFLOW, L"There is no filter " + std::to_wstring(number) +
                                         L". Give 0 for all occurrences, 1 to leave out those that may be "
                                         L"excluded, or 2 for nothing but those.");
}

store::OccurrenceFilter filterOf(const OccurrenceQuery& query) {
    store::OccurrenceFilter filter;
    filter.exclude = filterOf(query.filter);
    filter.units_or_tags = numbersIn(query.units_or_pids);
    filter.first = timeOfDate(query.first);
    filter.last = timeOfDate(query.last);
    filter.downtimes = query.downtimes;
    filter.excursions = query.excursions;
    filter.by_tag = query.byTag;
    return filter;
}

/// The display formats of the tags that are parameters still.
std::unordered_map<store::Pid, std::string> formatsOf(const std::vector<store::OccurrenceRow>& rows,
                                                      const store::ParameterSet& parameters) {
    std::unordered_map<store::Pid, std::string> formats;
    store::Pid known = 0;  // most rows have the tag of the one before
    for (const store::OccurrenceRow& row : rows) {
        if (row.pid == known) continue;
        known = row.pid;
        if (parameters.contains(known)) formats.try_emplace(known, parameters.get(known).format);
    }
    return formats;
}

}  // namespace

com::Ptr<DICollection> occurrences(std::shared_ptr<Session> session, const OccurrenceQuery& query) {
    const auto list = std::make_shared<OccurrenceRows>();
    session->onSite([&](store::Site& site) {
        needThisSite(site, query.siteId, L"The occurrences are", L"Ask that site's engine for them.");
        list->found = site.occurrences(filterOf(query));
        list->formats = formatsOf(list->found.rows, site.parameters());
    });
    const auto& rows = list->found.rows;
    for (const std::string& damage : list->found.damages)
        session->say(MessageType::note, com::fromUtf8(damage));
    if (rows.empty()) return {};
    const auto collection = com::make<Collection>(std::move(session), rows.size(), [list](std::size_t i) {
        return com::Ptr<IDispatch>(com::make<Occurrence>(list, i).get());
    });
    return com::Ptr<DICollection>(collection.get());
}

}  // namespace vtdn::embedded

#include "client/occurrences/runs.h"

#include <map>
#include <utility>

#include "client/text/numbers.h"

namespace vtdn::client {

std::string_view nameOf(OccurrenceKind kind) {
    return kind == OccurrenceKind::excursion ? "excursion" : "downtime";
}

bool PartFilter::takes(OccurrenceKind kind, const store::OccurrencePart& part) const {
    const bool wanted = kind == OccurrenceKind::excursion ? excursions : downtimes;
    return wanted && (!excludable || *excludable == part.excludable);
}

void addParts(std::vector<OccurrencePart>& parts, const OccurrencePart& where,
              const store::Occurrence& occurrence, const PartFilter& filter) {
    const auto add = [&](OccurrenceKind kind, const store::Excursion& said) {
        parts.push_back(where);
        parts.back().kind = kind;
        parts.back().said = said;
    };
    if (occurrence.excursion && filter.takes(OccurrenceKind::excursion, *occurrence.excursion))
        add(OccurrenceKind::excursion, *occurrence.excursion);
    if (occurrence.downtime && filter.takes(OccurrenceKind::downtime, *occurrence.downtime))
        add(OccurrenceKind::downtime, {*occurrence.downtime, 0, {}});
}

std::vector<OccurrenceRun> mergeRuns(std::span<const OccurrencePart> parts) {
    std::vector<OccurrenceRun> runs;
    std::map<std::pair<std::int32_t, OccurrenceKind>, std::size_t> newest;  // places in `runs`
    for (const OccurrencePart& part : parts) {
        const store::Time end = part.interval.step(part.time, 1);
        const auto [found, first] = newest.try_emplace({part.tag, part.kind}, runs.size());
        if (!first) {
            OccurrenceRun& run = runs[found->second];
            if (run.end == part.time && run.interval == part.interval && run.said == part.said) {
                run.end = end;
                ++run.count;
                continue;
            }
            found->second = runs.size();
        }
        runs.push_back({part.tag, part.interval, part.time, end, 1, part.kind, part.said});
    }
    return runs;
}

double hoursOf(store::Time seconds) {
    constexpr double secondsPerHour = 3600;
    return static_cast<double>(seconds) / secondsPerHour;
}

double OccurrenceRun::hours() const {
    return hoursOf(end - begin);
}

std::string hoursText(store::Time seconds) {
    return formatNumber(hoursOf(seconds), "#,##0.##") + " h";
}

}  // namespace vtdn::client

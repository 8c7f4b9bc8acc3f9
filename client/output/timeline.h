// Downtimes and excursions over time as SVG: one row per tag.
#pragma once

#include <string>
#include <vector>

#include "client/occurrences/runs.h"

namespace vtdn::client {

struct TimelineRow {
    std::string title;
    std::vector<OccurrenceRun> runs;  ///< of one tag, in order of time within each kind
};

struct Timeline {
    std::string title;
    store::Time from = 0;
    store::Time to = 0;
    std::vector<TimelineRow> rows;
};

/// The picture as text. A row has a lane for its excursions and one for its downtimes, if it has any, and
/// says how many hours they last; only what lies in the span is drawn and counted. What is excludable is
/// hatched. Bars that are too near to each other to be told apart are drawn as one.
std::string timelineSvg(const Timeline& timeline);

}  // namespace vtdn::client

// Occurrences over a span of time, and what is saved of a data point.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/edits.h"
#include "store/interval.h"
#include "store/text_blocks.h"
#include "store/time.h"
#include "store/value.h"

namespace vtdn::store {

/// Which parts are left out.
enum class ExcludeFilter : std::uint8_t {
    none = 0,
    excludable = 1,  ///< those that are excludable
    counted = 2,     ///< those that are not
};

/// Which occurrences are wanted. A part passes when its kind is wanted and `exclude` lets it through; an
/// occurrence passes with at least one part.
struct OccurrenceFilter {
    Time first = 0;
    Time last = 0;  ///< both included
    bool downtimes = true;
    bool excursions = true;
    ExcludeFilter exclude = ExcludeFilter::none;
    bool by_tag = false;  ///< by tag, interval and time, instead of by time, tag and interval
    /// 0 to 19: of tags of this unit. Any other number: of this tag, or with a passing part of this PID.
    /// Absent: everything; empty: nothing.
    std::optional<std::vector<std::int32_t>> units_or_tags = std::nullopt;
};

/// A data point with an occurrence.
struct OccurrenceRow {
    Pid pid;
    Interval interval;
    Time time;  ///< beginning of the interval
    Item item;
    std::string_view text;  ///< what parseOccurrence reads; kept by the list

    friend bool operator==(const OccurrenceRow&, const OccurrenceRow&) = default;
};

struct OccurrenceList {
    std::vector<OccurrenceRow> rows;
    TextBlocks texts;                  ///< of the rows
    std::vector<std::string> damages;  ///< a sentence for each damaged one, which is not among the rows
};

/// What is saved of a data point.
struct DataPointSave {
    Pid pid;
    Interval interval;
    Time time;                        ///< beginning of the interval
    std::optional<Value> value;       ///< absent: stays as it is
    std::optional<MonitorCode> code;  ///< absent: stays as it is
    bool may_create = false;          ///< whether the interval may be one that nothing is stored of
    std::string occurrence;           ///< "" removes what there is
    EditOrigin origin;
};

}  // namespace vtdn::store

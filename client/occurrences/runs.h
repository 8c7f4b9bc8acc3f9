// Downtimes and excursions as people see them: not one per interval, but one from when to when.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/interval.h"
#include "store/occurrence.h"

namespace vtdn::client {

enum class OccurrenceKind { excursion, downtime };

/// "excursion", "downtime".
std::string_view nameOf(OccurrenceKind kind);

/// One part of an occurrence: what is wrong with one interval of a tag.
struct OccurrencePart {
    std::int32_t tag = 0;
    store::Interval interval = store::Interval::of("h", 1);
    store::Time time = 0;
    OccurrenceKind kind = OccurrenceKind::downtime;
    store::Excursion said;  ///< without a limit when it is a downtime
};

/// Which parts are asked for.
struct PartFilter {
    bool downtimes = true;
    bool excursions = true;
    std::optional<bool> excludable;  ///< nothing: both

    [[nodiscard]] bool takes(OccurrenceKind kind, const store::OccurrencePart& part) const;
};

/// Adds the parts of an occurrence that the filter takes; `where` says tag, interval and time.
void addParts(std::vector<OccurrencePart>& parts, const OccurrencePart& where,
              const store::Occurrence& occurrence, const PartFilter& filter);

/// Neighbouring intervals of one tag about which the same is said.
struct OccurrenceRun {
    std::int32_t tag = 0;
    store::Interval interval = store::Interval::of("h", 1);
    store::Time begin = 0;
    store::Time end = 0;  ///< of the last interval
    std::int64_t count = 0;
    OccurrenceKind kind = OccurrenceKind::downtime;
    store::Excursion said;

    [[nodiscard]] double hours() const;
};

/// Merges neighbours. The parts of one tag stand in order of time, those of several tags in any order; a run
/// stands where its first part stood.
std::vector<OccurrenceRun> mergeRuns(std::span<const OccurrencePart> parts);

[[nodiscard]] double hoursOf(store::Time seconds);

/// "5 h", "0.25 h".
std::string hoursText(store::Time seconds);

}  // namespace vtdn::client

// What is recorded against a data point: an excursion (a limit that was exceeded), a monitor downtime or
// both, and the text that it is kept as.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/value.h"

namespace vtdn::store {

/// One part. Texts are UTF-8, counted, and may hold NUL and be empty.
struct OccurrencePart {
    Pid pid = 0;              ///< the occurrence parameter that it was recorded for
    bool excludable = false;  ///< whether reports may leave it out
    std::string category;
    std::string reason;
    std::string action;

    friend bool operator==(const OccurrencePart&, const OccurrencePart&) = default;
};

struct Excursion : OccurrencePart {
    Pid limit_pid = 0;  ///< the constant parameter that the limit came from; 0 for none
    std::string limit;  ///< "0.5 lb/mmBtu"

    friend bool operator==(const Excursion&, const Excursion&) = default;
};

struct Occurrence {
    std::optional<Excursion> excursion;
    std::optional<OccurrencePart> downtime;

    [[nodiscard]] bool empty() const { return !excursion && !downtime; }

    friend bool operator==(const Occurrence&, const Occurrence&) = default;
};

/// The occurrence as XML, in one line; "" when it has no part. Every text survives, whatever it holds
/// (docs/engine.md says how).
[[nodiscard]] std::string occurrenceText(const Occurrence& occurrence);

/// The occurrence of a text; "" has no part. Throws badValue for anything that occurrenceText cannot have
/// written, so that nothing is lost when an occurrence that was read is written anew.
[[nodiscard]] Occurrence parseOccurrence(std::string_view xml);

}  // namespace vtdn::store

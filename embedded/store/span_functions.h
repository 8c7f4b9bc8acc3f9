// What is computed over a span of time from the values of one parameter.
//
// A span is [start, end): times of local standard time on whole seconds. Every function throws
// unknownParameter; outOfRange for a span that ends before it starts, leaves the years 100 to 9999 or has
// more than longestRun of the parameter's own intervals; badInterval for a parameter without an interval; and
// what Site::read throws. All reading is of one moment in each data database, and in pieces, so that memory
// does not grow with the span.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "store/site.h"

namespace vtdn::store {

/// Special values that these functions look at.
namespace special_value_id {
inline constexpr std::int32_t operatingTime = 1001;   ///< integer: PID of a unit's operating-time parameter
inline constexpr std::int32_t availableCodes = 1002;  ///< text: monitor codes, separated by ","
}  // namespace special_value_id

/// The values of the parameter's own intervals that begin in a span. Only numbers count; a text is none.
struct SpanSummary {
    std::int64_t intervals = 0;  ///< that begin in the span
    std::int64_t count = 0;      ///< of these, with a number
    double total = 0;            ///< of the numbers; may be beyond what a double holds
    /// The smallest and the largest number, of the kind that it is stored in; of equal ones the first. Null
    /// when there is none.
    Value minimum;
    Value maximum;

    /// Doubles; null when they are beyond what a double holds. Without a number the sum is 0 and the average
    /// null.
    [[nodiscard]] Value sum() const;
    [[nodiscard]] Value average() const;
};

[[nodiscard]] SpanSummary summarize(Site& site, Pid pid, Time start, Time end);

/// How many of a unit of time make an hour: 1 for "h", "hr" or "hour", 60 for "min" or "minute", 3600 for
/// "s", "sec" or "second", each also with an s behind it, in any case; blanks around it do not count. Nothing
/// for any other text, the empty one included.
[[nodiscard]] std::optional<double> unitsPerHour(std::string_view units);

/// The parameter that keeps the operating time for another one: that of its special value operatingTime, or
/// the parameter itself when it has none and its units are of time. Throws badParameter when there is no
/// such parameter or its units are not of time.
[[nodiscard]] Pid operatingTimeParameter(Site& site, Pid pid);

/// Hours of operation in a span, from operatingTimeParameter(pid). Each of its intervals holds how long the
/// unit operated within it, in its units: from 0 to 1 for an hourly one in hours, as unit operating time is
/// recorded under 40 CFR 75.57(b). An interval that lies in the span only in part counts in proportion to the
/// part; one without a number counts as 0. The numbers are taken as they are.
[[nodiscard]] double operatingHours(Site& site, Pid pid, Time start, Time end);

/// Of 100 of the parameter's own intervals that begin in a span, how many have a number with a code that
/// counts as available: one of its special value availableCodes, or any when it lists none. Nothing when no
/// interval begins in the span. Unlike the percent monitor data availability of 40 CFR 75.32, hours without
/// operation are not left out. Throws badParameter for a list that cannot be read.
[[nodiscard]] std::optional<double> availabilityPercent(Site& site, Pid pid, Time start, Time end);

}  // namespace vtdn::store

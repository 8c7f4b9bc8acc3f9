// Times: whole seconds of local standard time since 30 December 1899, 00:00. Before that day they are
// negative.
#pragma once

#include <cstdint>
#include <string>

namespace vtdn::store {

using Time = std::int64_t;

inline constexpr Time secondsPerDay = 86'400;
inline constexpr Time earliestTime = -657'434 * secondsPerDay;     ///< 1 January 100, 00:00:00
inline constexpr Time latestTime = 2'958'466 * secondsPerDay - 1;  ///< 31 December 9999, 23:59:59

struct Civil {
    int year = 1899;
    int month = 12;  ///< 1 to 12
    int day = 30;    ///< 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// The time of a calendar date. Throws outOfRange when there is no such day or time, or it is not in the
/// years 100 to 9999.
[[nodiscard]] Time timeOf(const Civil& civil);
[[nodiscard]] Civil civilOf(Time time);

/// "2007-03-18 02:30", with ":15" behind it when the seconds are not 0.
[[nodiscard]] std::string timeText(Time time);

/// Calendar months since January 1900 (negative before), and the beginning of that month.
[[nodiscard]] std::int64_t monthIndex(Time time);
[[nodiscard]] Time monthStart(std::int64_t index);

/// Quotient rounded towards minus infinity.
[[nodiscard]] constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b != 0 && (a % b < 0) != (b < 0) ? 1 : 0);
}

}  // namespace vtdn::store

// Automation dates: days since 30 December 1899, the fraction counting forward from midnight also before that
// day
// (-1.25 is 29 December 1899 06:00). Whole seconds are the finest unit.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vtdn::common {

/// Whole seconds since 30 December 1899 00:00, rounded to the nearest.
std::int64_t secondsOfDate(double date) noexcept;
double dateOfSeconds(std::int64_t seconds) noexcept;

/// Adds a number of intervals. Units, in any case: "s", "n" minute, "h", "d" (also "y" and "w") day, "ww"
/// week, "m" month, "q" quarter, "yyyy" year; a month that is too short for the day ends on its last day.
/// Seconds, minutes and hours give whole seconds, without rounding drift. Nothing for another unit or beyond
/// the years 100 to 9999.
std::optional<double> addIntervals(std::wstring_view unit, double date, std::int32_t count);

}  // namespace vtdn::common

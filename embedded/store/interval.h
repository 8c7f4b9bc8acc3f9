// Intervals: how long one stored or computed value lasts, and where intervals begin.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/time.h"

namespace vtdn::store {

/// A length of time that values are given for: a whole number of seconds that divides a day, whole days, or
/// calendar months. Intervals shorter than a day begin at midnight and at every multiple of their length
/// after it, those of days at a midnight, those of months on the first of a month at 00:00. 60s and 1m, 24h
/// and 1d are the same interval.
class Interval {
  public:
    /// From an interval type and a length, as data arrays are defined: "s", "m", "h", "d", "M" (case counts)
    /// or the words second, minute, hour, day, month, singular or plural in any case. Throws badInterval.
    static Interval of(std::string_view type, std::int64_t length);
    /// From an interval text: a count directly followed by a unit letter ("15m"). Throws badInterval.
    static Interval parse(std::string_view text);

    /// "15m", in the largest unit that divides it; days are never carried into months.
    [[nodiscard]] std::string text() const;
    /// Length in seconds; 0 for calendar months.
    [[nodiscard]] Time seconds() const { return seconds_; }
    /// Length in calendar months; 0 for any other.
    [[nodiscard]] std::int64_t months() const { return months_; }

    /// Whether an interval may begin at this time.
    [[nodiscard]] bool beginsAt(Time time) const;
    /// The beginning of the interval that is n intervals after the one that begins at start; n may be
    /// negative.
    [[nodiscard]] Time step(Time start, std::int64_t n) const;

    /// Whether values can be stored at this interval: at most a day, or months that divide a year. Longer
    /// ones are for reading, where they may begin at any midnight or first of a month.
    [[nodiscard]] bool isStorable() const;
    /// Number of the storable interval that holds the time, counted from 30 December 1899 or January 1900.
    [[nodiscard]] std::int64_t index(Time time) const;
    /// Beginning of the storable interval of that number.
    [[nodiscard]] Time begin(std::int64_t index) const;

    /// Whether intervals of the shorter length fill every one of this length exactly.
    [[nodiscard]] bool isFilledBy(const Interval& shorter) const;
    /// How many whole intervals lie between two of their beginnings.
    [[nodiscard]] std::int64_t between(Time from, Time to) const;

    friend bool operator==(const Interval&, const Interval&) = default;

  private:
    Interval(Time seconds, std::int64_t months) : seconds_(seconds), months_(months) {}

    Time seconds_ = 0;
    std::int64_t months_ = 0;
};

/// Most intervals that one run may have: more than a year of seconds.
inline constexpr std::int32_t longestRun = 32'000'000;

/// A number of consecutive intervals.
struct Span {
    Time start;
    std::int32_t count;
    Interval interval;

    /// Checks the parts against each other: count from 1 to longestRun (outOfRange), a start that is the
    /// beginning of an interval (offBoundary), and an end not behind the year 9999 (outOfRange). Nothing is
    /// allocated.
    static Span define(Time start, std::int64_t count, const Interval& interval);
    /// End of the last interval, which is the beginning of the one after it.
    [[nodiscard]] Time end() const { return interval.step(start, count); }
};

}  // namespace vtdn::store

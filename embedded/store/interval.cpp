#include "store/interval.h"

#include <array>
#include <optional>
#include <utility>

#include "store/error.h"
#include "store/text.h"

namespace vtdn::store {
namespace {

struct Unit {
    std::string_view letter;
    std::string_view word;
    Time seconds;         // 0 for months
    std::int64_t months;  // 0 for the others
};

// From the shortest to the longest.
constexpr std::array<Unit, 5> units{{
    {"s", "second", 1, 0},
    {"m", "minute", 60, 0},
    {"h", "hour", 3600, 0},
    {"d", "day", secondsPerDay, 0},
    {"M", "month", 0, 1},
}};

constexpr std::int64_t longestLength = 1'000'000;

bool isWord(std::string_view type, std::string_view word) {
    if (equalsIgnoringCase(type, word)) return true;
    return !type.empty() && lowerAscii(type.back()) == 's' &&
           equalsIgnoringCase(type.substr(0, type.size() - 1), word);
}

const Unit* findUnit(std::string_view type) {
    for (const Unit& unit : units)
        if (type == unit.letter || isWord(type, unit.word)) return &unit;
    return nullptr;
}

std::int64_t greatestUnit(Time seconds) {
    std::int64_t best = 1;
    for (const Unit& unit : units)
        if (unit.seconds != 0 && seconds % unit.seconds == 0) best = unit.seconds;
    return best;
}

}  // namespace

Interval Interval::of(std::string_view type, std::int64_t length) {
    const Unit* unit = findUnit(type);
    if (unit == nullptr)
        throw Error(ErrorKind::badInterval,
                    "The interval type " + quote(type) +
                        " is not known. Use s, m, h, d or M for seconds, minutes, hours, days "
                        "or calendar months.");
    if (length < 1 || length > longestLength)
        throw Error(ErrorKind::badInterval, "The interval length " + std::to_string(length) +
                                                " is not accepted. It is a whole number from 1 to 1000000.");
    const Interval interval{unit->seconds * length, unit->months * length};
    if (interval.seconds_ > 0 && secondsPerDay % interval.seconds_ != 0 &&
        interval.seconds_ % secondsPerDay != 0)
        throw Error(ErrorKind::badInterval,
                    "Intervals of " + interval.text() +
                        " do not divide a day, so that their beginnings would wander. Use a "
                        "length that does, such as 1m, 15m or 1h, or whole days.");
    return interval;
}

Interval Interval::parse(std::string_view text) {
    const std::string_view trimmed = trimBlanks(text);
    std::int64_t length = 0;
    std::size_t digits = 0;
    while (digits < trimmed.size() && isDigit(trimmed[digits])) {
        if (length <= longestLength) length = length * 10 + (trimmed[digits] - '0');
        ++digits;
    }
    const std::string_view letter = trimmed.substr(digits);
    const Unit* unit = letter.size() == 1 ? findUnit(letter) : nullptr;
    if (digits == 0 || unit == nullptr)
        throw Error(ErrorKind::badInterval,
                    "The interval text " + quote(text) +
                        " is not understood. It is a count and one of the letters s, m, h, d "
                        "and M, such as 15m, 1h or 1M.");
    return of(letter, length);
}

std::string Interval::text() const {
    if (months_ != 0) return std::to_string(months_) + "M";
    const auto unit = greatestUnit(seconds_);
    for (const Unit& u : units)
        if (u.seconds == unit) return std::to_string(seconds_ / unit) + std::string(u.letter);
    throw Error(ErrorKind::internal, "An interval has no unit.");
}

bool Interval::beginsAt(Time time) const {
    if (months_ != 0) return monthStart(monthIndex(time)) == time;
    const Time grid = seconds_ < secondsPerDay ? seconds_ : secondsPerDay;
    return time - floorDivide(time, grid) * grid == 0;
}

Time Interval::step(Time start, std::int64_t n) const {
    return months_ != 0 ? monthStart(monthIndex(start) + n * months_) : start + n * seconds_;
}

bool Interval::isStorable() const {
    return months_ != 0 ? months_ <= 12 && 12 % months_ == 0 : seconds_ <= secondsPerDay;
}

std::int64_t Interval::index(Time time) const {
    if (months_ != 0) return floorDivide(monthIndex(time), months_);
    // Lists ask this of every row, and 32-bit programs divide 64 bits slowly. Times up to the year 2036
    // need 32.
    if (std::in_range<std::uint32_t>(time) && std::in_range<std::uint32_t>(seconds_))
        return static_cast<std::uint32_t>(time) / static_cast<std::uint32_t>(seconds_);
    return floorDivide(time, seconds_);
}

Time Interval::begin(std::int64_t index) const {
    return months_ != 0 ? monthStart(index * months_) : index * seconds_;
}

bool Interval::isFilledBy(const Interval& shorter) const {
    if (shorter.months_ != 0) return months_ != 0 && months_ % shorter.months_ == 0;
    // A month has whole days, and a storable interval divides a day.
    return months_ != 0 ? shorter.seconds_ <= secondsPerDay : seconds_ % shorter.seconds_ == 0;
}

std::int64_t Interval::between(Time from, Time to) const {
    return months_ != 0 ? (monthIndex(to) - monthIndex(from)) / months_ : (to - from) / seconds_;
}

Span Span::define(Time start, std::int64_t count, const Interval& interval) {
    if (count < 1 || count > longestRun)
        throw Error(ErrorKind::outOfRange, "A run of " + std::to_string(count) +
                                               " intervals is not accepted. It has from 1 to " +
                                               std::to_string(longestRun) + ".");
    if (start < earliestTime || start > latestTime)
        throw Error(ErrorKind::outOfRange, "The beginning of the period is outside the years 100 to 9999.");
    if (!interval.beginsAt(start))
        throw Error(ErrorKind::offBoundary,
                    timeText(start) + " is not the beginning of an interval of " + interval.text() + ".");
    // Counted in whole intervals first, so that nothing overflows on the way.
    const Time longest = interval.months() != 0 ? interval.months() * 31 * secondsPerDay : interval.seconds();
    const bool surely = count <= (latestTime + 1 - start) / longest;
    const bool possible = interval.months() != 0 && count * interval.months() < 200'000;
    if (!surely && !(possible && interval.step(start, count) <= latestTime + 1))
        throw Error(ErrorKind::outOfRange, std::to_string(count) + " intervals of " + interval.text() +
                                               " from " + timeText(start) + " reach behind the year 9999.");
    return {start, static_cast<std::int32_t>(count), interval};
}

}  // namespace vtdn::store

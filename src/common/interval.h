// Interval texts: a decimal count and a unit letter, as "15m" or "1h". Units, case-sensitive: "s" second, "m"
// minute, "h" hour, "d" day, "M" month, "v" a unit whose count is always 1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vtdn::common {

struct Interval {
    std::int32_t count = 0;
    std::wstring unit;
    bool operator==(const Interval&) const = default;
};

/// Reads an interval text, blanks around it allowed. False with count 0 and no unit for an unknown unit or a
/// count beyond 32 bits; False with the count read and no unit for digits alone.
bool parseIntervalText(std::wstring_view text, bool normalise, Interval& interval);

/// Carries whole minutes, hours and days upward (never days into months) and makes the count of "v" 1.
void normaliseInterval(Interval& interval);

/// The text under which an interval is handed to the engine: normalised where it parses, unchanged otherwise.
std::wstring intervalTextForEngine(std::wstring_view text);

}  // namespace vtdn::common

// What a cell of a site file says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "store/interval.h"
#include "store/value.h"

namespace vtdn::client {

// Most characters of a text.
inline constexpr std::size_t longestShortName = 16;
inline constexpr std::size_t longestText = 255;
inline constexpr std::size_t longestDescription = 1000;

/// A PID in display form or as a number of nine or ten digits; 0 for anything else.
store::Pid pidOfCell(std::string_view cell);

/// A whole number of digits only.
std::optional<std::int32_t> wholeNumberOfCell(std::string_view cell);

/// A whole number of digits, with a minus before them or not.
std::optional<std::int32_t> signedNumberOfCell(std::string_view cell);

/// A time as files have it, with a blank between day and hour ("2007-03-25 06:00", seconds allowed). Throws
/// std::invalid_argument with the reason.
store::Time timeOfCell(std::string_view cell);

/// Throws std::invalid_argument with the reason when no interval of a parameter begins at a time.
void requireBeginning(store::Pid pid, const store::Interval& interval, store::Time time);

/// The rows of one parameter: each on its interval, and later than the one before.
struct RowTimes {
    store::Pid pid;
    store::Interval interval;
    std::optional<store::Time> last;

    /// Throws std::invalid_argument with the reason when there can be no row of this time.
    void take(store::Time time);
};

/// A number, a text, or nothing for an empty cell. Throws std::invalid_argument with the reason for what
/// begins like a number and is none, for a number out of range and for a text that is too long.
store::Value valueOfCell(std::string_view cell);

}  // namespace vtdn::client

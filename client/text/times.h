// Times as people type them, in the site's local standard time.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/time.h"

namespace vtdn::client {

/// Reads "2007-01-15 13:00", "2007-01-15 13:00:30" or either with a T in the middle; nothing when the text
/// has another form, names no day of the calendar, or a year before 1900.
std::optional<store::Time> parseTimestamp(std::string_view text);

/// parseTimestamp, or a date alone for its midnight ("2007-01-15").
std::optional<store::Time> parseTime(std::string_view text);

/// Midnight of "2007-01-15".
std::optional<store::Time> parseDay(std::string_view text);

/// The first of the month "2007-01", at midnight.
std::optional<store::Time> parseMonth(std::string_view text);

/// "2007-01-15 13:00", with seconds when `seconds` says so.
std::string timestampText(store::Time time, bool seconds);

}  // namespace vtdn::client

// The alarm log: texts with a time and a severity, kept in the alarm database of a site.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/database.h"
#include "store/time.h"

namespace vtdn::store {

/// Severities are 0 to this.
inline constexpr std::int32_t highestSeverity = 4;

/// One entry. Texts are UTF-8, counted, may hold NUL and be empty, and are kept as given, the site id too.
struct Alarm {
    std::int64_t id = 0;  ///< ascending in the order of writing, from 1; given by the log
    std::string site_id;
    Time time = 0;
    std::string message;
    std::string category;
    std::int32_t severity = 0;
    std::string group;
    std::string source;

    friend bool operator==(const Alarm&, const Alarm&) = default;
};

/// Which entries are wanted.
struct AlarmFilter {
    std::optional<Time> from = std::nullopt;           ///< not before this time
    std::optional<Time> to = std::nullopt;             ///< before this time
    std::optional<std::int32_t> limit = std::nullopt;  ///< so many of the newest, from 0 on
};

/// Adds an entry and returns its id; that of the given alarm is not looked at. On the disk when it returns.
/// Throws outOfRange for a severity outside 0 to highestSeverity or a time outside the years 100 to 9999, and
/// badValue for a text over longestText.
std::int64_t writeAlarm(Database& alarms, const Alarm& alarm);

/// The entries, those of the latest time first; of one time the one that was written last first. Throws
/// outOfRange for a limit below 0 or a span that ends before it starts, and databaseDamaged.
[[nodiscard]] std::vector<Alarm> readAlarms(Database& alarms, const AlarmFilter& filter);

}  // namespace vtdn::store

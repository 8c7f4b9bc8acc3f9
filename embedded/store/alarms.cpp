#include "store/alarms.h"

#include <limits>

#include "store/error.h"
#include "store/strict_row.h"
#include "store/value.h"

namespace vtdn::store {
namespace {

void check(const Alarm& alarm) {
    if (alarm.severity < 0 || alarm.severity > highestSeverity)
        throw Error(ErrorKind::outOfRange, "The severity " + std::to_string(alarm.severity) +
                                               " of an alarm is outside 0 to " +
                                               std::to_string(highestSeverity) + ".");
    if (alarm.time < earliestTime || alarm.time > latestTime)
        throw Error(ErrorKind::outOfRange, "The time of an alarm is outside the years 100 to 9999.");
    for (const auto* text : {&alarm.site_id, &alarm.message, &alarm.category, &alarm.group, &alarm.source})
        if (text->size() > longestText)
            throw Error(ErrorKind::badValue, "A text of an alarm has " + std::to_string(text->size()) +
                                                 " bytes. The longest that is stored has " +
                                                 std::to_string(longestText) + ".");
}

}  // namespace

std::int64_t writeAlarm(Database& alarms, const Alarm& alarm) {
    check(alarm);
    Transaction transaction(alarms);
    Statement(alarms,
              "INSERT INTO alarm (site_id, time, message, category, severity, alarm_group, source) "
              "VALUES (?, ?, ?, ?, ?, ?, ?)")
        .bindAll(alarm.site_id, alarm.time, alarm.message, alarm.category, alarm.severity, alarm.group,
                 alarm.source)
        .run();
    const auto id = alarms.lastInsertedRow();
    transaction.commit();
    return id;
}

std::vector<Alarm> readAlarms(Database& alarms, const AlarmFilter& filter) {
    if (filter.limit && *filter.limit < 0)
        throw Error(ErrorKind::outOfRange, "A limit of " + std::to_string(*filter.limit) +
                                               " alarms is not accepted. Give 0 or more.");
    if (filter.from && filter.to && *filter.to < *filter.from)
        throw Error(ErrorKind::outOfRange, "The span that alarms are wanted for ends before it starts.");
    std::string sql =
        "SELECT id, site_id, time, message, category, severity, alarm_group, source FROM alarm WHERE TRUE";
    // A bound that was not asked for is left out, so that a row whose time is damaged is met.
    if (filter.from) sql += " AND time >= ?1";
    if (filter.to) sql += " AND time < ?2";
    sql += " ORDER BY time DESC, id DESC";
    if (filter.limit) sql += " LIMIT ?3";
    Statement rows(alarms, sql);
    if (filter.from) rows.bind(1, *filter.from);
    if (filter.to) rows.bind(2, *filter.to);
    if (filter.limit) rows.bind(3, *filter.limit);
    const StrictRow row(alarms, rows, "an alarm");
    std::vector<Alarm> found;
    while (rows.step()) {
        Alarm alarm;
        alarm.id = row.number(0, 1, std::numeric_limits<std::int64_t>::max());
        alarm.site_id = row.text(1);
        alarm.time = row.number(2, earliestTime, latestTime);
        alarm.message = row.text(3);
        alarm.category = row.text(4);
        alarm.severity = row.integer(5, 0, highestSeverity);
        alarm.group = row.text(6);
        alarm.source = row.text(7);
        found.push_back(std::move(alarm));
    }
    return found;
}

}  // namespace vtdn::store

#include "store/data_points.h"

#include <limits>

#include "store/chunk.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/strict_row.h"
#include "store/writable.h"

namespace vtdn::store {
namespace {

// Changes with every byte of both texts, with where one ends, and with the interval that they belong to.
std::int64_t checksumOf(std::int64_t series, Time time, const std::string& occurrence,
                        const std::string& extra) {
    const std::string all = std::to_string(occurrence.size()) + ':' + occurrence + extra;
    return checksum(std::as_bytes(std::span(all)),
                    static_cast<std::uint64_t>(series) << 40U ^ static_cast<std::uint64_t>(time));
}

void requireTime(Time time) {
    if (time < earliestTime || time > latestTime)
        throw Error(ErrorKind::outOfRange, "A time of the span is outside the years 100 to 9999.");
}

void requireRoom(const SeriesKey& key, const std::vector<DataPoint>& points) {
    if (points.size() < mostDataPoints) return;
    throw Error(ErrorKind::outOfRange, "The span has more than " + std::to_string(mostDataPoints) +
                                           " data points of " + pidText(key.pid) +
                                           ". Ask for a shorter one.");
}

}  // namespace

SeriesKey dataPointSeries(const ParameterSet& parameters, Pid pid, const Interval& asked) {
    const ParameterEntry& entry = parameters.entry(pid);
    const ParameterKind kind = entry.parameter.kind();
    if (kind != ParameterKind::database && kind != ParameterKind::occurrence)
        throw Error(ErrorKind::notWritable,
                    pidText(pid) +
                        " is a constant or computed; only parameters whose values are "
                        "stored (I/O types 38 and 31) have data points.");
    if (!entry.interval)
        throw Error(ErrorKind::badInterval,
                    pidText(pid) + " has no interval, and without one there are no data points.");
    if (asked != *entry.interval)
        throw Error(ErrorKind::badInterval, "The data points of " + pidText(pid) + " have intervals of " +
                                                entry.interval->text() + " and not of " + asked.text() + ".");
    return {pid, *entry.interval};
}

struct DataPointStore::Row {
    Time time;
    std::string occurrence;
    std::string extra;
};

DataPointStore::DataPointStore(Database& db, SeriesStore& series)
    : db_(db),
      series_(series),
      get_rows_(db,
                "SELECT time, occurrence, extra, checksum FROM data_point_text "
                "WHERE series = ? AND time BETWEEN ? AND ? ORDER BY time"),
      put_row_(
          db,
          "INSERT INTO data_point_text (series, time, occurrence, extra, checksum) VALUES (?, ?, ?, ?, ?) "
          "ON CONFLICT (series, time) DO UPDATE SET occurrence = excluded.occurrence, "
          "extra = excluded.extra, checksum = excluded.checksum"),
      remove_row_(db, "DELETE FROM data_point_text WHERE series = ? AND time = ?") {}

std::string DataPointStore::damageSentence(const SeriesKey& key) const {
    return "The database " + quote(db_.file()) + " holds a text of a data point of " + pidText(key.pid) +
           " that is damaged. Restore it from a backup.";
}

DataPointStore::Row DataPointStore::readRow(const Statement& row, const SeriesKey& key,
                                            std::int64_t series) const {
    const StrictRow columns(db_, row, "a text of a data point");
    Row read{columns.number(0, earliestTime, latestTime), columns.text(1), columns.text(2)};
    const auto expected = columns.number(3, 0, std::numeric_limits<std::uint32_t>::max());
    if (expected != checksumOf(series, read.time, read.occurrence, read.extra) ||
        key.interval.begin(key.interval.index(read.time)) != read.time)
        throw Error(ErrorKind::databaseDamaged, damageSentence(key));
    return read;
}

std::vector<DataPoint> DataPointStore::list(const SeriesKey& key, Time first, Time last) {
    requireTime(first);
    requireTime(last);
    if (last < first)
        throw Error(ErrorKind::outOfRange,
                    "The span ends (" + timeText(last) + ") before it starts (" + timeText(first) + ").");
    std::vector<DataPoint> points;
    const Snapshot snapshot(db_);
    const auto series = series_.find(key);
    if (series == 0) return points;
    // Texts and values come in order of time; each text goes to its value, or stands alone between two.
    const ResetAtEnd reset(get_rows_);
    get_rows_.bindAll(series, first, last);
    bool more = get_rows_.step();
    const auto takeTexts = [&](Time until) {
        for (; more && get_rows_.number(0) <= until; more = get_rows_.step()) {
            Row row = readRow(get_rows_, key, series);
            if (points.empty() || points.back().time != row.time) {
                requireRoom(key, points);
                points.push_back({row.time, {}, {}, {}});
            }
            points.back().occurrence = std::move(row.occurrence);
            points.back().extra = std::move(row.extra);
        }
    };
    series_.forEachStored(key, first, last, [&](Time time, Item item) {
        takeTexts(time - 1);
        requireRoom(key, points);
        points.push_back({time, std::move(item), {}, {}});
        takeTexts(time);
    });
    takeTexts(last);
    return points;
}

void DataPointStore::write(const SeriesKey& key, Time time, PointText which, std::string_view text) {
    requireBoundary(key.pid, key.interval, time);
    requireStorableText(key.pid, text);
    Transaction transaction(db_);
    auto series = series_.find(key);
    Row row{time, {}, {}};
    bool known = false;
    if (series != 0) {
        const ResetAtEnd reset(get_rows_);
        known = get_rows_.bindAll(series, time, time).step();
        if (known) row = readRow(get_rows_, key, series);
    }
    (which == PointText::extra ? row.extra : row.occurrence) = text;
    if (!row.occurrence.empty() || !row.extra.empty()) {
        if (series == 0) series = series_.findOrAdd(key);
        put_row_
            .bindAll(series, time, row.occurrence, row.extra,
                     checksumOf(series, time, row.occurrence, row.extra))
            .run();
    } else if (known) {
        remove_row_.bindAll(series, time).run();
    }
    transaction.commit();
}

std::vector<std::string> DataPointStore::check() {
    std::vector<std::string> sentences;
    const Snapshot snapshot(db_);
    for (const auto& [series, key] : series_.keys()) {
        const ResetAtEnd reset(get_rows_);
        get_rows_.bindAll(series, std::numeric_limits<std::int64_t>::min(),
                          std::numeric_limits<std::int64_t>::max());
        while (get_rows_.step()) {
            try {
                (void)readRow(get_rows_, key, series);
            } catch (const Error& damage) {
                sentences.emplace_back(damage.what());
            }
        }
    }
    if (db_.queryNumber("SELECT count(*) FROM data_point_text WHERE series NOT IN (SELECT id FROM series)") !=
        0)
        sentences.push_back(
            "The database " + quote(db_.file()) +
            " holds texts of data points that belong to no parameter. Restore it from a backup.");
    return sentences;
}

}  // namespace vtdn::store

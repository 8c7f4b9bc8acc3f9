#include "store/point_texts.h"

#include <array>
#include <limits>

#include "store/chunk.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/strict_row.h"

namespace vtdn::store {
namespace {

template <typename T>
std::span<const std::byte> bytesOf(const T& range) {
    return std::as_bytes(std::span(range));
}

// Changes with every byte of both texts, with where one ends, with what is said of the occurrence and with
// the interval that they belong to.
std::int64_t checksumOf(std::int64_t series, Time time, std::string_view occurrence, std::string_view extra,
                        const OccurrenceSummary& summary) {
    if (summary.parts != 0) {
        const std::array<std::int64_t, 4> numbers{
            series, time, summary.parts,
            std::int64_t{summary.excursion_pid} << 32 | static_cast<std::uint32_t>(summary.downtime_pid)};
        return checksum(bytesOf(extra), checksum(bytesOf(occurrence), checksum(bytesOf(numbers), 0)));
    }
    // As it was before there were summaries, so that rows from then are good.
    std::string all = std::to_string(occurrence.size()) + ':';
    all += occurrence;
    all += extra;
    return checksum(bytesOf(all),
                    static_cast<std::uint64_t>(series) << 40U ^ static_cast<std::uint64_t>(time));
}

std::string damageSentence(const Database& db, const SeriesKey& key, const Statement& row) {
    const std::string when =
        row.type(0) == ColumnType::integer && row.number(0) >= earliestTime && row.number(0) <= latestTime
            ? " at " + timeText(row.number(0))
            : std::string();
    return "The database " + quote(db.file()) + " holds a text of the data point of " + pidText(key.pid) +
           when + " that is damaged. Restore it from a backup.";
}

PointTextsView readStrictly(const Database& db, const Statement& row) {
    const StrictRow columns(db, row, "a text of a data point");
    PointTextsView read{columns.number(0, earliestTime, latestTime), columns.view(1), columns.view(2), {}};
    read.summary.parts = columns.number(3, 0, OccurrenceSummary::all);
    read.summary.excursion_pid = columns.integer(4);
    read.summary.downtime_pid = columns.integer(5);
    return read;
}

}  // namespace

OccurrenceSummary::OccurrenceSummary(const Occurrence& occurrence) {
    if (occurrence.excursion) {
        parts |= excursion | (occurrence.excursion->excludable ? excursion_excludable : 0);
        excursion_pid = occurrence.excursion->pid;
    }
    if (occurrence.downtime) {
        parts |= downtime | (occurrence.downtime->excludable ? downtime_excludable : 0);
        downtime_pid = occurrence.downtime->pid;
    }
}

PointTextsView readPointTexts(const Database& db, const Statement& row, const SeriesKey& key,
                              std::int64_t series) {
    try {
        PointTextsView read = readStrictly(db, row);
        const bool bare = read.summary.parts == 0 && read.summary != OccurrenceSummary{};
        const auto found =
            StrictRow(db, row, "a text").number(6, 0, std::numeric_limits<std::uint32_t>::max());
        if (!bare && found == checksumOf(series, read.time, read.occurrence, read.extra, read.summary))
            return read;
    } catch (const Error& damage) {
        if (damage.kind() != ErrorKind::databaseDamaged) throw;
    }
    throw Error(ErrorKind::databaseDamaged, damageSentence(db, key, row));
}

OccurrenceSummary checkedSummary(const Database& db, const SeriesKey& key, const PointTextsView& row) {
    try {
        const OccurrenceSummary held(parseOccurrence(row.occurrence));
        // A row from before there were summaries has none.
        if (held == row.summary || row.summary.parts == 0) return held;
    } catch (const Error& e) {
        if (e.kind() != ErrorKind::badValue) throw;
    }
    throw Error(ErrorKind::databaseDamaged, "The database " + quote(db.file()) +
                                                " holds an occurrence text of the data point of " +
                                                pidText(key.pid) + " at " + timeText(row.time) +
                                                " that is damaged. Restore it from a backup.");
}

PointTextTable::PointTextTable(Database& db)
    : db_(db),
      get_(db,
           "SELECT " + std::string(pointTextColumns) + " FROM data_point_text WHERE series = ? AND time = ?"),
      put_(db,
           "INSERT INTO data_point_text "
           "(series, time, occurrence, extra, parts, excursion_pid, downtime_pid, checksum) "
           "VALUES (?, ?, ?, ?, ?, ?, ?, ?) "
           "ON CONFLICT (series, time) DO UPDATE SET occurrence = excluded.occurrence, "
           "extra = excluded.extra, parts = excluded.parts, excursion_pid = excluded.excursion_pid, "
           "downtime_pid = excluded.downtime_pid, checksum = excluded.checksum"),
      remove_(db, "DELETE FROM data_point_text WHERE series = ? AND time = ?") {}

std::optional<PointTexts> PointTextTable::get(const SeriesKey& key, std::int64_t series, Time time) {
    const ResetAtEnd reset(get_);
    if (!get_.bindAll(series, time).step()) return std::nullopt;
    const PointTextsView row = readPointTexts(db_, get_, key, series);
    return PointTexts{row.time, std::string(row.occurrence), std::string(row.extra),
                      checkedSummary(db_, key, row)};
}

void PointTextTable::put(std::int64_t series, const PointTexts& row) {
    if (row.occurrence.empty() && row.extra.empty()) return remove_.bindAll(series, row.time).run();
    const OccurrenceSummary& summary = row.summary;
    put_.bindAll(series, row.time, row.occurrence, row.extra, summary.parts, summary.excursion_pid,
                 summary.downtime_pid, checksumOf(series, row.time, row.occurrence, row.extra, summary))
        .run();
}

}  // namespace vtdn::store

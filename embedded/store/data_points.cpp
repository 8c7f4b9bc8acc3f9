#include "store/data_points.h"

#include <limits>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/writable.h"

namespace vtdn::store {
namespace {

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

SeriesKey dataPointSeries(const ParameterSet& parameters, Pid pid, const std::optional<Interval>& asked) {
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
    if (asked && *asked != *entry.interval)
        throw Error(ErrorKind::badInterval, "The data points of " + pidText(pid) + " have intervals of " +
                                                entry.interval->text() + " and not of " + asked->text() +
                                                ".");
    return {pid, *entry.interval};
}

DataPointStore::DataPointStore(Database& db, SeriesStore& series)
    : db_(db),
      series_(series),
      get_rows_(db, "SELECT " + std::string(pointTextColumns) +
                        " FROM data_point_text WHERE series = ? AND time BETWEEN ? AND ? ORDER BY time"),
      texts_(db),
      edits_(db) {}

void requireTimes(Time first, Time last) {
    requireTime(first);
    requireTime(last);
    if (last < first)
        throw Error(ErrorKind::outOfRange,
                    "The span ends (" + timeText(last) + ") before it starts (" + timeText(first) + ").");
}

std::vector<DataPoint> DataPointStore::list(const SeriesKey& key, Time first, Time last) {
    requireTimes(first, last);
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
            const PointTextsView row = readPointTexts(db_, get_rows_, key, series);
            if (points.empty() || points.back().time != row.time) {
                requireRoom(key, points);
                points.push_back({row.time, {}, {}, {}});
            }
            points.back().occurrence = row.occurrence;
            points.back().extra = row.extra;
        }
    };
    series_.forEachStored(key, first, last, [&](Time time, Item item) {
        takeTexts(time - 1);
        requireRoom(key, points);
        points.push_back({time, std::move(item), {}, {}});
        takeTexts(time);
        return true;
    });
    takeTexts(last);
    return points;
}

std::optional<DataPoint> DataPointStore::first(const SeriesKey& key, Time first, Time last) {
    requireTimes(first, last);
    const Snapshot snapshot(db_);
    const auto series = series_.find(key);
    if (series == 0) return std::nullopt;
    std::optional<DataPoint> found;
    series_.forEachStored(key, first, last, [&](Time time, Item item) {
        found = DataPoint{time, std::move(item), {}, {}};
        return false;
    });
    const ResetAtEnd reset(get_rows_);
    if (!get_rows_.bindAll(series, first, found ? found->time : last).step()) return found;
    const PointTextsView row = readPointTexts(db_, get_rows_, key, series);
    if (!found || row.time < found->time) found = DataPoint{row.time, {}, {}, {}};
    found->occurrence = row.occurrence;
    found->extra = row.extra;
    return found;
}

EditedParts DataPointStore::write(const SeriesKey& key, Time time, const PointChange& change,
                                  const EditOrigin& origin) {
    requireBoundary(key.pid, key.interval, time);
    if (change.value) requireStorable(key.pid, *change.value);
    for (const auto* text : {&change.occurrence, &change.extra})
        if (*text) requireStorableText(key.pid, **text);
    requireStorable(origin);
    const OccurrenceSummary summary(parseOccurrence(change.occurrence.value_or(std::string())));
    Transaction transaction(db_);
    auto series = series_.find(key);
    std::optional<PointTexts> stored;
    if (series != 0) stored = texts_.get(key, series, time);
    PointTexts texts = stored.value_or(PointTexts{time, {}, {}, {}});
    WriteItem item{{}, false, false};
    if (series != 0 && (change.value || change.code || !change.may_create))
        item.item = series_.read(key, time);
    if (!change.may_create && !stored && item.item == Item{})
        throw Error(ErrorKind::unknownDataPoint,
                    "Nothing is stored of " + pidText(key.pid) + " at " + timeText(time) + ".");
    auto parts = EditedParts::none;
    if (change.value && !isSame(*change.value, item.item.value)) {
        item.item.value = *change.value;
        item.value = true;
        parts |= EditedParts::value;
    }
    if (change.code && *change.code != item.item.code) {
        item.item.code = *change.code;
        item.code = true;
        parts |= EditedParts::code;
    }
    if (change.occurrence && *change.occurrence != texts.occurrence) {
        texts.occurrence = *change.occurrence;
        texts.summary = summary;
        parts |= EditedParts::occurrence;
    }
    if (change.extra && *change.extra != texts.extra) {
        texts.extra = *change.extra;
        parts |= EditedParts::extra;
    }
    if (parts == EditedParts::none) return parts;
    if (item.value || item.code) series_.write(key, time, item);
    if (series == 0) series = series_.findOrAdd(key);
    if (change.occurrence || change.extra) texts_.put(series, texts);
    edits_.add(series, time, parts, origin);
    transaction.commit();
    return parts;
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
                (void)checkedSummary(db_, key, readPointTexts(db_, get_rows_, key, series));
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
    const auto edits = edits_.check();
    sentences.insert(sentences.end(), edits.begin(), edits.end());
    return sentences;
}

}  // namespace vtdn::store

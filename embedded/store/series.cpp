#include "store/series.h"

#include <algorithm>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/series_rows.h"

namespace vtdn::store {
namespace {

bool isAll(std::span<const WriteParts> mask, WriteParts parts) {
    return std::all_of(mask.begin(), mask.end(), [parts](WriteParts m) { return m == parts; });
}

}  // namespace

void requireBoundary(Pid pid, const Interval& interval, Time time) {
    if (time < earliestTime || time > latestTime)
        throw Error(ErrorKind::outOfRange, "The time is outside the years 100 to 9999.");
    if (interval.begin(interval.index(time)) != time)
        throw Error(ErrorKind::offBoundary, timeText(time) + " is not on the " + interval.text() +
                                                " interval of " + pidText(pid) +
                                                ". Give the beginning of an interval.");
}

SeriesStore::SeriesStore(Database& db)
    : db_(db),
      find_series_(db, "SELECT id FROM series WHERE pid = ? AND interval = ?"),
      add_series_(db, "INSERT INTO series (pid, interval) VALUES (?, ?)"),
      get_chunk_(db, "SELECT data FROM chunk WHERE id = ?"),
      get_chunks_(db, "SELECT id, data FROM chunk WHERE id BETWEEN ? AND ? ORDER BY id"),
      put_chunk_(
          db,
          "INSERT INTO chunk (id, data) VALUES (?, ?) ON CONFLICT (id) DO UPDATE SET data = excluded.data"),
      remove_chunk_(db, "DELETE FROM chunk WHERE id = ?") {}

std::int64_t SeriesStore::find(const SeriesKey& key) {
    ResetAtEnd reset(find_series_);
    find_series_.bindAll(key.pid, key.interval.text());
    return find_series_.step() ? find_series_.number(0) : 0;
}

std::int64_t SeriesStore::findOrAdd(const SeriesKey& key) {
    if (const auto found = find(key); found != 0) return found;
    add_series_.bindAll(key.pid, key.interval.text()).run();
    return db_.lastInsertedRow();
}

std::string SeriesStore::damageSentence(const SeriesKey& key, std::int64_t chunk) const {
    const auto first = chunk * slotsPerChunk;
    return "The values of " + pidText(key.pid) + " from " + timeText(key.interval.begin(first)) + " to " +
           timeText(key.interval.begin(first + slotsPerChunk)) + " are damaged in the database " +
           quote(db_.file()) + ". Restore it from a backup, or import these values again.";
}

// Appends slots of a chunk to a run.
void SeriesStore::decodeRow(const SeriesKey& key, std::int64_t row, std::span<const std::byte> blob,
                            std::int32_t first, std::int32_t count, Run& run) const {
    try {
        decodeChunk(blob, checksumKey(row), first, count, run);
    } catch (const DamagedChunk&) {
        throw Error(ErrorKind::databaseDamaged, damageSentence(key, chunkOfRow(row)));
    }
}

// All slots of a chunk.
void SeriesStore::loadChunk(const SeriesKey& key, std::int64_t series, std::int64_t chunk, Run& run) {
    const auto row = rowOf(series, chunk);
    run.clear();
    ResetAtEnd reset(get_chunk_);
    get_chunk_.bindAll(row);
    if (get_chunk_.step()) decodeRow(key, row, get_chunk_.blob(0), 0, slotsPerChunk, run);
    run.finish(slotsPerChunk);
}

void SeriesStore::storeChunk(std::int64_t series, std::int64_t chunk, const Run& run, std::int32_t first,
                             std::int32_t count) {
    const auto row = rowOf(series, chunk);
    encodeChunk(run, first, count, checksumKey(row), blob_);
    if (blob_.empty())
        remove_chunk_.bindAll(row).run();
    else
        put_chunk_.bindAll(row, std::span<const std::byte>(blob_)).run();
}

// Intervals of a run that lie in one chunk, with what is written of them (empty: everything).
struct SeriesStore::RunPart {
    const Run& run;
    std::int32_t first;
    std::int32_t count;
    std::span<const WriteParts> mask;

    // Appends to a run what the chunk will have, of values or of codes: what was stored, and in its place
    // from the slot on what is taken of this part.
    void mergeInto(Run& merged, const Run& stored, std::int32_t slot, bool (*takes)(WriteParts),
                   void (Run::*append)(const Run&, std::int32_t, std::int32_t)) const {
        (merged.*append)(stored, 0, slot);
        if (mask.empty()) (merged.*append)(run, first, count);
        for (auto from = mask.begin(); from != mask.end();) {
            const bool taken = takes(*from);
            const auto end =
                std::find_if(from, mask.end(), [&](WriteParts parts) { return takes(parts) != taken; });
            const auto at = static_cast<std::int32_t>(from - mask.begin());
            (merged.*append)(taken ? run : stored, (taken ? first : slot) + at,
                             static_cast<std::int32_t>(end - from));
            from = end;
        }
        (merged.*append)(stored, slot + count, slotsPerChunk - slot - count);
    }
};

// Writes a part of a run into a chunk, the first interval into the slot. What is all written anew needs
// nothing of what was there, and mends it when it was damaged.
void SeriesStore::putPart(const SeriesKey& key, std::int64_t series, std::int64_t chunk, std::int32_t slot,
                          const RunPart& part) {
    const bool all = isAll(part.mask, WriteParts::both);
    if (all && part.count == slotsPerChunk)
        return storeChunk(series, chunk, part.run, part.first, part.count);
    if (!all && isAll(part.mask, WriteParts::nothing)) return;
    loadChunk(key, series, chunk, stored_);
    merged_.clear();
    part.mergeInto(merged_, stored_, slot, takesValue, &Run::appendValuesOf);
    part.mergeInto(merged_, stored_, slot, takesCode, &Run::appendCodesOf);
    merged_.finish(slotsPerChunk);
    storeChunk(series, chunk, merged_, 0, slotsPerChunk);
}

Item SeriesStore::read(const SeriesKey& key, Time time) {
    Run run;
    read(key, time, 1, run);
    return run.item(0);
}

void SeriesStore::read(const SeriesKey& key, Time start, std::int32_t count, Run& run) {
    requireBoundary(key.pid, key.interval, start);
    run.clear();
    const std::int64_t first = key.interval.index(start);
    const std::int64_t end = first + count;
    std::int64_t at = first;  // the next interval to be appended
    const auto appendNothing = [&](std::int64_t until) {
        run.appendNulls(static_cast<std::int32_t>(until - at));
        run.appendCode(0, static_cast<std::int32_t>(until - at));
        at = until;
    };
    const Snapshot snapshot(db_);
    if (const auto series = find(key); series != 0) {
        ResetAtEnd reset(get_chunks_);
        get_chunks_.bindAll(rowOf(series, chunkOfIndex(first)), rowOf(series, chunkOfIndex(end - 1)));
        while (get_chunks_.step()) {
            const auto row = get_chunks_.number(0);
            const std::int64_t begin = chunkOfRow(row) * slotsPerChunk;
            if (begin > at) appendNothing(begin);
            const std::int64_t stop = std::min(begin + slotsPerChunk, end);
            decodeRow(key, row, get_chunks_.blob(1), static_cast<std::int32_t>(at - begin),
                      static_cast<std::int32_t>(stop - at), run);
            at = stop;
        }
    }
    appendNothing(end);
    run.finish(count);
}

void SeriesStore::write(const SeriesKey& key, Time time, const WriteItem& item) {
    Run run;
    run.appendValue(item.item.value);
    run.appendCode(item.item.code, 1);
    run.finish(1);
    const auto mask = static_cast<WriteParts>((item.value ? 1 : 0) | (item.code ? 2 : 0));
    write(key, time, run, std::span(&mask, 1));
}

void SeriesStore::write(const SeriesKey& key, Time start, const Run& run, std::span<const WriteParts> mask) {
    requireBoundary(key.pid, key.interval, start);
    if (!mask.empty() && mask.size() != static_cast<std::size_t>(run.count()))
        throw Error(ErrorKind::internal, "A run was given a mask of another length.");
    Transaction transaction(db_);
    const auto series = findOrAdd(key);
    const std::int64_t first = key.interval.index(start);
    const std::int64_t end = first + run.count();
    for (std::int64_t at = first; at < end;) {
        const auto chunk = chunkOfIndex(at);
        const std::int64_t begin = chunk * slotsPerChunk;
        const std::int64_t stop = std::min(begin + slotsPerChunk, end);
        const auto offset = static_cast<std::int32_t>(at - first);
        const auto count = static_cast<std::int32_t>(stop - at);
        const auto part =
            mask.empty() ? mask
                         : mask.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(count));
        putPart(key, series, chunk, static_cast<std::int32_t>(at - begin), {run, offset, count, part});
        at = stop;
    }
    transaction.commit();
}

SeriesStore::Appender::Appender(SeriesStore& store, const SeriesKey& key)
    : store_(store), key_(key), series_(store.findOrAdd(key)) {}

void SeriesStore::Appender::append(Time time, const Item& item) {
    requireBoundary(key_.pid, key_.interval, time);
    const auto index = key_.interval.index(time);
    if (last_ && index <= *last_)
        throw Error(ErrorKind::outOfRange, timeText(time) + " of " + pidText(key_.pid) +
                                               " does not come after " +
                                               timeText(key_.interval.begin(*last_)) +
                                               ". Values are loaded in ascending order of time.");
    const auto chunk = chunkOfIndex(index);
    if (chunk != chunk_) finish();
    chunk_ = chunk;
    const auto slot = static_cast<std::size_t>(index - chunk * slotsPerChunk);
    const auto gap = static_cast<std::int32_t>(slot - mask_.size());
    run_.appendNulls(gap);
    run_.appendCode(0, gap);
    mask_.resize(slot, WriteParts::nothing);
    run_.appendValue(item.value);
    run_.appendCode(item.code, 1);
    mask_.push_back(WriteParts::both);
    last_ = index;
}

void SeriesStore::Appender::finish() {
    if (mask_.empty()) return;
    const auto count = static_cast<std::int32_t>(mask_.size());
    run_.finish(count);
    store_.putPart(key_, series_, chunk_, 0, {run_, 0, count, mask_});
    run_.clear();
    mask_.clear();
}

std::map<std::int64_t, SeriesKey> SeriesStore::keys() {
    std::map<std::int64_t, SeriesKey> all;
    Statement series(db_, "SELECT id, pid, interval FROM series");
    while (series.step())
        all.insert({series.number(0), {series.integer(1), Interval::parse(series.text(2))}});
    return all;
}

}  // namespace vtdn::store

#include "store/series.h"

#include <algorithm>

#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::store {
namespace {

constexpr std::int64_t chunkBias = std::int64_t{1} << 31;

// Series and chunk in one number, in the order of reading.
std::int64_t rowOf(std::int64_t series, std::int64_t chunk) {
    return (series << 32) + chunk + chunkBias;
}
std::int64_t chunkOfRow(std::int64_t row) {
    return (row & 0xFFFF'FFFF) - chunkBias;
}
std::int64_t seriesOfRow(std::int64_t row) {
    return row >> 32;
}

std::uint64_t checksumKey(std::int64_t row) {
    return static_cast<std::uint64_t>(row);
}

std::int64_t chunkOfIndex(std::int64_t index) {
    return floorDivide(index, slotsPerChunk);
}

std::vector<Item> emptyChunk() {
    return std::vector<Item>(static_cast<std::size_t>(slotsPerChunk));
}

void apply(const WriteItem& change, Item& item) {
    if (change.value) item.value = change.item.value;
    if (change.code) item.code = change.item.code;
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

// 0 when nothing was ever written to the series.
std::int64_t SeriesStore::findSeries(const SeriesKey& key) {
    ResetAtEnd reset(find_series_);
    find_series_.bindAll(key.pid, key.interval.text());
    return find_series_.step() ? find_series_.number(0) : 0;
}

std::int64_t SeriesStore::findOrAddSeries(const SeriesKey& key) {
    if (const auto found = findSeries(key); found != 0) return found;
    add_series_.bindAll(key.pid, key.interval.text()).run();
    return db_.lastInsertedRow();
}

std::string SeriesStore::damageSentence(const SeriesKey& key, std::int64_t chunk) const {
    const auto first = chunk * slotsPerChunk;
    return "The values of " + pidText(key.pid) + " from " + timeText(key.interval.begin(first)) + " to " +
           timeText(key.interval.begin(first + slotsPerChunk)) + " are damaged in the database " +
           quote(db_.file()) + ". Restore it from a backup, or import these values again.";
}

void SeriesStore::failChunk(const SeriesKey& key, std::int64_t chunk) const {
    throw Error(ErrorKind::databaseDamaged, damageSentence(key, chunk));
}

std::vector<Item> SeriesStore::loadChunk(const SeriesKey& key, std::int64_t series, std::int64_t chunk) {
    const auto row = rowOf(series, chunk);
    ResetAtEnd reset(get_chunk_);
    get_chunk_.bindAll(row);
    if (!get_chunk_.step()) return emptyChunk();
    try {
        return unpackChunk(get_chunk_.blob(0), checksumKey(row));
    } catch (const DamagedChunk&) {
        failChunk(key, chunk);
    }
}

void SeriesStore::storeChunk(std::int64_t series, std::int64_t chunk, std::span<const Item> items) {
    const auto row = rowOf(series, chunk);
    encodeChunk(items, checksumKey(row), blob_);
    if (blob_.empty())
        remove_chunk_.bindAll(row).run();
    else
        put_chunk_.bindAll(row, std::span<const std::byte>(blob_)).run();
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
    if (const auto series = findSeries(key); series != 0) {
        ResetAtEnd reset(get_chunks_);
        get_chunks_.bindAll(rowOf(series, chunkOfIndex(first)), rowOf(series, chunkOfIndex(end - 1)));
        while (get_chunks_.step()) {
            const auto row = get_chunks_.number(0);
            const std::int64_t begin = chunkOfRow(row) * slotsPerChunk;
            if (begin > at) appendNothing(begin);
            const std::int64_t stop = std::min(begin + slotsPerChunk, end);
            try {
                decodeChunk(get_chunks_.blob(1), checksumKey(row), static_cast<std::int32_t>(at - begin),
                            static_cast<std::int32_t>(stop - at), run);
            } catch (const DamagedChunk&) {
                failChunk(key, chunkOfRow(row));
            }
            at = stop;
        }
    }
    appendNothing(end);
    run.finish(count);
}

// Calls change(items, offset) for each chunk that intervals first to first + count - 1 lie in: items are
// those of them in the chunk, offset is the number of the first one from the beginning of the run.
template <typename Edit>
void SeriesStore::edit(const SeriesKey& key, std::int64_t first, std::int64_t count, bool whole,
                       Edit change) {
    Transaction transaction(db_);
    const auto series = findOrAddSeries(key);
    const std::int64_t end = first + count;
    for (std::int64_t at = first; at < end;) {
        const auto chunk = chunkOfIndex(at);
        const std::int64_t begin = chunk * slotsPerChunk;
        const std::int64_t stop = std::min(begin + slotsPerChunk, end);
        auto items = whole && at == begin && stop == begin + slotsPerChunk ? emptyChunk()
                                                                           : loadChunk(key, series, chunk);
        change(std::span(items).subspan(static_cast<std::size_t>(at - begin),
                                        static_cast<std::size_t>(stop - at)),
               static_cast<std::size_t>(at - first));
        storeChunk(series, chunk, items);
        at = stop;
    }
    transaction.commit();
}

void SeriesStore::write(const SeriesKey& key, Time time, const WriteItem& item) {
    write(key, time, std::span(&item, 1));
}

void SeriesStore::write(const SeriesKey& key, Time start, std::span<const WriteItem> items) {
    requireBoundary(key.pid, key.interval, start);
    const bool whole =
        std::all_of(items.begin(), items.end(), [](const WriteItem& i) { return i.value && i.code; });
    edit(key, key.interval.index(start), static_cast<std::int64_t>(items.size()), whole,
         [&](std::span<Item> stored, std::size_t offset) {
             for (std::size_t i = 0; i < stored.size(); ++i) apply(items[offset + i], stored[i]);
         });
}

void SeriesStore::write(const SeriesKey& key, Time start, std::span<const float> values,
                        std::span<const MonitorCode> codes) {
    requireBoundary(key.pid, key.interval, start);
    if (values.size() != codes.size())
        throw Error(ErrorKind::internal, "A run was given a different number of values and codes.");
    edit(key, key.interval.index(start), static_cast<std::int64_t>(values.size()), true,
         [&](std::span<Item> stored, std::size_t offset) {
             for (std::size_t i = 0; i < stored.size(); ++i)
                 stored[i] = {values[offset + i], codes[offset + i]};
         });
}

SeriesStore::Appender::Appender(SeriesStore& store, const SeriesKey& key)
    : store_(store), key_(key), series_(store.findOrAddSeries(key)) {}

void SeriesStore::Appender::append(Time time, Item item) {
    requireBoundary(key_.pid, key_.interval, time);
    const auto index = key_.interval.index(time);
    if (last_ && index <= *last_)
        throw Error(ErrorKind::outOfRange, timeText(time) + " of " + pidText(key_.pid) +
                                               " does not come after " +
                                               timeText(key_.interval.begin(*last_)) +
                                               ". Values are loaded in ascending order of time.");
    const auto chunk = chunkOfIndex(index);
    if (count_ == 0 || chunk != chunk_) {
        finish();
        items_ = emptyChunk();
        given_.assign(items_.size(), false);
        chunk_ = chunk;
    }
    const auto slot = static_cast<std::size_t>(index - chunk * slotsPerChunk);
    items_[slot] = std::move(item);
    given_[slot] = true;
    ++count_;
    last_ = index;
}

void SeriesStore::Appender::finish() {
    if (count_ == 0) return;
    if (count_ < slotsPerChunk) {
        const std::vector<Item> stored = store_.loadChunk(key_, series_, chunk_);
        for (std::size_t i = 0; i < items_.size(); ++i)
            if (!given_[i]) items_[i] = stored[i];
    }
    store_.storeChunk(series_, chunk_, items_);
    count_ = 0;
}

std::vector<std::string> SeriesStore::check() {
    std::vector<std::string> sentences;
    const Snapshot snapshot(db_);
    std::map<std::int64_t, SeriesKey> keys;
    Statement series(db_, "SELECT id, pid, interval FROM series");
    while (series.step())
        keys.insert({series.number(0), {series.integer(1), Interval::parse(series.text(2))}});
    Statement chunks(db_, "SELECT id, data FROM chunk ORDER BY id");
    Run run;
    while (chunks.step()) {
        const auto row = chunks.number(0);
        const auto key = keys.find(seriesOfRow(row));
        if (key == keys.end()) {
            sentences.push_back("The database " + quote(db_.file()) +
                                " holds values that belong to no parameter. Restore it from a backup.");
            continue;
        }
        try {
            run.clear();
            decodeChunk(chunks.blob(1), checksumKey(row), 0, slotsPerChunk, run);
        } catch (const DamagedChunk&) {
            sentences.push_back(damageSentence(key->second, chunkOfRow(row)));
        }
    }
    return sentences;
}

std::int64_t SeriesStore::countStored() {
    std::int64_t total = 0;
    const Snapshot snapshot(db_);
    Statement chunks(db_, "SELECT id, data FROM chunk");
    while (chunks.step()) {
        const auto items = unpackChunk(chunks.blob(1), checksumKey(chunks.number(0)));
        total += std::count_if(items.begin(), items.end(), [](const Item& item) { return item != Item{}; });
    }
    return total;
}

}  // namespace vtdn::store

// Going over what a series holds: all that is stored in a span, intervals picked one by one, everything.
#include <algorithm>

#include "store/error.h"
#include "store/series.h"
#include "store/series_rows.h"

namespace vtdn::store {
namespace {

// How many intervals lie between the beginnings of two in one chunk. Their distance in seconds fits into 32
// bits, whose division is much faster.
std::int32_t slotBehind(const Interval& interval, Time low, Time time) {
    if (interval.months() != 0) return static_cast<std::int32_t>(interval.index(time) - interval.index(low));
    return static_cast<std::int32_t>(time - low) / static_cast<std::int32_t>(interval.seconds());
}

}  // namespace

void SeriesStore::forEachStored(const SeriesKey& key, Time first, Time last, const EachStored& each) {
    std::int64_t from = key.interval.index(first);
    if (key.interval.begin(from) < first) ++from;
    const std::int64_t end = key.interval.index(last) + 1;
    if (from >= end) return;
    const Snapshot snapshot(db_);
    const auto series = find(key);
    if (series == 0) return;
    const ResetAtEnd reset(get_chunks_);
    get_chunks_.bindAll(rowOf(series, chunkOfIndex(from)), rowOf(series, chunkOfIndex(end - 1)));
    Run run;
    while (get_chunks_.step()) {
        const auto row = get_chunks_.number(0);
        const std::int64_t begin = chunkOfRow(row) * slotsPerChunk;
        const std::int64_t at = std::max(begin, from);
        const auto count = static_cast<std::int32_t>(std::min(begin + slotsPerChunk, end) - at);
        run.clear();
        decodeRow(key, row, get_chunks_.blob(1), static_cast<std::int32_t>(at - begin), count, run);
        run.finish(count);
        for (std::int32_t i = 0; i < count; ++i)
            if (Item item = run.item(i); item != Item{})
                if (!each(key.interval.begin(at + i), std::move(item))) return;
    }
}

void SeriesStore::forEachAt(const SeriesKey& key, std::span<const Time> times,
                            std::vector<std::string>& damages, const EachAt& each) {
    const Snapshot snapshot(db_);
    const auto series = find(key);
    Run run;
    for (std::size_t from = 0; from < times.size();) {
        const std::int64_t chunk = chunkOfIndex(key.interval.index(times[from]));
        const std::int64_t begin = chunk * slotsPerChunk;
        const Time behind = key.interval.begin(begin + slotsPerChunk);
        std::size_t end = from + 1;
        while (end < times.size() && times[end] < behind) ++end;
        const std::int64_t low = key.interval.index(times[from]);
        const std::int32_t count = slotBehind(key.interval, times[from], times[end - 1]) + 1;
        try {
            run.clear();
            const auto row = rowOf(series, chunk);
            const ResetAtEnd reset(get_chunk_);
            if (series != 0 && get_chunk_.bindAll(row).step())
                decodeRow(key, row, get_chunk_.blob(0), static_cast<std::int32_t>(low - begin), count, run);
            run.finish(count);
            for (std::size_t i = from; i < end; ++i)
                each(i, run.item(slotBehind(key.interval, times[from], times[i])));
        } catch (const Error& damage) {
            if (damage.kind() != ErrorKind::databaseDamaged) throw;
            damages.emplace_back(damage.what());
        }
        from = end;
    }
}

std::vector<std::string> SeriesStore::check() {
    std::vector<std::string> sentences;
    const Snapshot snapshot(db_);
    const auto known = keys();
    Statement chunks(db_, "SELECT id, data FROM chunk ORDER BY id");
    Run run;
    while (chunks.step()) {
        const auto row = chunks.number(0);
        const auto key = known.find(seriesOfRow(row));
        if (key == known.end()) {
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
    Run run;
    while (chunks.step()) {
        run.clear();
        decodeChunk(chunks.blob(1), checksumKey(chunks.number(0)), 0, slotsPerChunk, run);
        run.finish(slotsPerChunk);
        for (std::int32_t i = 0; i < slotsPerChunk; ++i) total += run.item(i) != Item{} ? 1 : 0;
    }
    return total;
}

}  // namespace vtdn::store

// Runs and chunks as plain arrays of items, which are easier to make and to compare.
#pragma once

#include <span>
#include <vector>

#include "store/chunk.h"
#include "store/run.h"
#include "store/series.h"

namespace vtdn::store::test {

inline store::Run runOf(std::span<const Item> items) {
    store::Run run;
    for (const Item& item : items) {
        run.appendValue(item.value);
        run.appendCode(item.code, 1);
    }
    run.finish(static_cast<std::int32_t>(items.size()));
    return run;
}

inline std::vector<Item> itemsOf(const store::Run& run) {
    std::vector<Item> items;
    items.reserve(static_cast<std::size_t>(run.count()));
    for (std::int32_t i = 0; i < run.count(); ++i) items.push_back(run.item(i));
    return items;
}

inline Blob packed(std::span<const Item> items, std::uint64_t key) {
    Blob blob;
    encodeChunk(runOf(items), 0, static_cast<std::int32_t>(items.size()), key, blob);
    return blob;
}

/// All slots of a chunk.
inline std::vector<Item> unpacked(std::span<const std::byte> blob, std::uint64_t key) {
    store::Run run;
    decodeChunk(blob, key, 0, slotsPerChunk, run);
    run.finish(slotsPerChunk);
    return itemsOf(run);
}

/// A masked write into a site (by PID and span) or a series (by key and time).
template <typename Target, typename Key, typename Place>
void writeItems(Target& target, const Key& key, const Place& place, std::span<const WriteItem> items) {
    std::vector<Item> all;
    std::vector<WriteParts> mask;
    for (const WriteItem& item : items) {
        all.push_back(item.item);
        mask.push_back(static_cast<WriteParts>((item.value ? 1 : 0) | (item.code ? 2 : 0)));
    }
    target.write(key, place, runOf(all), mask);
}

}  // namespace vtdn::store::test

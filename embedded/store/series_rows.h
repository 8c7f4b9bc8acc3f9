// Where the chunks of a series lie: each is the row of one number.
#pragma once

#include <cstdint>

#include "store/chunk.h"
#include "store/time.h"

namespace vtdn::store {

inline constexpr std::int64_t chunkBias = std::int64_t{1} << 31;

/// Series and chunk in one number, in the order of reading.
[[nodiscard]] constexpr std::int64_t rowOf(std::int64_t series, std::int64_t chunk) {
    return (series << 32) + chunk + chunkBias;
}
[[nodiscard]] constexpr std::int64_t chunkOfRow(std::int64_t row) {
    return (row & 0xFFFF'FFFF) - chunkBias;
}
[[nodiscard]] constexpr std::int64_t seriesOfRow(std::int64_t row) {
    return row >> 32;
}

[[nodiscard]] constexpr std::uint64_t checksumKey(std::int64_t row) {
    return static_cast<std::uint64_t>(row);
}

/// The chunk that holds the interval of a number.
[[nodiscard]] constexpr std::int64_t chunkOfIndex(std::int64_t index) {
    return floorDivide(index, slotsPerChunk);
}

}  // namespace vtdn::store

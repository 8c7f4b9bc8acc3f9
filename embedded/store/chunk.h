// The packed form of consecutive intervals of one series, as it stands in a blob.
//
// All numbers are little endian.
//
//   0  byte     format version, 1
//   1  byte     0
//   2  16 bits  number of slots described, n, 1 to 1440; slots behind them hold no value and code 0
//   4  32 bits  checksum of all that follows, seeded with the key of the chunk
//   8  value segments until n slots are covered:
//        byte kind (0 none, 1 integer, 2 single, 3 double, 4 text), 16 bits number of slots, then the values:
//        none, 4, 4 or 8 bytes each; of a text its length in bytes as 16 bits and its UTF-8
//      code segments until n slots are covered:
//        byte width (0, 1, 2 or 4), 16 bits number of slots, then one code of 4 bytes for all of them (width
//        0) or a signed code of that width for each
//
// A blob that says anything else is damaged: every length is checked before it is used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <vector>

#include "store/run.h"
#include "store/value.h"

namespace vtdn::store {

/// Intervals in a chunk: a day of minutes, 60 days of hours.
inline constexpr std::int32_t slotsPerChunk = 1440;

using Blob = std::vector<std::byte>;

/// A blob that is not what encodeChunk made for its key. The series that it belongs to says which values are
/// lost.
struct DamagedChunk : std::exception {
    [[nodiscard]] const char* what() const noexcept override {
        return "A block of stored values is damaged.";
    }
};

/// The packed form of intervals first to first + count - 1 of a run, up to slotsPerChunk of them; empty when
/// they hold nothing but no value and code 0. The key is the chunk's place in the file. Throws badValue for a
/// text longer than longestText.
void encodeChunk(const Run& run, std::int32_t first, std::int32_t count, std::uint64_t key, Blob& result);

/// Appends slots first to first + count - 1 to a run. Throws DamagedChunk; the run is then to be thrown away.
void decodeChunk(std::span<const std::byte> blob, std::uint64_t key, std::int32_t first, std::int32_t count,
                 Run& run);

/// Checksum of a block of bytes. Differs for any single changed 32-bit word; 2^-32 otherwise.
[[nodiscard]] std::uint32_t checksum(std::span<const std::byte> bytes, std::uint64_t seed);

}  // namespace vtdn::store

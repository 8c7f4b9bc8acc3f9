// Series of values with monitor codes in one data database, packed into chunks.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/chunk.h"
#include "store/database.h"
#include "store/interval.h"
#include "store/run.h"
#include "store/value.h"

namespace vtdn::store {

/// What a series is: values of a parameter at a storable interval.
struct SeriesKey {
    Pid pid;
    Interval interval;
};

/// Throws offBoundary unless the time is the beginning of a storable interval of a parameter, and outOfRange
/// outside the years 100 to 9999.
void requireBoundary(Pid pid, const Interval& interval, Time time);

/// One interval of which the value, the code, both or nothing is written.
struct WriteItem {
    Item item;
    bool value = true;  ///< write the value
    bool code = true;   ///< write the monitor code
};

/// What of an interval of a run is written.
enum class WriteParts : std::uint8_t { nothing = 0, value = 1, code = 2, both = 3 };

[[nodiscard]] constexpr bool takesValue(WriteParts parts) {
    return (static_cast<unsigned>(parts) & 1U) != 0;
}
[[nodiscard]] constexpr bool takesCode(WriteParts parts) {
    return (static_cast<unsigned>(parts) & 2U) != 0;
}

/// The series of one data database. Times must be beginnings of the series' interval (offBoundary otherwise).
class SeriesStore {
  public:
    explicit SeriesStore(Database& db);

    [[nodiscard]] Item read(const SeriesKey& key, Time time);
    /// Reads consecutive intervals of the series' own length, as of one moment.
    void read(const SeriesKey& key, Time start, std::int32_t count, Run& run);

    /// Called with the beginning and the item of an interval; false ends it.
    using EachStored = std::function<bool(Time time, Item item)>;
    /// Every interval that begins from first to last, any times with both included, and holds a value or a
    /// code, in order of time. What lies between costs nothing.
    void forEachStored(const SeriesKey& key, Time first, Time last, const EachStored& each);

    /// Called with the place of an interval among those asked for and with its item.
    using EachAt = std::function<void(std::size_t i, Item item)>;
    /// Intervals by their beginnings, in ascending order. Only blocks that hold one of them are read. A block
    /// that is damaged adds a sentence, and its intervals are left out.
    void forEachAt(const SeriesKey& key, std::span<const Time> times, std::vector<std::string>& damages,
                   const EachAt& each);

    /// Writes one interval, or as much of it as the mask says. On the disk when it returns.
    void write(const SeriesKey& key, Time time, const WriteItem& item);
    /// Writes consecutive intervals, all of them or none. On the disk when it returns. The mask says what is
    /// written of each interval, as many as the run has; without one everything is.
    void write(const SeriesKey& key, Time start, const Run& run, std::span<const WriteParts> mask = {});

    /// Takes values in ascending order of time, much faster than single writes. They count once finish() was
    /// called and the transaction around it is committed.
    class Appender {
      public:
        Appender(SeriesStore& store, const SeriesKey& key);
        /// Throws offBoundary, and outOfRange when the time is not behind the one before.
        void append(Time time, const Item& item);
        void finish();

      private:
        SeriesStore& store_;
        SeriesKey key_;
        std::int64_t series_;
        std::int64_t chunk_ = 0;
        std::optional<std::int64_t> last_;  // index of the interval appended last
        Run run_;                           // of the chunk that is being filled, from its first slot on
        std::vector<WriteParts> mask_;      // which intervals of it were appended
    };

    /// Reads every chunk and returns a sentence for each one that is damaged.
    [[nodiscard]] std::vector<std::string> check();
    /// Number of intervals that hold a value or a code, over all series.
    [[nodiscard]] std::int64_t countStored();

    // The number that stands for a series in this database.

    /// 0 when nothing was ever written to the series.
    [[nodiscard]] std::int64_t find(const SeriesKey& key);
    /// Inside a transaction.
    [[nodiscard]] std::int64_t findOrAdd(const SeriesKey& key);
    /// All of them.
    [[nodiscard]] std::map<std::int64_t, SeriesKey> keys();

  private:
    struct RunPart;

    void loadChunk(const SeriesKey& key, std::int64_t series, std::int64_t chunk, Run& run);
    void storeChunk(std::int64_t series, std::int64_t chunk, const Run& run, std::int32_t first,
                    std::int32_t count);
    void putPart(const SeriesKey& key, std::int64_t series, std::int64_t chunk, std::int32_t slot,
                 const RunPart& part);
    [[nodiscard]] std::string damageSentence(const SeriesKey& key, std::int64_t chunk) const;
    void decodeRow(const SeriesKey& key, std::int64_t row, std::span<const std::byte> blob,
                   std::int32_t first, std::int32_t count, Run& run) const;

    Database& db_;
    Statement find_series_;
    Statement add_series_;
    Statement get_chunk_;
    Statement get_chunks_;
    Statement put_chunk_;
    Statement remove_chunk_;
    // Scratch.
    Blob blob_;
    Run stored_;
    Run merged_;
};

}  // namespace vtdn::store

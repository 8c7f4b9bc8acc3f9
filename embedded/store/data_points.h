// Data points: what one interval of a stored parameter holds altogether, its value, its monitor code and two
// texts that nobody here reads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/parameters.h"
#include "store/series.h"
#include "store/value.h"

namespace vtdn::store {

/// One interval. Texts are UTF-8, counted, and may hold NUL; "" where there is none.
struct DataPoint {
    Time time = 0;  ///< beginning of the interval
    Item item;
    std::string occurrence;
    std::string extra;

    friend bool operator==(const DataPoint&, const DataPoint&) = default;
};

/// Most data points that one listing may have: almost four years of minutes. Each becomes an object.
inline constexpr std::size_t mostDataPoints = 2'000'000;

/// The texts that an interval has beside its value.
enum class PointText : std::uint8_t { occurrence, extra };

/// The series whose intervals are data points: of a parameter whose values are stored (I/O types 38 and 31),
/// at its own interval. Throws unknownParameter, notWritable for a constant or calculated parameter, and
/// badInterval for one without an interval or when another than its own is asked for.
[[nodiscard]] SeriesKey dataPointSeries(const ParameterSet& parameters, Pid pid, const Interval& asked);

/// The data points of one data database.
class DataPointStore {
  public:
    /// Both must outlive this.
    DataPointStore(Database& db, SeriesStore& series);

    /// Every interval that begins from first to last, both included, and holds a value, a code or a text, in
    /// order of time and as of one moment. Throws outOfRange for a span that ends before it starts, leaves
    /// the years 100 to 9999 or has more than mostDataPoints, and databaseDamaged.
    [[nodiscard]] std::vector<DataPoint> list(const SeriesKey& key, Time first, Time last);

    /// Writes one text of an interval and nothing else of it; "" removes it. On the disk when it returns.
    /// Throws offBoundary, outOfRange, badValue for a text over longestText, and databaseDamaged when what
    /// the interval has already cannot be read: it is then left as it is.
    void write(const SeriesKey& key, Time time, PointText which, std::string_view text);

    /// Reads all texts and returns a sentence for each damage that was found.
    [[nodiscard]] std::vector<std::string> check();

  private:
    struct Row;

    [[nodiscard]] Row readRow(const Statement& row, const SeriesKey& key, std::int64_t series) const;
    [[nodiscard]] std::string damageSentence(const SeriesKey& key) const;

    Database& db_;
    SeriesStore& series_;
    Statement get_rows_;
    Statement put_row_;
    Statement remove_row_;
};

}  // namespace vtdn::store

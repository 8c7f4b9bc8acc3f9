// Data points: what one interval of a stored parameter holds altogether, its value, its monitor code and two
// texts, the occurrence and the extra value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/database.h"
#include "store/edits.h"
#include "store/parameters.h"
#include "store/point_texts.h"
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

/// What is written of a data point; the rest stays as it is.
struct PointChange {
    std::optional<Value> value = std::nullopt;
    std::optional<MonitorCode> code = std::nullopt;
    std::optional<std::string> occurrence = std::nullopt;  ///< "" removes it
    std::optional<std::string> extra = std::nullopt;       ///< "" removes it
    bool may_create = true;  ///< whether the interval may be one that nothing is stored of
};

/// Throws outOfRange for a span that ends before it starts or leaves the years 100 to 9999.
void requireTimes(Time first, Time last);

/// The series whose intervals are data points: of a parameter whose values are stored (I/O types 38 and 31),
/// at its own interval, whichever that is unless one is asked for. Throws unknownParameter, notWritable for a
/// constant or calculated parameter, and badInterval for one without an interval or when another than its own
/// is asked for.
[[nodiscard]] SeriesKey dataPointSeries(const ParameterSet& parameters, Pid pid,
                                        const std::optional<Interval>& asked);

/// The data points of one data database.
class DataPointStore {
  public:
    /// Both must outlive this.
    DataPointStore(Database& db, SeriesStore& series);

    /// Every interval that begins from first to last, both included, and holds a value, a code or a text, in
    /// order of time and as of one moment. Throws outOfRange for a span that ends before it starts, leaves
    /// the years 100 to 9999 or has more than mostDataPoints, and databaseDamaged.
    [[nodiscard]] std::vector<DataPoint> list(const SeriesKey& key, Time first, Time last);

    /// The first of those that list() gives.
    [[nodiscard]] std::optional<DataPoint> first(const SeriesKey& key, Time first, Time last);

    /// Writes what differs from what is stored, with its edit, and returns what that was; when nothing
    /// differs, nothing is written. On the disk when it returns. Throws offBoundary, outOfRange, badValue for
    /// what cannot be kept and for an occurrence text that is none, unknownDataPoint, and databaseDamaged
    /// when what the interval has already and is looked at cannot be read: the texts, and the value and code
    /// unless only texts are written to an interval that may be new.
    EditedParts write(const SeriesKey& key, Time time, const PointChange& change, const EditOrigin& origin);

    /// The edits of this database.
    [[nodiscard]] EditLog& edits() { return edits_; }

    /// Reads all texts and edits and returns a sentence for each damage that was found.
    [[nodiscard]] std::vector<std::string> check();

  private:
    Database& db_;
    SeriesStore& series_;
    Statement get_rows_;
    PointTextTable texts_;
    EditLog edits_;
};

}  // namespace vtdn::store

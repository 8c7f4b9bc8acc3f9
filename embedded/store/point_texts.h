// The rows of the texts of data points: what stands beside value and code, one row for each interval that has
// such a text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/database.h"
#include "store/occurrence.h"
#include "store/series.h"

namespace vtdn::store {

/// What an occurrence text holds, as it stands beside the text. `parts` are flags.
struct OccurrenceSummary {
    static constexpr std::int64_t excursion = 1;
    static constexpr std::int64_t downtime = 2;
    static constexpr std::int64_t excursion_excludable = 4;
    static constexpr std::int64_t downtime_excludable = 8;
    static constexpr std::int64_t all = 15;

    std::int64_t parts = 0;
    Pid excursion_pid = 0;
    Pid downtime_pid = 0;

    OccurrenceSummary() = default;
    explicit OccurrenceSummary(const Occurrence& occurrence);

    [[nodiscard]] bool has(std::int64_t part) const { return (parts & part) != 0; }

    friend bool operator==(const OccurrenceSummary&, const OccurrenceSummary&) = default;
};

/// A row, and a row as it lies in the database, valid until the next step or reset.
template <typename Text>
struct PointTextRow {
    Time time = 0;
    Text occurrence;
    Text extra;
    OccurrenceSummary summary;
};
using PointTexts = PointTextRow<std::string>;
using PointTextsView = PointTextRow<std::string_view>;

/// The columns that readPointTexts reads, in its order.
inline constexpr const char* pointTextColumns =
    "time, occurrence, extra, parts, excursion_pid, downtime_pid, checksum";

/// The current row of a statement that begins with those columns, the row of a series. Throws databaseDamaged
/// for a row that is not what was written for this interval.
[[nodiscard]] PointTextsView readPointTexts(const Database& db, const Statement& row, const SeriesKey& key,
                                            std::int64_t series);

/// What the occurrence text of a row holds. Throws databaseDamaged when it is none, or another than its
/// summary says. Reads the text.
[[nodiscard]] OccurrenceSummary checkedSummary(const Database& db, const SeriesKey& key,
                                               const PointTextsView& row);

/// Writes rows of one database.
class PointTextTable {
  public:
    explicit PointTextTable(Database& db);

    /// The row of an interval, its occurrence text looked into; nothing when there is none.
    [[nodiscard]] std::optional<PointTexts> get(const SeriesKey& key, std::int64_t series, Time time);
    /// Removes the row when both texts are empty.
    void put(std::int64_t series, const PointTexts& row);

  private:
    Database& db_;
    Statement get_;
    Statement put_;
    Statement remove_;
};

}  // namespace vtdn::store

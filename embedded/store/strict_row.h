// Reading columns that SQLite lets hold anything.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "store/database.h"

namespace vtdn::store {

/// Reads the columns of a statement's current row, and refuses (databaseDamaged) what this program cannot
/// have written: a column of another type, or a number that is out of its range.
class StrictRow {
  public:
    /// What the row is, "an alarm", for the sentence. All three must outlive this.
    StrictRow(const Database& db, const Statement& row, std::string_view what)
        : db_(db), row_(row), what_(what) {}

    /// A whole number from low to high.
    [[nodiscard]] std::int64_t number(int column, std::int64_t low, std::int64_t high) const;
    [[nodiscard]] std::int32_t integer(int column,
                                       std::int32_t low = std::numeric_limits<std::int32_t>::min(),
                                       std::int32_t high = std::numeric_limits<std::int32_t>::max()) const;
    [[nodiscard]] double real(int column) const;
    void null(int column) const;
    [[nodiscard]] std::string text(int column) const;
    /// Valid until the next step or reset.
    [[nodiscard]] std::string_view view(int column) const;

  private:
    void require(bool holds) const;

    const Database& db_;
    const Statement& row_;
    std::string_view what_;
};

}  // namespace vtdn::store

#include "store/strict_row.h"

#include "store/error.h"

namespace vtdn::store {

void StrictRow::require(bool holds) const {
    if (holds) return;
    throw Error(ErrorKind::databaseDamaged, "The database " + quote(db_.file()) + " holds " +
                                                std::string(what_) +
                                                " that is damaged. Restore it from a backup.");
}

std::int64_t StrictRow::number(int column, std::int64_t low, std::int64_t high) const {
    require(row_.type(column) == ColumnType::integer);
    const auto number = row_.number(column);
    require(number >= low && number <= high);
    return number;
}

std::int32_t StrictRow::integer(int column, std::int32_t low, std::int32_t high) const {
    return static_cast<std::int32_t>(number(column, low, high));
}

double StrictRow::real(int column) const {
    require(row_.type(column) == ColumnType::real);
    return row_.real(column);
}

void StrictRow::null(int column) const {
    require(row_.type(column) == ColumnType::null);
}

std::string StrictRow::text(int column) const {
    return std::string(view(column));
}

std::string_view StrictRow::view(int column) const {
    require(row_.type(column) == ColumnType::text);
    return row_.view(column);
}

}  // namespace vtdn::store

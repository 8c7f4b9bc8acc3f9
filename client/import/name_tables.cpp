#include "client/import/name_tables.h"

#include <array>
#include <map>

#include "client/import/cells.h"

namespace vtdn::client {

namespace {

/// Goes through a table whose first column numbers its rows, each number once.
class NumberedRows {
  public:
    NumberedRows(Table& table, std::string_view what, std::int32_t highest)
        : table_(table), what_(what), highest_(highest) {}

    /// The number of the next row that has one of its own; nothing at the end.
    std::optional<std::int32_t> next() {
        while (table_.next()) {
            const auto number = table_.wholeNumber(0, what_, highest_);
            if (!number) continue;
            const auto [first, isNew] = lines_.emplace(*number, table_.line());
            if (isNew) return number;
            table_.problem(0, "the " + std::string(what_) + " " + std::to_string(*number) + " is on line " +
                                  std::to_string(first->second) + " already");
        }
        return std::nullopt;
    }

  private:
    Table& table_;
    std::string_view what_;
    std::int32_t highest_;
    std::map<std::int32_t, std::size_t> lines_;
};

std::string filledText(Table& table, std::size_t column, std::size_t most, std::string_view what) {
    std::string text = table.text(column, most);
    if (text.empty()) table.problem(column, "the " + std::string(what) + " is empty");
    return text;
}

}  // namespace

std::vector<store::UnitName> readUnits(const SiteFile& file, ImportProblems& problems) {
    constexpr std::array<ColumnSpec, 2> columns{{{"unit", true}, {"name", true}}};
    std::vector<store::UnitName> units;
    Table table(file, columns, problems);
    NumberedRows rows(table, "unit", store::highestUnit);
    while (const auto unit = rows.next()) units.push_back({*unit, filledText(table, 1, longestText, "name")});
    return units;
}

std::vector<store::MonitorCodeName> readMonitorCodes(const SiteFile& file, ImportProblems& problems) {
    enum : std::size_t { codeColumn, shortNameColumn, longNameColumn, rankColumn };
    constexpr std::array<ColumnSpec, 4> columns{
        {{"code", true}, {"short_name", true}, {"long_name", false}, {"rank", false}}};
    std::vector<store::MonitorCodeName> codes;
    Table table(file, columns, problems);
    NumberedRows rows(table, "monitor code", store::highestMonitorCode);
    while (const auto code = rows.next()) {
        store::MonitorCodeName entry{*code,
                                     filledText(table, shortNameColumn, longestShortName, "short name"),
                                     table.text(longNameColumn, longestDescription), *code};
        if (!table.cell(rankColumn).empty())
            entry.rank = table.wholeNumber(rankColumn, "rank", store::highestMonitorCode).value_or(*code);
        codes.push_back(std::move(entry));
    }
    return codes;
}

std::vector<store::ParameterCodeName> readParameterCodes(const SiteFile& file, ImportProblems& problems) {
    constexpr std::array<ColumnSpec, 3> columns{{{"code", true}, {"short_name", true}, {"long_name", false}}};
    std::vector<store::ParameterCodeName> codes;
    Table table(file, columns, problems);
    NumberedRows rows(table, "parameter code", store::highestParameterCode);
    while (const auto code = rows.next())
        codes.push_back(
            {*code, filledText(table, 1, longestShortName, "short name"), table.text(2, longestDescription)});
    return codes;
}

}  // namespace vtdn::client

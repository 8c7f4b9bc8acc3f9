#include "client/import/special_values.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <utility>

#include "client/import/cells.h"
#include "client/text/numbers.h"
#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

enum Column : std::size_t { pidColumn, idColumn, typeColumn, valueColumn };

constexpr std::array<ColumnSpec, 4> columns{{{"pid", true}, {"id", true}, {"type", true}, {"value", true}}};

using store::quote;
using store::SpecialValue;

std::optional<std::int32_t> integerIn(Table& table, std::size_t column, std::string_view what) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = signedNumberOfCell(table.cell(column));
    if (!number)
        table.problem(column, quote(table.cell(column)) + " is no " + std::string(what) +
                                  "; it has to be a whole number from " + std::to_string(Limits::min()) +
                                  " to " + std::to_string(Limits::max()));
    return number;
}

SpecialValue textOf(Table& table) {
    return table.text(valueColumn, longestText);
}

SpecialValue numberOf(Table& table) {
    if (const auto number = parseNumber(table.cell(valueColumn))) return *number;
    table.problem(valueColumn, quote(table.cell(valueColumn)) +
                                   " is no number that can be stored; numbers look like -12.5 or 6.02e23");
    return {};
}

SpecialValue integerOf(Table& table) {
    const auto number = integerIn(table, valueColumn, "integer");
    return number ? SpecialValue(*number) : SpecialValue();
}

SpecialValue booleanOf(Table& table) {
    const std::string_view cell = table.cell(valueColumn);
    if (cell != "true" && cell != "false")
        table.problem(valueColumn, quote(cell) + " is no boolean; it has to be true or false");
    return cell == "true";
}

SpecialValue nothingOf(Table& table) {
    if (!table.cell(valueColumn).empty()) table.problem(valueColumn, "this has to be empty for a null");
    return {};
}

struct Type {
    std::string_view name;
    SpecialValue (*read)(Table&);
};

constexpr std::array<Type, 5> types{{{"text", textOf},
                                     {"number", numberOf},
                                     {"integer", integerOf},
                                     {"boolean", booleanOf},
                                     {"null", nothingOf}}};

SpecialValue valueOf(Table& table) {
    const std::string_view name = table.cell(typeColumn);
    for (const Type& type : types)
        if (type.name == name) return type.read(table);
    table.problem(typeColumn,
                  quote(name) + " is no type; it has to be text, number, integer, boolean or null");
    return {};
}

}  // namespace

std::vector<SpecialValueRow> readSpecialValues(const SiteFile& file, const KnownParameters& parameters,
                                               ImportProblems& problems) {
    std::vector<SpecialValueRow> rows;
    std::map<std::pair<store::Pid, std::int32_t>, std::size_t> lines;
    Table table(file, columns, problems);
    while (table.next()) {
        const store::Parameter* const parameter = parameters.named(table, pidColumn);
        const auto id = integerIn(table, idColumn, "id");
        const std::size_t problemsBefore = problems.list().size();
        SpecialValue value = valueOf(table);
        const bool good = problems.list().size() == problemsBefore;
        if (!parameter || !id) continue;
        const auto [first, isNew] = lines.emplace(std::pair(parameter->pid, *id), table.line());
        if (isNew)
            rows.push_back({{parameter->pid, *id, std::move(value)}, table.line(), good});
        else
            table.problem(idColumn, "the special value " + std::to_string(*id) + " of " +
                                        store::pidText(parameter->pid) + " is on line " +
                                        std::to_string(first->second) + " already");
    }
    return rows;
}

}  // namespace vtdn::client

#include "store/special_values.h"

#include <cmath>
#include <set>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/strict_row.h"

namespace vtdn::store {
namespace {

std::string nameOf(const SpecialValueEntry& entry) {
    return "The special value " + std::to_string(entry.id) + " of " + pidText(entry.pid);
}

void check(const SpecialValueEntry& entry) {
    const auto* number = std::get_if<double>(&entry.value);
    if (number != nullptr && !std::isfinite(*number))
        throw Error(ErrorKind::badValue, nameOf(entry) + " is infinite or undefined and cannot be stored.");
    const auto* text = std::get_if<std::string>(&entry.value);
    if (text != nullptr && text->size() > longestText)
        throw Error(ErrorKind::badValue, nameOf(entry) + " has " + std::to_string(text->size()) +
                                             " bytes of text. The longest that is stored has " +
                                             std::to_string(longestText) + ".");
}

void bindValue(Statement& statement, int index, const SpecialValue& value) {
    switch (kindOf(value)) {
        case SpecialValueKind::null:
            statement.bindNull(index);
            break;
        case SpecialValueKind::boolean:
            statement.bind(index, std::get<bool>(value) ? 1 : 0);
            break;
        case SpecialValueKind::integer:
            statement.bind(index, std::get<std::int32_t>(value));
            break;
        case SpecialValueKind::real:
            statement.bind(index, std::get<double>(value));
            break;
        case SpecialValueKind::text:
            statement.bind(index, std::get<std::string>(value));
            break;
    }
}

// The value in a column whose kind stands in the column before it.
SpecialValue readValue(const StrictRow& row, int column) {
    const auto kind = row.integer(column - 1, 0, static_cast<std::int32_t>(SpecialValueKind::text));
    switch (static_cast<SpecialValueKind>(kind)) {
        case SpecialValueKind::null:
            row.null(column);
            break;
        case SpecialValueKind::boolean:
            return row.integer(column, 0, 1) != 0;
        case SpecialValueKind::integer:
            return row.integer(column);
        case SpecialValueKind::real:
            return row.real(column);
        case SpecialValueKind::text:
            return row.text(column);
    }
    return {};
}

}  // namespace

SpecialValueTable SpecialValueTable::load(Database& config) {
    SpecialValueTable table;
    Statement rows(config, "SELECT pid, id, kind, value FROM special_value ORDER BY pid, id");
    const StrictRow row(config, rows, "a special value");
    while (rows.step())
        table.values_.emplace_hint(table.values_.end(), std::pair(row.integer(0), row.integer(1)),
                                   readValue(row, 3));
    return table;
}

const SpecialValue& SpecialValueTable::find(Pid pid, std::int32_t id) const {
    static const SpecialValue none;
    const auto found = values_.find({pid, id});
    return found == values_.end() ? none : found->second;
}

void replaceSpecialValues(Database& config, std::span<const SpecialValueEntry> entries) {
    Transaction transaction(config);
    config.execute("DELETE FROM special_value");
    Statement known(config, "SELECT 1 FROM parameter WHERE pid = ?");
    Statement insert(config, "INSERT INTO special_value (pid, id, kind, value) VALUES (?, ?, ?, ?)");
    std::set<std::pair<Pid, std::int32_t>> seen;
    for (const SpecialValueEntry& entry : entries) {
        check(entry);
        if (!seen.emplace(entry.pid, entry.id).second)
            throw Error(ErrorKind::badParameter, nameOf(entry) + " is given twice.");
        const ResetAtEnd reset(known);
        if (!known.bindAll(entry.pid).step())
            throw Error(ErrorKind::badParameter,
                        nameOf(entry) +
                            " belongs to no parameter of this site. Add the parameter or leave "
                            "its special values out.");
        insert.bindAll(entry.pid, entry.id, static_cast<std::int32_t>(kindOf(entry.value)));
        bindValue(insert, 4, entry.value);
        insert.run();
    }
    transaction.commit();
}

}  // namespace vtdn::store

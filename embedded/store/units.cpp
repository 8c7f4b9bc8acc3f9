#include "store/units.h"

#include "store/numbers_seen.h"
#include "store/strict_row.h"

namespace vtdn::store {

UnitTable UnitTable::load(Database& config) {
    UnitTable table;
    Statement rows(config, "SELECT unit, name FROM unit");
    const StrictRow row(config, rows, "a unit");
    while (rows.step()) table.units_[row.integer(0, 0, highestUnit)] = row.text(1);
    return table;
}

const std::string& UnitTable::name(std::int32_t unit) const {
    static const std::string none;
    const auto found = units_.find(unit);
    return found == units_.end() ? none : found->second;
}

void replaceUnits(Database& config, std::span<const UnitName> units) {
    Transaction transaction(config);
    config.execute("DELETE FROM unit");
    Statement insert(config, "INSERT INTO unit (unit, name) VALUES (?, ?)");
    NumbersSeen seen("unit", highestUnit);
    for (const UnitName& unit : units) {
        seen.add(unit.unit);
        insert.bindAll(unit.unit, unit.name).run();
    }
    transaction.commit();
}

}  // namespace vtdn::store

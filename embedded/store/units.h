// The names of a site's units.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "store/database.h"

namespace vtdn::store {

/// Units are numbered from 0 to this, as in the first field of a PID.
inline constexpr std::int32_t highestUnit = 19;

struct UnitName {
    std::int32_t unit = 0;
    std::string name;

    friend bool operator==(const UnitName&, const UnitName&) = default;
};

/// The names as they were read at one moment.
class UnitTable {
  public:
    UnitTable() = default;
    static UnitTable load(Database& config);

    /// "" for a number that no unit has.
    [[nodiscard]] const std::string& name(std::int32_t unit) const;
    /// All of them, ascending by number.
    [[nodiscard]] const std::map<std::int32_t, std::string>& units() const { return units_; }

  private:
    std::map<std::int32_t, std::string> units_;
};

/// Puts these units in the place of all that a config database has. Throws outOfRange for a number outside 0
/// to highestUnit or given twice.
void replaceUnits(Database& config, std::span<const UnitName> units);

}  // namespace vtdn::store

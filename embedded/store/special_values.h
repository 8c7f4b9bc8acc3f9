// Special values: numbered facts about a parameter, for the programs that know the numbers.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <variant>

#include "store/database.h"
#include "store/value.h"

namespace vtdn::store {

/// Nothing, a truth, a whole number, a double, or a text (UTF-8, counted, may hold NUL). The kind is part of
/// the value.
using SpecialValue = std::variant<std::monostate, bool, std::int32_t, double, std::string>;

/// The kinds in the order of the alternatives of SpecialValue; the numbers are also those in the database.
enum class SpecialValueKind : std::uint8_t { null = 0, boolean = 1, integer = 2, real = 3, text = 4 };

[[nodiscard]] inline SpecialValueKind kindOf(const SpecialValue& value) {
    return static_cast<SpecialValueKind>(value.index());
}

/// One special value of one parameter. Any 32-bit number is an id.
struct SpecialValueEntry {
    Pid pid = 0;
    std::int32_t id = 0;
    SpecialValue value;

    friend bool operator==(const SpecialValueEntry&, const SpecialValueEntry&) = default;
};

/// The special values of a site as they were read at one moment.
class SpecialValueTable {
  public:
    SpecialValueTable() = default;
    /// Throws databaseDamaged for a value of an unknown kind, or one that is not of the kind that is noted.
    static SpecialValueTable load(Database& config);

    /// Null when the parameter has none of that id.
    [[nodiscard]] const SpecialValue& find(Pid pid, std::int32_t id) const;
    /// All of them, ascending by PID, then by id.
    [[nodiscard]] const std::map<std::pair<Pid, std::int32_t>, SpecialValue>& values() const {
        return values_;
    }

  private:
    std::map<std::pair<Pid, std::int32_t>, SpecialValue> values_;
};

/// Puts these special values in the place of all that a config database has. Throws badParameter for one
/// that is given twice or belongs to no parameter, and badValue for a number that is infinite or NaN and for
/// a text over longestText.
void replaceSpecialValues(Database& config, std::span<const SpecialValueEntry> entries);

}  // namespace vtdn::store

// The parameters of a site: what each one is, checked against each other, and where they are kept.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/formula.h"
#include "store/interval.h"
#include "store/value.h"

namespace vtdn::store {

/// I/O types with a meaning of their own; any other one is a calculated parameter.
namespace io_type {
inline constexpr std::int32_t constant = 4;
inline constexpr std::int32_t occurrence = 31;
inline constexpr std::int32_t sharedConstant = 34;
inline constexpr std::int32_t database = 38;
}  // namespace io_type

enum class ParameterKind { database, constant, occurrence, calculated };

[[nodiscard]] constexpr ParameterKind kindOfIoType(std::int32_t type) {
    switch (type) {
        case io_type::database:
            return ParameterKind::database;
        case io_type::constant:
        case io_type::sharedConstant:
            return ParameterKind::constant;
        case io_type::occurrence:
            return ParameterKind::occurrence;
        default:
            return ParameterKind::calculated;
    }
}

/// One value from many. Only numbers count; over none of them the result is no value.
enum class Aggregation { none, average, sum, minimum, maximum };

/// "average" and so on; "" for none.
[[nodiscard]] std::string_view nameOf(Aggregation aggregation);
/// The aggregation of a name in any case, none for the empty text; nothing for an unknown name.
[[nodiscard]] std::optional<Aggregation> aggregationOf(std::string_view name);

struct Parameter {
    Pid pid = 0;
    std::string name;
    std::string description;
    std::string format;    ///< display format, "0.000"; empty for as many digits as it takes
    std::string units;     ///< unit of measure, "lb/hr"
    std::string interval;  ///< interval text, "1h"; may be empty for constants and occurrence parameters
    std::int32_t io_type = io_type::database;
    std::int32_t parameter_type = 0;
    Value constant;                               ///< the value of a constant
    Aggregation calculation = Aggregation::none;  ///< of a calculated parameter without a formula
    std::string formula;                          ///< of a calculated parameter without an aggregation
    std::vector<Pid> uses;                        ///< what it is computed from, in order; repeats are kept
    Aggregation roll_up =
        Aggregation::none;  ///< how intervals longer than its own are read; none: they are not

    [[nodiscard]] ParameterKind kind() const { return kindOfIoType(io_type); }

    friend bool operator==(const Parameter&, const Parameter&) = default;
};

/// Checks parameters one by one and against each other: names, intervals, I/O types, that what is used
/// exists, formulas against uses, intervals against those used, cycles. Throws badParameter, badFormula or
/// badInterval for the first that breaks a rule (docs/engine.md lists the rules).
void checkParameters(std::span<const Parameter> parameters);

/// A parameter ready for use: its texts read.
struct ParameterEntry {
    Parameter parameter;
    std::optional<Interval> interval;
    std::optional<Formula> formula;
};

/// The parameters of a site as they were read at one moment, by PID.
class ParameterSet {
  public:
    ParameterSet() = default;
    explicit ParameterSet(std::vector<Parameter> parameters);
    static ParameterSet load(Database& config);

    [[nodiscard]] bool contains(Pid pid) const { return entries_.contains(pid); }
    /// Throws unknownParameter.
    [[nodiscard]] const ParameterEntry& entry(Pid pid) const;
    [[nodiscard]] const Parameter& get(Pid pid) const { return entry(pid).parameter; }
    /// All of them, ascending by PID.
    [[nodiscard]] const std::map<Pid, ParameterEntry>& entries() const { return entries_; }

  private:
    std::map<Pid, ParameterEntry> entries_;
};

/// Puts these parameters in the place of all that a config database has, after checkParameters. The special
/// values and the relationships of the old ones go with them.
void replaceParameters(Database& config, std::span<const Parameter> parameters);

}  // namespace vtdn::store

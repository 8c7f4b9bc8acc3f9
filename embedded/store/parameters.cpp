#include "store/parameters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "common/pid.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/strict_row.h"
#include "store/text.h"

namespace vtdn::store {
namespace {

constexpr std::array<std::pair<Aggregation, std::string_view>, 5> aggregationNames{{
    {Aggregation::none, ""},
    {Aggregation::average, "average"},
    {Aggregation::sum, "sum"},
    {Aggregation::minimum, "minimum"},
    {Aggregation::maximum, "maximum"},
}};

[[noreturn]] void refuse(const Parameter& p, const std::string& why) {
    throw Error(ErrorKind::badParameter, "The parameter " + pidText(p.pid) + " " + why);
}

std::optional<Interval> intervalOf(const Parameter& p) {
    if (p.interval.empty()) return std::nullopt;
    try {
        return Interval::parse(p.interval);
    } catch (const Error& e) {
        throw Error(e.kind(), "The parameter " + pidText(p.pid) + ": " + e.what());
    }
}

std::optional<Formula> formulaOf(const Parameter& p) {
    if (p.formula.empty()) return std::nullopt;
    try {
        return Formula::parse(p.formula);
    } catch (const Error& e) {
        throw Error(e.kind(), "The parameter " + pidText(p.pid) + ": " + e.what());
    }
}

void checkInterval(const ParameterEntry& entry) {
    const Parameter& p = entry.parameter;
    const bool needed = p.kind() == ParameterKind::database || p.kind() == ParameterKind::calculated;
    if (!entry.interval) {
        if (needed) refuse(p, "has no interval.");
        return;
    }
    if (!entry.interval->isStorable())
        refuse(p, "has the interval " + p.interval +
                      ", which values cannot be kept at. Use up to a day, or months that "
                      "divide a year.");
}

// What belongs to one kind of parameter only is refused on the others.
void checkKind(const Parameter& p) {
    const bool constant = p.kind() == ParameterKind::constant;
    if (constant && kindOf(p.constant) == ValueKind::null) refuse(p, "is a constant and has no value.");
    if (!constant && kindOf(p.constant) != ValueKind::null)
        refuse(p, "has a constant value and is no constant.");
    const bool computes = p.calculation != Aggregation::none || !p.formula.empty() || !p.uses.empty();
    if (p.kind() != ParameterKind::calculated) {
        if (computes) refuse(p, "is not a calculated one (by its I/O type) and has a calculation.");
        return;
    }
    if (p.uses.empty()) refuse(p, "is a calculated one and uses no parameter.");
    if ((p.calculation != Aggregation::none) == !p.formula.empty())
        refuse(p, "needs either an aggregation or a formula, and not both.");
}

class SetChecker {
  public:
    explicit SetChecker(const std::map<Pid, ParameterEntry>& entries) : entries_(entries) {}

    void check() {
        for (const auto& [pid, entry] : entries_) {
            checkInterval(entry);
            checkKind(entry.parameter);
            checkUses(entry);
        }
        for (const auto& [pid, entry] : entries_) checkCycle(pid);
    }

  private:
    void checkUses(const ParameterEntry& entry) const {
        const Parameter& p = entry.parameter;
        for (const Pid used : p.uses)
            if (!entries_.contains(used)) refuse(p, "uses " + pidText(used) + ", which does not exist.");
        if (p.calculation != Aggregation::none)
            checkAggregation(entry);
        else if (entry.formula)
            checkFormula(entry);
    }

    void checkAggregation(const ParameterEntry& entry) const {
        const Parameter& p = entry.parameter;
        if (p.uses.size() != 1) refuse(p, "aggregates more than one parameter. Use a formula.");
        const ParameterEntry& input = entries_.at(p.uses[0]);
        const bool fits = input.interval && *input.interval != *entry.interval &&
                          entry.interval->isFilledBy(*input.interval) &&
                          input.parameter.kind() != ParameterKind::constant;
        if (!fits)
            refuse(p, "cannot aggregate " + pidText(p.uses[0]) +
                          ", which has no shorter interval that fills " + entry.interval->text() + ".");
    }

    void checkFormula(const ParameterEntry& entry) const {
        const Parameter& p = entry.parameter;
        const std::set<Pid> listed(p.uses.begin(), p.uses.end());
        const std::set<Pid> referred(entry.formula->inputs().begin(), entry.formula->inputs().end());
        for (const Pid used : referred)
            if (!listed.contains(used))
                refuse(p, "has " + pidText(used) + " in its formula and not among its uses.");
        for (const Pid used : listed) {
            if (!referred.contains(used))
                refuse(p, "has " + pidText(used) + " among its uses and not in its formula.");
            const ParameterEntry& input = entries_.at(used);
            if (input.parameter.kind() == ParameterKind::constant) continue;
            const bool same = input.interval && *input.interval == *entry.interval;
            const bool rolls = input.interval && input.parameter.roll_up != Aggregation::none &&
                               entry.interval->isFilledBy(*input.interval);
            if (!same && !rolls)
                refuse(p, "has the interval " + entry.interval->text() + " and its formula uses " +
                              pidText(used) + ", which has another one.");
        }
    }

    // Depth first; a parameter on the path that is met again closes a cycle.
    void checkCycle(Pid pid) {
        if (done_.contains(pid)) return;
        if (std::find(path_.begin(), path_.end(), pid) != path_.end()) {
            std::string way;
            for (auto at = std::find(path_.begin(), path_.end(), pid); at != path_.end(); ++at)
                way += pidText(*at) + " uses ";
            refuse(entries_.at(pid).parameter, "is computed from itself: " + way + pidText(pid) + ".");
        }
        // Deeper chains than this would exhaust the stack here and when they are computed.
        if (path_.size() >= 100)
            refuse(entries_.at(pid).parameter, "is the end of a chain of over 100 calculations.");
        path_.push_back(pid);
        for (const Pid used : entries_.at(pid).parameter.uses) checkCycle(used);
        path_.pop_back();
        done_.insert(pid);
    }

    const std::map<Pid, ParameterEntry>& entries_;
    std::vector<Pid> path_;
    std::set<Pid> done_;
};

void bindValue(Statement& statement, int index, const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        statement.bind(index, *text);
    else if (const auto* integer = std::get_if<std::int32_t>(&value))
        statement.bind(index, *integer);
    else if (const auto number = numberOf(value))
        statement.bind(index, *number);
    else
        statement.bindNull(index);
}

// The value in a column whose kind stands in the column before it.
Value readValue(const StrictRow& row, int column) {
    const auto kind = row.integer(column - 1, 0, static_cast<std::int32_t>(ValueKind::text));
    switch (static_cast<ValueKind>(kind)) {
        case ValueKind::null:
            row.null(column);
            break;
        case ValueKind::integer:
            return row.integer(column);
        case ValueKind::single:
            return static_cast<float>(row.real(column));
        case ValueKind::real:
            return row.real(column);
        case ValueKind::text:
            return row.text(column);
    }
    return {};
}

// An aggregation as it stands in the config database, which this program wrote.
Aggregation storedAggregation(const Database& config, const std::string& name) {
    if (const auto aggregation = aggregationOf(name)) return *aggregation;
    throw Error(ErrorKind::databaseDamaged, "The database " + quote(config.file()) +
                                                " holds the unknown aggregation " + quote(name) + ".");
}

}  // namespace

std::string_view nameOf(Aggregation aggregation) {
    return aggregationNames[static_cast<std::size_t>(aggregation)].second;
}

std::optional<Aggregation> aggregationOf(std::string_view name) {
    for (const auto& [aggregation, known] : aggregationNames)
        if (equalsIgnoringCase(name, known)) return aggregation;
    return std::nullopt;
}

void checkParameters(std::span<const Parameter> parameters) {
    std::map<Pid, ParameterEntry> entries;
    for (const Parameter& p : parameters) {
        if (!common::isValidPid(p.pid)) refuse(p, "has no well-formed PID.");
        if (p.name.empty()) refuse(p, "has no name.");
        if (const auto number = numberOf(p.constant); number && !std::isfinite(*number))
            refuse(p, "has a constant that is no finite number.");
        if (!entries.emplace(p.pid, ParameterEntry{p, intervalOf(p), formulaOf(p)}).second)
            refuse(p, "is given twice.");
    }
    SetChecker(entries).check();
}

ParameterSet::ParameterSet(std::vector<Parameter> parameters) {
    for (Parameter& p : parameters) {
        const Pid pid = p.pid;
        auto interval = intervalOf(p);
        auto formula = formulaOf(p);
        entries_.emplace(pid, ParameterEntry{std::move(p), interval, std::move(formula)});
    }
}

ParameterSet ParameterSet::load(Database& config) {
    const Snapshot snapshot(config);
    std::vector<Parameter> parameters;
    Statement rows(
        config,
        "SELECT pid, name, description, format, units, interval, io_type, parameter_type, calculation, "
        "formula, roll_up, constant_kind, constant FROM parameter ORDER BY pid");
    const StrictRow row(config, rows, "a parameter");
    Statement uses(config, "SELECT used_pid FROM parameter_use WHERE pid = ? ORDER BY position");
    while (rows.step()) {
        Parameter p;
        p.pid = rows.integer(0);
        p.name = rows.text(1);
        p.description = rows.text(2);
        p.format = rows.text(3);
        p.units = rows.text(4);
        p.interval = rows.text(5);
        p.io_type = rows.integer(6);
        p.parameter_type = rows.integer(7);
        p.calculation = storedAggregation(config, rows.text(8));
        p.formula = rows.text(9);
        p.roll_up = storedAggregation(config, rows.text(10));
        p.constant = readValue(row, 12);
        uses.bindAll(p.pid);
        while (uses.step()) p.uses.push_back(uses.integer(0));
        parameters.push_back(std::move(p));
    }
    return ParameterSet(std::move(parameters));
}

const ParameterEntry& ParameterSet::entry(Pid pid) const {
    const auto found = entries_.find(pid);
    if (found == entries_.end())
        throw Error(ErrorKind::unknownParameter, "This site has no parameter " + pidText(pid) + ".");
    return found->second;
}

void replaceParameters(Database& config, std::span<const Parameter> parameters) {
    checkParameters(parameters);
    Transaction transaction(config);
    config.execute(
        "DELETE FROM special_value; DELETE FROM relationship; DELETE FROM parameter_use; DELETE FROM "
        "parameter;");
    Statement insert(
        config,
        "INSERT INTO parameter (pid, name, description, format, units, interval, io_type, parameter_type, "
        "calculation, formula, roll_up, constant_kind, constant) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)");
    Statement use(config, "INSERT INTO parameter_use (pid, position, used_pid) VALUES (?, ?, ?)");
    for (const Parameter& p : parameters) {
        insert.bindAll(p.pid, p.name, p.description, p.format, p.units, p.interval, p.io_type,
                       p.parameter_type, nameOf(p.calculation), p.formula, nameOf(p.roll_up),
                       static_cast<std::int32_t>(kindOf(p.constant)));
        bindValue(insert, 13, p.constant);
        insert.run();
        std::int32_t position = 0;
        for (const Pid used : p.uses) use.bindAll(p.pid, position++, used).run();
    }
    transaction.commit();
}

}  // namespace vtdn::store

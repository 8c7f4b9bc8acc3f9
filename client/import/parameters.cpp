#include "client/import/parameters.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>

#include "client/import/cells.h"
#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

constexpr std::int32_t highestIoType = 999;
constexpr std::int32_t highestParameterType = 32'767;

using store::quote;

enum ParameterColumn : std::size_t {
    pidColumn,
    nameColumn,
    descriptionColumn,
    unitsColumn,
    formatColumn,
    intervalColumn,
    ioTypeColumn,
    valueColumn,
    aggregationColumn,
    formulaColumn,
    usesColumn,
    rollUpColumn,
    typeColumn,
};

constexpr std::array<ColumnSpec, 13> parameterColumns{{{"pid", true},
                                                       {"name", true},
                                                       {"description", false},
                                                       {"units", false},
                                                       {"format", false},
                                                       {"interval", true},
                                                       {"io_type", true},
                                                       {"value", false},
                                                       {"aggregation", false},
                                                       {"formula", false},
                                                       {"uses", false},
                                                       {"roll_up", false},
                                                       {"type", false}}};

/// Reads rows into parameters; a row with a problem gives none.
class ParameterReader {
  public:
    ParameterReader(const SiteFile& file, ImportProblems& problems)
        : file_(file), problems_(problems), table_(file, parameterColumns, problems) {}

    std::vector<store::Parameter> read() {
        while (table_.next()) {
            good_ = true;
            store::Parameter parameter = row();
            if (parameter.pid == 0) continue;
            if (const auto [first, isNew] = lines_.emplace(parameter.pid, table_.line()); !isNew) {
                refuse(pidColumn, store::pidText(parameter.pid) + " is on line " +
                                      std::to_string(first->second) + " already");
                continue;
            }
            if (!good_) bad_.insert(parameter.pid);
            parameters_.push_back(std::move(parameter));
        }
        checkEachOther();
        return std::move(parameters_);
    }

  private:
    void refuse(ParameterColumn column, std::string reason) {
        good_ = false;
        table_.problem(column, std::move(reason));
    }

    /// Reports what the store says about a cell.
    template <class Read>
    void tryStore(ParameterColumn column, Read read) {
        try {
            read();
        } catch (const store::Error& error) {
            refuse(column, reasonOf(error));
        }
    }

    store::Pid pid(std::string_view text, ParameterColumn column) {
        const store::Pid pid = pidOfCell(text);
        if (pid == 0) refuse(column, quote(text) + " is no PID; PIDs look like 5-040-3-00-00 or 504030000");
        return pid;
    }

    store::Aggregation aggregation(ParameterColumn column) {
        const std::string_view name = table_.cell(column);
        const auto known = store::aggregationOf(name);
        if (!known || store::nameOf(*known) != name)
            refuse(column, quote(name) + " is unknown; it has to be average, sum, minimum or maximum");
        return known.value_or(store::Aggregation::none);
    }

    store::Parameter row() {
        store::Parameter p;
        p.pid = pid(table_.cell(pidColumn), pidColumn);
        p.name = table_.text(nameColumn, longestText);
        if (p.name.empty()) refuse(nameColumn, "the name is empty");
        p.description = table_.text(descriptionColumn, longestDescription);
        p.units = table_.text(unitsColumn, longestText);
        p.format = table_.text(formatColumn, longestText);
        p.interval = table_.cell(intervalColumn);
        if (!p.interval.empty()) tryStore(intervalColumn, [&] { (void)store::Interval::parse(p.interval); });
        p.formula = table_.cell(formulaColumn);
        if (!p.formula.empty()) tryStore(formulaColumn, [&] { (void)store::Formula::parse(p.formula); });
        p.calculation = aggregation(aggregationColumn);
        p.roll_up = aggregation(rollUpColumn);
        readUses(p);
        if (!table_.cell(typeColumn).empty()) {
            const auto type = table_.wholeNumber(typeColumn, "parameter type", highestParameterType);
            good_ = good_ && type.has_value();
            p.parameter_type = type.value_or(0);
        }
        const auto type = wholeNumberOfCell(table_.cell(ioTypeColumn));
        if (!type || *type < 1 || *type > highestIoType) {
            refuse(ioTypeColumn,
                   quote(table_.cell(ioTypeColumn)) + " is no I/O type; it has to be a number from 1 to 999");
            return p;
        }
        p.io_type = *type;
        checkKind(p);
        return p;
    }

    void readUses(store::Parameter& p) {
        std::string_view rest = table_.cell(usesColumn);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(';'), rest.size());
            const store::Pid used = pid(rest.substr(0, end), usesColumn);
            if (std::find(p.uses.begin(), p.uses.end(), used) != p.uses.end())
                refuse(usesColumn, store::pidText(used) + " is named twice");
            else if (used != 0)
                p.uses.push_back(used);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }

    /// A column that belongs to another kind of parameter has to be empty.
    void needEmpty(std::initializer_list<ParameterColumn> columns, std::string_view kind) {
        for (const ParameterColumn column : columns)
            if (!table_.cell(column).empty())
                refuse(column, "this has to be empty for a " + std::string(kind) + " parameter");
    }

    void checkKind(store::Parameter& p) {
        switch (p.kind()) {
            case store::ParameterKind::database:
                needEmpty({valueColumn, aggregationColumn, formulaColumn, usesColumn}, "database");
                break;
            case store::ParameterKind::constant:
                needEmpty({aggregationColumn, formulaColumn, usesColumn, rollUpColumn}, "constant");
                readConstant(p);
                return;
            case store::ParameterKind::calculated:
                needEmpty({valueColumn}, "calculated");
                break;
            case store::ParameterKind::occurrence:
                needEmpty({valueColumn, aggregationColumn, formulaColumn, usesColumn, rollUpColumn},
                          "occurrence");
                return;
        }
        if (p.interval.empty())
            refuse(intervalColumn,
                   "the interval is missing; it is needed for all but constants and "
                   "occurrence parameters");
    }

    void readConstant(store::Parameter& p) {
        const std::string_view text = table_.cell(valueColumn);
        if (text.empty()) refuse(valueColumn, "the value of the constant is missing");
        try {
            p.constant = valueOfCell(text);
        } catch (const std::invalid_argument& problem) {
            refuse(valueColumn, problem.what());
        }
    }

    // The store checks whole sets. Inputs come before what is computed from them, so that a set whose other
    // members were found good tells about the one at hand.
    void checkEachOther() {
        for (const store::Parameter& p : parameters_) byPid_[p.pid] = &p;
        for (const store::Parameter& p : parameters_) checkWithInputs(p, 0);
    }

    void checkWithInputs(const store::Parameter& p, int depth) {
        // The store refuses chains that are nearly as long.
        constexpr int deepest = 200;
        if (!visited_.insert(p.pid).second || depth > deepest) return;
        if (isOnCycle(p)) {
            // One mistake, told once for all that are on it.
            checkClosure(p);
            for (const store::Parameter* member : closureOf(p)) {
                if (!isOnCycle(*member)) continue;
                visited_.insert(member->pid);
                bad_.insert(member->pid);
            }
            return;
        }
        bool inputsAreGood = true;
        for (const store::Pid used : p.uses) {
            const auto input = byPid_.find(used);
            if (input == byPid_.end()) {
                report(p, "uses", "there is no parameter " + store::pidText(used) + " in this file");
                continue;
            }
            checkWithInputs(*input->second, depth + 1);
            inputsAreGood = inputsAreGood && !bad_.contains(used);
        }
        if (!inputsAreGood) bad_.insert(p.pid);
        if (!bad_.contains(p.pid)) checkClosure(p);
    }

    [[nodiscard]] bool isOnCycle(const store::Parameter& p) const {
        const auto closure = closureOf(p);
        return std::any_of(closure.begin(), closure.end(), [&](const store::Parameter* member) {
            return std::find(member->uses.begin(), member->uses.end(), p.pid) != member->uses.end();
        });
    }

    /// The parameter with all that it depends on, as far as the file has it.
    [[nodiscard]] std::vector<const store::Parameter*> closureOf(const store::Parameter& p) const {
        std::vector<const store::Parameter*> closure;
        std::set<store::Pid> seen;
        std::vector<store::Pid> open{p.pid};
        while (!open.empty()) {
            const auto next = byPid_.find(open.back());
            open.pop_back();
            if (next == byPid_.end() || !seen.insert(next->first).second) continue;
            closure.push_back(next->second);
            open.insert(open.end(), next->second->uses.begin(), next->second->uses.end());
        }
        return closure;
    }

    void checkClosure(const store::Parameter& p) {
        try {
            std::vector<store::Parameter> parameters;
            for (const store::Parameter* member : closureOf(p)) parameters.push_back(*member);
            store::checkParameters(parameters);
        } catch (const store::Error& error) {
            report(p, {}, reasonOf(error));
        }
    }

    void report(const store::Parameter& p, std::string column, std::string reason) {
        bad_.insert(p.pid);
        problems_.add({file_.name, lines_.at(p.pid), std::move(column), std::move(reason)});
    }

    const SiteFile& file_;
    ImportProblems& problems_;
    Table table_;
    bool good_ = true;
    std::vector<store::Parameter> parameters_;
    std::map<store::Pid, std::size_t> lines_;
    std::map<store::Pid, const store::Parameter*> byPid_;
    std::set<store::Pid> visited_;
    std::set<store::Pid> bad_;
};

}  // namespace

std::vector<store::Parameter> readParameters(const SiteFile& file, ImportProblems& problems) {
    return ParameterReader(file, problems).read();
}

}  // namespace vtdn::client

#include "client/import/definition.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>

#include "client/cli/spelling.h"
#include "client/import/cells.h"
#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

// Most characters of a text.
constexpr std::size_t longestSiteId = 32;
constexpr std::size_t longestShortName = 16;
constexpr std::size_t longestLine = 255;
constexpr std::size_t longestDescription = 1000;
constexpr std::int32_t highestIoType = 999;

using store::quote;

std::string withoutStop(std::string sentence) {
    if (sentence.ends_with('.')) sentence.pop_back();
    return sentence;
}

// site.csv

void readSite(const SiteFile& file, SiteDefinition& site, ImportProblems& problems) {
    struct Key {
        std::string_view name;
        std::string SiteDefinition::*place;
        std::size_t longest;
    };
    constexpr std::array<Key, 3> texts{{{"site_id", &SiteDefinition::siteId, longestSiteId},
                                        {"description", &SiteDefinition::description, longestDescription},
                                        {"complete_name", &SiteDefinition::completeName, longestLine}}};
    constexpr std::array<std::string_view, 4> keys{"dahs_id", texts[0].name, texts[1].name, texts[2].name};
    constexpr std::array<ColumnSpec, 2> columns{{{"key", true}, {"value", true}}};
    std::set<std::string_view> seen;
    Table table(file, columns, problems);
    while (table.next()) {
        const auto key = std::find(keys.begin(), keys.end(), table.cell(0));
        if (key == keys.end()) {
            const std::string_view near = nearestSpelling(table.cell(0), keys);
            table.problem(0, "there is no key " + quote(table.cell(0)) +
                                 (near.empty() ? "" : "; \"" + std::string(near) + "\" is one"));
        } else if (!seen.insert(*key).second) {
            table.problem(0, "the key " + quote(*key) + " occurs twice");
        } else if (key == keys.begin()) {
            site.dahsId = wholeNumberOfCell(table.cell(1));
            if (!site.dahsId || *site.dahsId < 1)
                table.problem(
                    1, quote(table.cell(1)) + " is no DAHS id; it has to be a number from 1 to 2147483647");
        } else {
            const Key& text = texts[static_cast<std::size_t>(key - keys.begin()) - 1];
            site.*text.place = table.text(1, text.longest);
        }
    }
}

// monitor_codes.csv

void readMonitorCodes(const SiteFile& file, SiteDefinition& site, ImportProblems& problems) {
    enum : std::size_t { codeColumn, shortNameColumn, longNameColumn, rankColumn };
    constexpr std::array<ColumnSpec, 4> columns{
        {{"code", true}, {"short_name", true}, {"long_name", false}, {"rank", false}}};
    const std::string range =
        " has to be a whole number from 0 to " + std::to_string(store::highestMonitorCode);
    std::map<std::int32_t, std::size_t> lines;
    Table table(file, columns, problems);
    const auto number = [&](std::size_t column, std::string_view what) {
        const auto value = wholeNumberOfCell(table.cell(column));
        if (value && *value <= store::highestMonitorCode) return value;
        table.problem(column, quote(table.cell(column)) + " is no " + std::string(what) + "; it" + range);
        return std::optional<std::int32_t>();
    };
    while (table.next()) {
        const auto code = number(codeColumn, "monitor code");
        if (!code) continue;
        if (const auto [first, isNew] = lines.emplace(*code, table.line()); !isNew) {
            table.problem(codeColumn, "the code " + std::to_string(*code) + " is on line " +
                                          std::to_string(first->second) + " already");
            continue;
        }
        store::MonitorCodeName entry{*code, table.text(shortNameColumn, longestShortName),
                                     table.text(longNameColumn, longestDescription), *code};
        if (entry.short_name.empty()) table.problem(shortNameColumn, "the short name is empty");
        if (!table.cell(rankColumn).empty()) entry.rank = number(rankColumn, "rank").value_or(*code);
        site.monitorCodes.push_back(std::move(entry));
    }
}

// parameters.csv

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
};

constexpr std::array<ColumnSpec, 12> parameterColumns{{{"pid", true},
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
                                                       {"roll_up", false}}};

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
            refuse(column, withoutStop(error.what()));
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
        p.name = table_.text(nameColumn, longestLine);
        if (p.name.empty()) refuse(nameColumn, "the name is empty");
        p.description = table_.text(descriptionColumn, longestDescription);
        p.units = table_.text(unitsColumn, longestLine);
        p.format = table_.text(formatColumn, longestLine);
        p.interval = table_.cell(intervalColumn);
        if (!p.interval.empty()) tryStore(intervalColumn, [&] { (void)store::Interval::parse(p.interval); });
        p.formula = table_.cell(formulaColumn);
        if (!p.formula.empty()) tryStore(formulaColumn, [&] { (void)store::Formula::parse(p.formula); });
        p.calculation = aggregation(aggregationColumn);
        p.roll_up = aggregation(rollUpColumn);
        readUses(p);
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
                refuse(ioTypeColumn, "the I/O type 31 is kept for occurrences and cannot be imported");
                break;
        }
        if (p.interval.empty())
            refuse(intervalColumn, "the interval is missing; it is needed for all but constants");
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
            report(p, {}, withoutStop(error.what()));
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

SiteDefinition readDefinition(const SiteFolder& folder, ImportProblems& problems) {
    SiteDefinition site;
    if (folder.site) readSite(*folder.site, site, problems);
    if (folder.monitorCodes) readMonitorCodes(*folder.monitorCodes, site, problems);
    if (folder.parameters) site.parameters = ParameterReader(*folder.parameters, problems).read();
    return site;
}

}  // namespace vtdn::client

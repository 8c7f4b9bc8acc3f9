#include "client/import/relationships.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

#include "store/error.h"

namespace vtdn::client {

namespace {

constexpr std::array<ColumnSpec, 2> columns{{{"pid", true}, {"related_pid", true}}};

/// A calculated parameter as if it were stored. What is wrong with a calculation itself is told in
/// parameters.csv.
store::Parameter asStored(store::Parameter p) {
    if (p.kind() != store::ParameterKind::calculated) return p;
    p.io_type = store::io_type::database;
    p.calculation = store::Aggregation::none;
    p.formula.clear();
    p.uses.clear();
    return p;
}

/// The store refuses whole sets. Rows are given to it one by one, as if both parameters were stored; what it
/// then refuses a group for is a calculated member, which is found by taking all others as stored.
class RelationshipReader {
  public:
    RelationshipReader(const SiteFile& file, const KnownParameters& parameters, ImportProblems& problems)
        : parameters_(parameters), problems_(problems), file_(file), table_(file, columns, problems) {}

    std::vector<store::Relationship> read() {
        std::map<std::pair<store::Pid, store::Pid>, std::size_t> lines;
        while (table_.next()) {
            const store::Parameter* const one = parameters_.named(table_, 0);
            const store::Parameter* const other = parameters_.named(table_, 1);
            if (!one || !other) continue;
            const auto [first, isNew] = lines.emplace(std::minmax(one->pid, other->pid), table_.line());
            if (!isNew)
                refuse(table_.line(),
                       "these two are related on line " + std::to_string(first->second) + " already");
            else if (keepsRules({{one->pid, other->pid}}, {asStored(*one), asStored(*other)}, table_.line()))
                add({one->pid, other->pid});
        }
        for (const auto& [line, pid] : members_) checkInGroup(parameters_.at(pid), line);
        return std::move(rows_);
    }

  private:
    void refuse(std::size_t line, std::string reason) {
        problems_.add({file_.name, line, {}, std::move(reason)});
    }

    /// False, and a problem, for what the store refuses.
    bool keepsRules(const std::vector<store::Relationship>& rows, std::vector<store::Parameter> parameters,
                    std::size_t line) {
        try {
            store::checkRelationships(rows, store::ParameterSet(std::move(parameters)));
            return true;
        } catch (const store::Error& error) {
            // An interval that is none has been reported with its parameter.
            if (error.kind() != store::ErrorKind::badInterval) refuse(line, reasonOf(error));
            return false;
        }
    }

    void add(const store::Relationship& row) {
        for (const store::Pid pid : {row.pid, row.related}) {
            auto& of = rowsOf_[pid];
            if (of.empty()) members_.emplace_back(table_.line(), pid);
            of.push_back(rows_.size());
        }
        rows_.push_back(row);
    }

    void checkInGroup(store::Parameter p, std::size_t line) {
        // A calculation without its one input has been reported with the parameter, as has a formula that
        // cannot be read.
        if (p.kind() != store::ParameterKind::calculated || p.uses.empty()) return;
        p.formula.clear();
        std::set<std::size_t> rows;
        std::set<store::Pid> seen;
        std::vector<store::Pid> open{p.pid};
        std::vector<store::Parameter> group;
        while (!open.empty()) {
            const store::Pid pid = open.back();
            open.pop_back();
            if (!seen.insert(pid).second) continue;
            group.push_back(pid == p.pid ? p : asStored(parameters_.at(pid)));
            for (const std::size_t row : rowsOf_.at(pid)) {
                rows.insert(row);
                open.insert(open.end(), {rows_[row].pid, rows_[row].related});
            }
        }
        std::vector<store::Relationship> related;
        related.reserve(rows.size());
        for (const std::size_t row : rows) related.push_back(rows_[row]);
        keepsRules(related, std::move(group), line);
    }

    const KnownParameters& parameters_;
    ImportProblems& problems_;
    const SiteFile& file_;
    Table table_;
    std::vector<store::Relationship> rows_;
    std::vector<std::pair<std::size_t, store::Pid>> members_;  // with the line of the first row
    std::map<store::Pid, std::vector<std::size_t>> rowsOf_;
};

}  // namespace

std::vector<store::Relationship> readRelationships(const SiteFile& file, const KnownParameters& parameters,
                                                   ImportProblems& problems) {
    return RelationshipReader(file, parameters, problems).read();
}

}  // namespace vtdn::client

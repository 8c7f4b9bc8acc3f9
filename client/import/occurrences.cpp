#include "client/import/occurrences.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "client/import/cells.h"
#include "client/import/known_parameters.h"
#include "client/import/occurrence_parameters.h"
#include "store/data_points.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/value_text.h"

namespace vtdn::client {

namespace {

using store::quote;

enum Column : std::size_t {
    pidColumn,
    startColumn,
    countColumn,
    categoryColumn,
    reasonColumn,
    actionColumn,
    excludableColumn,
    limitColumn,
    limitPidColumn,
};

constexpr std::array<ColumnSpec, 9> columns{{{"pid", true},
                                             {"start", true},
                                             {"count", false},
                                             {"category", false},
                                             {"reason", false},
                                             {"action", false},
                                             {"excludable", false},
                                             {"limit", false},
                                             {"limit_pid", false}}};

// What one listing can show is the most that one row may make.
constexpr auto mostIntervals = static_cast<std::int32_t>(store::mostDataPoints);

/// One row.
struct Row {
    store::Span span;
    store::Excursion part;  // of a downtime without the limit
    std::size_t line;
};

/// The rows of one tag, by their starts, none of which share an interval with another one of the same type.
struct TagRows {
    std::map<store::Time, Row> excursions;
    std::map<store::Time, Row> downtimes;

    std::map<store::Time, Row>& of(OccurrenceType type) {
        return type == OccurrenceType::excursion ? excursions : downtimes;
    }
};

/// The row that holds a time; null when there is none.
const Row* rowAt(const std::map<store::Time, Row>& rows, store::Time time) {
    auto next = rows.upper_bound(time);
    if (next == rows.begin()) return nullptr;
    const Row& row = std::prev(next)->second;
    return time < row.span.end() ? &row : nullptr;
}

/// A row that shares an interval with the span; null when there is none.
const Row* overlapOf(const std::map<store::Time, Row>& rows, const store::Span& span) {
    if (const Row* const row = rowAt(rows, span.start)) return row;
    const auto next = rows.lower_bound(span.start);
    return next != rows.end() && next->first < span.end() ? &next->second : nullptr;
}

class OccurrenceReader {
  public:
    OccurrenceReader(const SiteFile& file, const SiteDefinition& definition, ImportProblems& problems)
        : parameters_(definition.parameters), table_(file, columns, problems), problems_(problems) {
        for (const OccurrenceParameter& p : definition.occurrenceParameters) known_.emplace(p.pid, p);
    }

    std::vector<OccurrenceRun> read() {
        while (table_.next()) {
            const std::size_t before = problems_.list().size();
            const store::Parameter* const parameter = parameters_.named(table_, pidColumn);
            if (parameter && parameter->kind() != store::ParameterKind::occurrence)
                table_.problem(pidColumn, store::pidText(parameter->pid) +
                                              " is not an occurrence parameter (I/O type 31)");
            store::Excursion part;
            part.category = table_.text(categoryColumn, longestText);
            part.reason = table_.text(reasonColumn, longestDescription);
            part.action = table_.text(actionColumn, longestDescription);
            part.excludable = flag();
            const auto count = countCell();
            const auto start = startCell();
            const auto known = parameter ? known_.find(parameter->pid) : known_.end();
            // Without its special values, which have been reported, no more can be said.
            if (known == known_.end()) continue;
            const OccurrenceParameter& of = known->second;
            part.pid = of.pid;
            readLimit(of, part);
            if (const auto span = start && count ? spanOf(of, *start, *count) : std::nullopt)
                add(of, {*span, std::move(part), table_.line()}, problems_.list().size() == before);
        }
        return runs();
    }

  private:
    bool flag() {
        const std::string_view cell = table_.cell(excludableColumn);
        if (!cell.empty() && cell != "0" && cell != "1")
            table_.problem(excludableColumn, quote(cell) + " is no flag; it has to be 0 or 1");
        return cell == "1";
    }

    std::optional<std::int32_t> countCell() {
        const std::string_view cell = table_.cell(countColumn);
        if (cell.empty()) return 1;
        const auto count = wholeNumberOfCell(cell);
        if (count && *count >= 1 && *count <= mostIntervals) return count;
        table_.problem(countColumn, quote(cell) + " is no count; it has to be a whole number from 1 to " +
                                        std::to_string(mostIntervals));
        return std::nullopt;
    }

    std::optional<store::Time> startCell() {
        try {
            return timeOfCell(table_.cell(startColumn));
        } catch (const std::invalid_argument& problem) {
            table_.problem(startColumn, problem.what());
            return std::nullopt;
        }
    }

    std::optional<store::Span> spanOf(const OccurrenceParameter& of, store::Time start, std::int32_t count) {
        try {
            requireBeginning(of.tag, of.interval, start);
            return store::Span::define(start, count, of.interval);
        } catch (const std::invalid_argument& problem) {
            table_.problem(startColumn, problem.what());
        } catch (const store::Error& error) {
            table_.problem(countColumn, reasonOf(error));
        }
        return std::nullopt;
    }

    /// The limit of the row, or else the one of the occurrence parameter.
    void readLimit(const OccurrenceParameter& of, store::Excursion& part) {
        part.limit = table_.text(limitColumn, longestText);
        const bool named = !table_.cell(limitPidColumn).empty();
        const store::Parameter* limit = named ? parameters_.named(table_, limitPidColumn) : nullptr;
        if (of.type == OccurrenceType::downtime) {
            for (const Column column : {limitColumn, limitPidColumn})
                if (!table_.cell(column).empty())
                    table_.problem(column, "this has to be empty for a downtime, which has no limit");
            return;
        }
        if (!named && part.limit.empty() && of.limit != 0) limit = parameters_.find(of.limit);
        if (!limit) return;
        part.limit_pid = limit->pid;
        if (!part.limit.empty()) return;
        if (limit->kind() == store::ParameterKind::constant)
            part.limit = store::limitText(*limit);
        else
            table_.problem(limitColumn, "the limit is missing; " + store::pidText(limit->pid) +
                                            " is no constant that it could be taken from");
    }

    void add(const OccurrenceParameter& of, Row row, bool good) {
        auto& rows = tags_[of.tag].of(of.type);
        if (const Row* const other = overlapOf(rows, row.span)) {
            table_.problem(startColumn,
                           std::string("line ") + std::to_string(other->line) + " has " +
                               (of.type == OccurrenceType::excursion ? "an excursion" : "a downtime") +
                               " of " + store::pidText(of.tag) + " with some of the same intervals already");
            return;
        }
        if (good) rows.emplace(row.span.start, std::move(row));
    }

    /// Cuts the rows of each tag where one begins or ends, and puts together what holds between two cuts.
    std::vector<OccurrenceRun> runs() {
        std::vector<OccurrenceRun> runs;
        for (const auto& [tag, rows] : tags_) {
            std::set<store::Time> cuts;
            for (const auto* of : {&rows.excursions, &rows.downtimes})
                for (const auto& [start, row] : *of) cuts.insert({start, row.span.end()});
            for (auto cut = cuts.begin(); cut != cuts.end() && std::next(cut) != cuts.end(); ++cut) {
                const Row* const excursion = rowAt(rows.excursions, *cut);
                const Row* const downtime = rowAt(rows.downtimes, *cut);
                if (!excursion && !downtime) continue;
                const store::Interval& interval = (excursion ? excursion : downtime)->span.interval;
                const auto count = static_cast<std::int32_t>(interval.between(*cut, *std::next(cut)));
                OccurrenceRun run{tag, {*cut, count, interval}, {}};
                if (excursion) run.occurrence.excursion = excursion->part;
                if (downtime) run.occurrence.downtime = downtime->part;
                runs.push_back(std::move(run));
            }
        }
        return runs;
    }

    KnownParameters parameters_;
    Table table_;
    ImportProblems& problems_;
    std::map<store::Pid, OccurrenceParameter> known_;
    std::map<store::Pid, TagRows> tags_;
};

}  // namespace

std::vector<OccurrenceRun> readOccurrences(const SiteFile& file, const SiteDefinition& definition,
                                           ImportProblems& problems) {
    return OccurrenceReader(file, definition, problems).read();
}

}  // namespace vtdn::client

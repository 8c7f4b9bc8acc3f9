// Occurrences of a span: as a list, as runs, as a picture.
#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "client/output/timeline.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

// Bytes of the site's name in the title of a picture; a longer one would not fit on the page.
constexpr std::size_t longestSiteName = 50;

/// A part, and what is stored of the interval beside it.
struct Line {
    OccurrencePart part;
    std::string text;
    PointValue value;
    PointValue code;
};

/// Names and intervals of parameters, each of them asked for once.
class Names {
  public:
    explicit Names(Binding& binding) : binding_(binding) {}

    const store::Interval& interval(std::int32_t tag) {
        auto found = intervals_.find(tag);
        if (found == intervals_.end()) found = intervals_.emplace(tag, binding_.pointInterval(tag)).first;
        return found->second;
    }
    const std::string& name(std::int32_t pid) {
        const auto [found, first] = names_.try_emplace(pid);
        if (first && binding_->exists(pid)) found->second = binding_->name(pid);
        return found->second;
    }

  private:
    Binding& binding_;
    std::map<std::int32_t, store::Interval> intervals_;
    std::map<std::int32_t, std::string> names_;
};

std::vector<Line> linesOf(Binding& binding, Names& names, const OccurrenceQuery& query) {
    for (const std::int32_t number : query.unitsOrTags)
        if (!isUnit(number)) binding.needParameter(number);
    std::vector<Line> lines;
    std::vector<OccurrencePart> parts;
    for (const OccurrenceObject& object : binding->occurrences(query)) {
        const OccurrenceReading reading = readingOf(*object.get());
        parts.clear();
        OccurrencePart where;
        where.tag = reading.tag;
        where.interval = names.interval(reading.tag);
        where.time = reading.time;
        addParts(parts, where, reading.parts, query.parts);
        for (OccurrencePart& part : parts)
            lines.push_back({std::move(part), reading.text, reading.value, reading.code});
    }
    return lines;
}

std::vector<OccurrenceRun> runsOf(const std::vector<Line>& lines) {
    std::vector<OccurrencePart> parts;
    parts.reserve(lines.size());
    for (const Line& line : lines) parts.push_back(line.part);
    return mergeRuns(parts);
}

std::string timeText(store::Time time, const store::Interval& interval) {
    return timestampText(time, time % 60 != 0 || interval.seconds() % 60 != 0);
}

Cell pidCell(std::int32_t pid) {
    if (pid == 0) return {};
    return store::pidText(pid);
}

Cell codeCell(const Line& line) {
    if (!line.code) return {};
    return Cell::number(*line.code);
}

Cell valueCell(const Line& line) {
    if (line.value) return Cell::number(*line.value, line.text);
    if (line.text.empty()) return {};
    return line.text;
}

/// The rows of a list: own columns in front, then those of a part, the texts last since they can be long.
class PartRows {
  public:
    PartRows(const Context& context, std::vector<Column> columns)
        : people_(context.format() == Format::table) {
        columns.insert(columns.end(), {{"tag", "Tag"},
                                       {"kind", "Kind"},
                                       {"pid", "Parameter"},
                                       {"excludable", "Excludable"},
                                       {"limit", "Limit"}});
        // People find it among the names above the table.
        if (!people_) columns.push_back({"limit_pid", ""});
        columns.insert(columns.end(), {{"category", "Category"}, {"reason", "Reason"}, {"action", "Action"}});
        rows_ = context.rows(std::move(columns));
    }
    void row(std::vector<Cell> cells, std::int32_t tag, OccurrenceKind kind, const store::Excursion& said) {
        cells.emplace_back(store::pidText(tag));
        cells.emplace_back(nameOf(kind));
        cells.emplace_back(store::pidText(said.pid));
        cells.push_back(Cell::flag(said.excludable, said.excludable ? "yes" : "no"));
        cells.emplace_back(said.limit);
        if (!people_) cells.push_back(pidCell(said.limit_pid));
        for (const std::string* text : {&said.category, &said.reason, &said.action})
            cells.emplace_back(*text);
        rows_->row(cells);
    }
    void finish() { rows_->finish(); }

  private:
    bool people_;
    std::unique_ptr<RowWriter> rows_;
};

void writeLines(const Context& context, const std::vector<Line>& lines) {
    using enum Column::Align;
    PartRows rows(context, {{"time", "Time"}, {"value", "Value", right}, {"mc", "MC", right}});
    for (const Line& line : lines)
        rows.row({timeText(line.part.time, line.part.interval), valueCell(line), codeCell(line)},
                 line.part.tag, line.part.kind, line.part.said);
    rows.finish();
}

void writeRuns(const Context& context, const std::vector<OccurrenceRun>& runs) {
    using enum Column::Align;
    PartRows rows(
        context,
        {{"begin", "Begin"}, {"end", "End"}, {"intervals", "Intervals", right}, {"hours", "Hours", right}});
    for (const OccurrenceRun& run : runs)
        rows.row({timeText(run.begin, run.interval), timeText(run.end, run.interval),
                  Cell::number(static_cast<double>(run.count)), Cell::number(run.hours())},
                 run.tag, run.kind, run.said);
    rows.finish();
}

/// The names of all parameters that the lines speak of, above a table.
void writeNames(const Context& context, Names& names, const std::vector<Line>& lines) {
    std::set<std::int32_t> tags;
    std::set<std::int32_t> others;
    for (const Line& line : lines) {
        tags.insert(line.part.tag);
        for (const std::int32_t pid : {line.part.said.pid, line.part.said.limit_pid})
            if (pid != 0) others.insert(pid);
    }
    for (const auto* pids : {&tags, &others})
        for (const std::int32_t pid : *pids)
            context.console.out(store::pidText(pid) + "  " + names.name(pid) + "\n");
    if (!lines.empty()) context.console.out("\n");
}

void writeTimeline(const Context& context, Binding& binding, Names& names, const OccurrenceQuery& query,
                   std::vector<OccurrenceRun> runs, const std::string& file) {
    Timeline timeline;
    timeline.from = query.first;
    timeline.to = query.last + 1;
    const std::string site = binding->siteName();
    timeline.title = "Downtimes and excursions of " +
                     (site.empty() || site.size() > longestSiteName ? binding->siteId() : site) + ", " +
                     timestampText(timeline.from, false) + " to " + timestampText(timeline.to, false);
    const std::size_t count = runs.size();
    std::map<std::int32_t, TimelineRow> rows;
    for (OccurrenceRun& run : runs) {
        TimelineRow& row = rows[run.tag];
        if (row.runs.empty()) row.title = names.name(run.tag) + "  " + store::pidText(run.tag);
        row.runs.push_back(std::move(run));
    }
    for (auto& [tag, row] : rows) timeline.rows.push_back(std::move(row));
    writePicture(file, timelineSvg(timeline));
    context.console.out("Drew " + counted(count, "occurrence") + " of " +
                        counted(timeline.rows.size(), "tag") + " into " + file + ".\n");
}

}  // namespace

ExitCode runOccurrencesList(Context& context) {
    const OccurrenceQuery query = occurrenceQuery(context.arguments);
    const Format format = context.format();  // refuses what does not go together before anything is read
    const auto picture = context.arguments.value("--plot");
    Binding binding(context);
    Names names(binding);
    const std::vector<Line> lines = linesOf(binding, names, query);
    if (picture) {
        writeTimeline(context, binding, names, query, runsOf(lines), *picture);
    } else {
        if (format == Format::table) writeNames(context, names, lines);
        if (context.arguments.has("--runs"))
            writeRuns(context, runsOf(lines));
        else
            writeLines(context, lines);
    }
    if (lines.empty()) context.console.error("There are no such occurrences in this span.");
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

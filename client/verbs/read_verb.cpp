#include <algorithm>
#include <array>

#include "client/output/plot.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

// So many intervals are in memory at once.
constexpr std::int32_t piece = 20'000;

// Bytes of names in the title of a chart; what is longer would not fit on the page.
constexpr std::size_t longestTitle = 70;

struct Subject {
    std::int32_t pid;
    std::string text;  ///< the PID in display form
    std::string name;
    std::string units;
    std::string format;
};

std::string headingOf(const Subject& s) {
    return s.text + "  " + s.name + (s.units.empty() ? "" : ", " + s.units);
}

std::vector<Subject> subjectsOf(const Context& context, Binding& binding) {
    std::vector<Subject> subjects;
    for (const std::string& text : context.arguments.operands()) {
        const std::int32_t pid = pidArgument(text);
        if (std::any_of(subjects.begin(), subjects.end(), [pid](const Subject& s) { return s.pid == pid; }))
            throw Failure(ExitCode::usage, store::pidText(pid) + " was given twice.",
                          "Name each parameter once.");
        binding.needParameter(pid);
        subjects.push_back(
            {pid, store::pidText(pid), binding->name(pid), binding->units(pid), binding->format(pid)});
    }
    return subjects;
}

store::Interval ownInterval(Binding& binding, const Subject& subject) {
    if (const auto interval = binding.interval(subject.pid)) return *interval;
    const std::string text = binding->interval(subject.pid);
    throw Failure(
        ExitCode::usage,
        subject.text + " has no interval of its own" + (text.empty() ? "." : " (\"" + text + "\")."),
        "Say one, for example --interval 1h.");
}

Cell valueCell(const Reading& reading, const std::string& format) {
    if (reading.number) return Cell::number(*reading.number, formatNumber(*reading.number, format));
    return reading.text.empty() ? Cell() : Cell(reading.text);
}

bool isEmpty(const Reading& reading) {
    return reading.text.empty() && reading.code == 0;
}

std::vector<Reading> readPiece(Binding& binding, const Subject& subject, const ReadRange& range,
                               store::Time start, std::int32_t count) {
    if (range.one) {
        // The one operation that traps failures: it says no more than that there was one.
        if (auto reading = binding->readOne(subject.pid, start)) return {std::move(*reading)};
    } else if (auto readings = binding->read(subject.pid, start, count, range.interval)) {
        return std::move(*readings);
    }
    binding.refuse("The component did not read " + subject.text + " at " + timestampText(start, false) + ".",
                   "Check that an interval of the parameter begins then; `vtdn params show " + subject.text +
                       "` says how long they are.");
}

/// Reads a run piece by piece and hands on each interval with the readings of all parameters.
template <class Take>
void readAll(Binding& binding, const std::vector<Subject>& subjects, const ReadRange& range, Take take) {
    for (std::int32_t done = 0; done < range.count;) {
        const std::int32_t count = std::min(piece, range.count - done);
        const store::Time start = range.interval.step(range.start, done);
        std::vector<std::vector<Reading>> columns;
        columns.reserve(subjects.size());
        for (const Subject& subject : subjects)
            columns.push_back(readPiece(binding, subject, range, start, count));
        for (std::int32_t i = 0; i < count; ++i) {
            std::vector<Reading*> row;
            row.reserve(columns.size());
            for (auto& column : columns) row.push_back(&column[static_cast<std::size_t>(i)]);
            take(range.interval.step(start, i), row);
        }
        done += count;
    }
}

void writeRows(const Context& context, Binding& binding, const std::vector<Subject>& subjects,
               const ReadRange& range) {
    std::vector<Column> columns{{"time", "Time"}};
    for (const Subject& subject : subjects) {
        columns.push_back({subject.text, subject.text, Column::Align::right});
        columns.push_back({subject.text + " mc", "MC", Column::Align::right});
    }
    const auto rows = context.rows(std::move(columns));
    const bool seconds = range.start % 60 != 0 || range.interval.seconds() % 60 != 0;
    const bool valuesOnly = context.arguments.has("--values-only");
    readAll(binding, subjects, range, [&](store::Time time, const std::vector<Reading*>& row) {
        if (valuesOnly && std::all_of(row.begin(), row.end(), [](const Reading* r) { return isEmpty(*r); }))
            return;
        std::vector<Cell> cells{timestampText(time, seconds)};
        for (std::size_t i = 0; i < row.size(); ++i) {
            cells.push_back(valueCell(*row[i], subjects[i].format));
            cells.emplace_back(row[i]->code);
        }
        rows->row(cells);
    });
    if (context.format() == Format::table) {
        // The table comes with finish(): nothing has been written when a read failed.
        for (const Subject& subject : subjects) context.console.out(headingOf(subject) + "\n");
        context.console.out("\n");
    }
    rows->finish();
}

std::optional<std::set<std::int32_t>> normalCodes(const Arguments& arguments) {
    const auto text = arguments.value("--normal");
    if (!text) return std::nullopt;
    std::set<std::int32_t> codes;
    for (std::size_t start = 0; start <= text->size();) {
        const std::size_t end = std::min(text->find(',', start), text->size());
        codes.insert(integerArgument("--normal", text->substr(start, end - start), 0));
        start = end + 1;
    }
    return codes;
}

void writePlot(const Context& context, Binding& binding, const std::vector<Subject>& subjects,
               const ReadRange& range, const std::string& file) {
    Plot plot;
    plot.start = range.start;
    plot.interval = range.interval;
    plot.normalCodes = normalCodes(context.arguments);
    for (const Subject& subject : subjects)
        plot.title += (plot.title.empty() ? "" : "; ") + subject.text + " " + subject.name;
    if (plot.title.size() > longestTitle) plot.title = std::to_string(subjects.size()) + " parameters";
    plot.title += ", " + timestampText(range.start, false) + " to " +
                  timestampText(range.interval.step(range.start, range.count), false);
    for (const Subject& subject : subjects) plot.series.push_back({subject.name, subject.units, {}});
    readAll(binding, subjects, range, [&](store::Time, const std::vector<Reading*>& row) {
        for (std::size_t i = 0; i < row.size(); ++i)
            plot.series[i].points.push_back({row[i]->number, row[i]->code});
    });
    writePicture(file, plotSvg(plot));
    context.console.out("Drew " + std::to_string(range.count) + " intervals of " + range.interval.text() +
                        " into " + file + ".\n");
}

}  // namespace

ExitCode runRead(Context& context) {
    constexpr std::array<std::string_view, 2> plotOrRows{"--plot", "--values-only"};
    refuseTogether(context.arguments, plotOrRows);
    (void)context.format();  // refuses what does not go together before anything is read
    if (context.arguments.has("--normal") && !context.arguments.has("--plot"))
        throw Failure(ExitCode::usage, "--normal is about the marks of a chart.",
                      "Give it with --plot FILE.");
    const auto asked = askedInterval(context.arguments);
    // What is wrong with the times is said without a component, too.
    (void)readRange(context.arguments, asked.value_or(store::Interval::of("h", 1)));
    Binding binding(context);
    const auto subjects = subjectsOf(context, binding);
    const store::Interval interval = asked ? *asked : ownInterval(binding, subjects[0]);
    const ReadRange range = readRange(context.arguments, interval);
    if (const auto file = context.arguments.value("--plot"))
        writePlot(context, binding, subjects, range, *file);
    else
        writeRows(context, binding, subjects, range);
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

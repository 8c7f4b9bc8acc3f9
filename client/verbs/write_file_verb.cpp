// `vtdn write --file`: runs of intervals from a CSV file.
#include <fcntl.h>
#include <io.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <numeric>
#include <system_error>

#include "client/import/sheet.h"
#include "client/output/json.h"
#include "client/run/run_file.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/database.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

void refuseOneInterval(const Arguments& arguments) {
    for (const std::string_view option : {"--value", "--text", "--null", "--mc"}) {
        const std::array<std::string_view, 2> both{"--file", option};
        refuseTogether(arguments, both);
    }
    if (arguments.operands().size() > 1)
        throw Failure(ExitCode::usage, "--file and TIME do not go together.",
                      "The times are in the file. Leave one of them away.");
}

ByteSource standardInput() {
    _setmode(_fileno(stdin), _O_BINARY);
    return [](char* buffer, std::size_t size) {
        const std::size_t got = std::fread(buffer, 1, size, stdin);
        if (got == 0 && std::ferror(stdin))
            throw Failure(ExitCode::environment, "Standard input could not be read to its end.",
                          "Check the program that writes into the pipe.");
        return got;
    };
}

/// The monitor codes that have a name at the site, and 0.
std::vector<bool> knownCodes(Component& component) {
    const auto names = component.names(NameList::shortMonitorCodes);
    std::vector<bool> known(std::max<std::size_t>(names.size(), 1));
    for (std::size_t i = 0; i < names.size(); ++i) known[i] = !names[i].empty();
    known[0] = true;
    return known;
}

/// Ends the verb in the component's words when the parameter cannot be written, before the file is looked at.
void needWritable(Binding& binding, std::int32_t pid) {
    if (binding->exists(pid) && binding->isStored(pid)) return;
    // A run of no intervals: it is refused for the parameter's sake.
    binding->writeRun(pid, store::Interval::of("h", 1), {});
    binding.refuse("The component does not write " + store::pidText(pid) + ".",
                   "The problem above says why. `vtdn params list` shows which parameters are stored.");
}

std::size_t limitOf(const Arguments& arguments) {
    constexpr std::size_t usual = 20;
    const auto text = arguments.value("--limit");
    return text ? static_cast<std::size_t>(integerArgument("--limit", *text, 1)) : usual;
}

RunFile readFile(const Context& context, Binding& binding, std::int32_t pid, const store::Interval& interval,
                 std::size_t limit) {
    const std::string file = *context.arguments.value("--file");
    const auto codes = knownCodes(binding.component());
    RunFileRequest request{file == "-" ? "standard input" : file,
                           {},
                           pid,
                           interval,
                           [&codes](store::MonitorCode code) {
                               const auto index = static_cast<std::size_t>(code);
                               return index < codes.size() && codes[index];
                           },
                           readsAsNumber,
                           limit};
    Progress progress(context.console, "Checking", context.arguments.has("--progress"));
    if (file == "-") {
        request.bytes = standardInput();
        return readRunFile(request);
    }
    const auto path = store::pathOf(file);
    std::error_code ignored;
    const auto total = std::filesystem::file_size(path, ignored);
    std::uintmax_t done = 0;
    request.bytes = fileBytes({path, file}, [&](std::size_t bytes) {
        done += bytes;
        progress.update(done, ignored ? 0 : total);
    });
    return readRunFile(request);
}

class RunPrinter {
  public:
    RunPrinter(const RunFile& file, const store::Interval& interval)
        : interval_(interval), seconds_(file.runs[0].start % 60 != 0 || interval.seconds() % 60 != 0) {}

    [[nodiscard]] std::string first(const WrittenRun& run) const {
        return timestampText(run.start, seconds_);
    }
    [[nodiscard]] std::string last(const WrittenRun& run) const {
        return timestampText(interval_.step(run.start, static_cast<std::int64_t>(run.items.size()) - 1),
                             seconds_);
    }

  private:
    const store::Interval& interval_;
    bool seconds_;
};

void writeRuns(Context& context, Binding& binding, std::int32_t pid, const store::Interval& interval,
               const RunFile& file) {
    const RunPrinter times(file, interval);
    const std::size_t total =
        std::accumulate(file.runs.begin(), file.runs.end(), std::size_t{0},
                        [](std::size_t sum, const WrittenRun& run) { return sum + run.items.size(); });
    Progress progress(context.console, "Writing", context.arguments.has("--progress"));
    std::size_t done = 0;
    for (std::size_t i = 0; i < file.runs.size(); ++i) {
        const WrittenRun& run = file.runs[i];
        const std::string before =
            i == 0 ? "Nothing was written."
                   : "What the file has up to " + times.last(file.runs[i - 1]) + " is written.";
        try {
            if (!binding->writeRun(pid, interval, run))
                binding.refuse("The component refused to write " + store::pidText(pid) + " from " +
                                   times.first(run) + " to " + times.last(run) + ". " + before,
                               "The problem above says why.");
        } catch (const com::Error&) {
            context.console.error(before);
            throw;
        }
        done += run.items.size();
        progress.update(done, total);
    }
}

}  // namespace

ExitCode runWriteFile(Context& context) {
    refuseOneInterval(context.arguments);
    const std::int32_t pid = pidArgument(context.arguments.operands()[0]);
    const std::size_t limit = limitOf(context.arguments);
    const std::string name = store::pidText(pid);
    Binding binding(context);
    needWritable(binding, pid);
    const auto interval = binding.interval(pid);
    if (!interval)
        throw Failure(ExitCode::refused, name + " has no interval that a run could have.",
                      "`vtdn params show " + name + "` shows it.");
    const RunFile file = readFile(context, binding, pid, *interval, limit);
    for (const ImportProblem& problem : file.problems) context.console.error(problem.text());
    if (!file.problems.empty())
        throw Failure(ExitCode::refused,
                      counted(file.problems.size(), "problem") +
                          (file.moreProblems ? ", and reading ended there" : "") + ". Nothing was written.",
                      "Mend the rows and try again. `vtdn write --help` says what the columns are; --limit "
                      "lists more rows.");
    writeRuns(context, binding, pid, *interval, file);
    const RunPrinter times(file, *interval);
    const std::string first = times.first(file.runs.front());
    const std::string last = times.last(file.runs.back());
    if (context.arguments.has("--json")) {
        Json json;
        json.beginObject();
        json.member("pid", name);
        json.member("from", first);
        json.member("to", last);
        json.member("values", static_cast<std::int64_t>(file.values));
        json.member("no_values", static_cast<std::int64_t>(file.noValues));
        json.member("codes", static_cast<std::int64_t>(file.codes));
        json.member("runs", static_cast<std::int64_t>(file.runs.size()));
        json.endObject();
        context.console.out(json.text() + "\n");
    } else {
        context.console.out(name + ": wrote " + counted(file.values, "value") + ", " +
                            std::to_string(file.noValues) + " times no value and " +
                            counted(file.codes, "monitor code") + " from " + first + " to " + last +
                            (file.runs.size() == 1 ? "" : " in " + counted(file.runs.size(), "run")) + ".\n");
    }
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

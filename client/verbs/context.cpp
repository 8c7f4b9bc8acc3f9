#include "client/verbs/context.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>

#include "store/connection.h"
#include "store/database.h"
#include "store/directory.h"
#include "store/error.h"
#include "store/home.h"
#include "store/parameters.h"
#include "store/pid_text.h"

namespace vtdn::client {

Format Context::format() const {
    constexpr std::array<std::string_view, 3> ways{"--csv", "--json", "--plot"};
    refuseTogether(arguments, ways);
    if (arguments.has("--csv")) return Format::csv;
    return arguments.has("--json") ? Format::json : Format::table;
}

namespace {

std::vector<store::Dahs> listedDahs() {
    try {
        return store::Directory::open(store::homeFolder()).list();
    } catch (const store::Error& error) {
        if (error.kind() == store::ErrorKind::databaseMissing) return {};
        throw;
    }
}

std::int32_t chooseDahs(const Arguments& arguments) {
    if (const auto text = arguments.value("--dahs")) return integerArgument("--dahs", *text, 1);
    if (const char* text = std::getenv("VANTOR_DAHS"); text && *text)
        return integerArgument("VANTOR_DAHS", text, 1);
    const auto all = listedDahs();
    if (all.size() == 1) return all[0].id;
    if (all.empty())
        throw Failure(
            ExitCode::environment, "There is no site on this computer yet.",
            "Load one: `vtdn site import FOLDER`. Sites are looked for in " + store::homeFolder() + ".");
    std::string choice;
    for (const store::Dahs& dahs : all)
        choice += "\n  --dahs " + std::to_string(dahs.id) + "   " + dahs.site_id + ", " + dahs.description;
    throw Failure(ExitCode::usage, "Which DAHS? There are " + std::to_string(all.size()) + ":" + choice,
                  "Give one of them, or set the environment variable VANTOR_DAHS to its id.");
}

}  // namespace

Binding::Binding(Context& context) : context_(context), dahsId_(chooseDahs(context.arguments)) {
    if (component_.setUp(dahsId_)) return;
    report(true);
    throw Failure(ExitCode::environment, "The engine did not bind to DAHS " + std::to_string(dahsId_) + ".",
                  "`vtdn site list` shows the sites of this computer, `vtdn doctor` what is wrong with one.");
}

store::Database Binding::database(store::DatabaseKind kind) {
    const std::string connection =
        kind == store::DatabaseKind::alarm ? component_.alarmConnection() : component_.configConnection();
    return store::openDatabase(kind, store::Connection::parse(connection).database);
}

store::Site Binding::site() {
    return {component_.siteConnections(), component_.siteId()};
}

// The component has no operation that lists all parameters.
std::vector<std::int32_t> Binding::pids() {
    auto config = database(store::DatabaseKind::config);
    const auto parameters = store::ParameterSet::load(config);
    std::vector<std::int32_t> pids;
    for (const auto& [pid, entry] : parameters.entries()) pids.push_back(pid);
    return pids;
}

std::optional<store::Interval> Binding::interval(std::int32_t pid) {
    try {
        return store::Interval::parse(component_.interval(pid));
    } catch (const store::Error&) {
        return std::nullopt;
    }
}

store::Interval Binding::pointInterval(std::int32_t pid) {
    if (const auto own = interval(pid)) return *own;
    throw Failure(ExitCode::refused,
                  store::pidText(pid) + " has no interval of its own, and without one no data points.",
                  "`vtdn params list` shows the intervals of the others.");
}

void Binding::needParameter(std::int32_t pid) {
    if (component_.exists(pid)) return;
    // Asked for its name, the component says in its own words what is wrong.
    component_.name(pid);
    refuse("There is no parameter " + store::pidText(pid) + ".",
           "`vtdn params list` shows those that there are.");
}

std::vector<std::string> Binding::printProblems() {
    auto problems = component_.takeProblems();
    for (const std::string& problem : problems) context_.console.error("Problem: " + problem);
    return problems;
}

void Binding::report(bool refused) {
    if (printProblems().empty() && !refused && context_.arguments.has("--problems"))
        context_.console.error("No problems.");
}

void Binding::needNoRefusal(const std::string& sentence, const std::string& next) {
    // What the engine merely notes carries no code of the component.
    constexpr std::string_view code = " (WDN-";
    const auto problems = printProblems();
    if (std::any_of(problems.begin(), problems.end(), [&](const std::string& problem) {
            return problem.ends_with(')') && problem.rfind(code) != std::string::npos;
        }))
        throw Failure(ExitCode::refused, sentence, next);
    if (problems.empty() && context_.arguments.has("--problems")) context_.console.error("No problems.");
}

void Binding::refuse(const std::string& sentence, const std::string& next) {
    report(true);
    throw Failure(ExitCode::refused, sentence, next);
}

void writePicture(const std::string& file, const std::string& svg) {
    std::ofstream stream(store::pathOf(file), std::ios::binary);
    stream << svg;
    stream.close();
    if (!stream)
        throw Failure(ExitCode::environment, "The picture cannot be written to " + file + ".",
                      "Check that the folder exists and that you may write there.");
}

}  // namespace vtdn::client

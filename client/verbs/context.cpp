#include "client/verbs/context.h"

#include <array>
#include <cstdlib>

#include "client/text/numbers.h"
#include "store/connection.h"
#include "store/directory.h"
#include "store/error.h"
#include "store/home.h"
#include "store/parameters.h"
#include "store/pid_text.h"
#include "store/schema.h"

namespace vtdn::client {

Format Context::format() const {
    constexpr std::array<std::string_view, 3> ways{"--csv", "--json", "--plot"};
    refuseTogether(arguments, ways);
    if (arguments.has("--csv")) return Format::csv;
    return arguments.has("--json") ? Format::json : Format::table;
}

std::int32_t pidArgument(const std::string& text) {
    if (const store::Pid pid = store::parsePid(text)) return pid;
    throw Failure(ExitCode::usage, "\"" + text + "\" is no PID.",
                  "PIDs look like 5-040-3-00-00 or 504030000, with 0 to 5, 7 or 8 in the middle. `vtdn "
                  "params list` shows "
                  "those of a DAHS.");
}

std::int32_t integerArgument(std::string_view option, const std::string& text, std::int32_t least) {
    const auto number = parseInteger(text);
    if (number && *number >= least) return *number;
    throw Failure(ExitCode::usage, "\"" + text + "\" is not what " + std::string(option) + " takes.",
                  "It takes a whole number from " + std::to_string(least) + " to 2147483647.");
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

// The one thing besides making and filling sites that does not go through the component, which has no
// operation to list parameters with: their numbers come from the configuration database.
std::vector<std::int32_t> Binding::pids() {
    const auto connection = store::Connection::parse(component_.configConnection());
    auto config = store::openDatabase(store::DatabaseKind::config, connection.database);
    const auto parameters = store::ParameterSet::load(config);
    std::vector<std::int32_t> pids;
    for (const auto& [pid, entry] : parameters.entries()) pids.push_back(pid);
    return pids;
}

void Binding::needParameter(std::int32_t pid) {
    if (component_.exists(pid)) return;
    // Asked for its name, the component says in its own words what is wrong.
    component_.name(pid);
    refuse("There is no parameter " + store::pidText(pid) + ".",
           "`vtdn params list` shows those that there are.");
}

void Binding::report(bool refused) {
    const auto problems = component_.takeProblems();
    for (const std::string& problem : problems) context_.console.error("Problem: " + problem);
    if (!refused && problems.empty() && context_.arguments.has("--problems"))
        context_.console.error("No problems.");
}

void Binding::refuse(const std::string& sentence, const std::string& next) {
    report(true);
    throw Failure(ExitCode::refused, sentence, next);
}

}  // namespace vtdn::client

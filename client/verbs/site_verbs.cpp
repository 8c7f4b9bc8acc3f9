#include "client/platform/clock.h"
#include "client/site/sites.h"
#include "client/text/numbers.h"
#include "client/verbs/context.h"
#include "com/computer.h"
#include "com/strings.h"
#include "store/error.h"
#include "store/home.h"

namespace vtdn::client {

namespace {

std::string nameOf(const store::Dahs& dahs) {
    return "DAHS " + std::to_string(dahs.id) + " (" + dahs.site_id + ")";
}

}  // namespace

ExitCode runSiteCreate(Context& context) {
    NewSite site;
    if (const auto id = context.arguments.value("--id")) site.dahsId = integerArgument("--id", *id, 1);
    const auto siteId = context.arguments.value("--site-id");
    if (!siteId || siteId->empty())
        throw Failure(ExitCode::usage, "The site needs an identifier.", "Give a short one: --site-id MILL");
    site.siteId = *siteId;
    site.completeName = context.arguments.value("--name").value_or("");
    site.description = context.arguments.value("--description").value_or("");
    const store::Dahs dahs = createSite(store::homeFolder(), site);
    context.console.out("Made " + nameOf(dahs) + ". `vtdn site import --dahs " + std::to_string(dahs.id) +
                        " FOLDER` fills it.\n");
    return ExitCode::done;
}

ExitCode runSiteImport(Context& context) {
    const std::string& folder = context.arguments.operands()[0];
    ImportRequest request;
    request.folder = store::pathOf(folder);
    if (const auto id = context.arguments.value("--dahs")) request.dahsId = integerArgument("--dahs", *id, 1);
    if (const auto limit = context.arguments.value("--limit"))
        request.problemLimit = static_cast<std::size_t>(integerArgument("--limit", *limit, 1));
    request.update = context.arguments.has("--update");
    request.checkOnly = context.arguments.has("--check");
    request.editUser = com::toUtf8(com::userName());
    request.editTime = standardTimeNow();
    ImportResult result;
    {
        Progress progress(context.console, request.checkOnly ? "Checking" : "Loading",
                          context.arguments.has("--progress"));
        request.progress = [&](std::uintmax_t done, std::uintmax_t total) { progress.update(done, total); };
        result = importSite(store::homeFolder(), request);
    }
    for (const ImportProblem& problem : result.problems) context.console.error(problem.text());
    if (!result.problems.empty())
        throw Failure(ExitCode::refused,
                      counted(result.problems.size(), "problem") +
                          (result.moreProblems ? ", and reading ended there" : "") + ". Nothing was " +
                          (request.checkOnly ? "going to be loaded." : "loaded."),
                      "Mend the rows and try again. docs/site-files.md describes the files; --check looks "
                      "without loading.");
    const std::string what =
        counted(result.parameters, "parameter") + ", " + counted(result.monitorCodes, "monitor code") + ", " +
        counted(result.values, "value") +
        (result.occurrences > 0 ? ", " + counted(result.occurrences, "occurrence") : "") + ".\n";
    if (request.checkOnly)
        context.console.out("All in order: " + what);
    else
        context.console.out((result.updated ? "Updated " : "Loaded ") + nameOf(result.dahs) + ": " + what);
    return ExitCode::done;
}

ExitCode runSiteList(Context& context) {
    const std::string home = store::homeFolder();
    std::vector<store::Dahs> all;
    try {
        all = store::Directory::open(home).list();
    } catch (const store::Error& error) {
        if (error.kind() != store::ErrorKind::databaseMissing) throw;
    }
    const bool full = context.format() != Format::table;
    std::vector<Column> columns{{"dahs_id", "ID", Column::Align::right},
                                {"site_id", "Site"},
                                {"description", "Description"},
                                {"complete_name", "Complete name"}};
    if (full)
        for (const char* key : {"alarm_connection", "config_connection", "data_connection",
                                "data_short_term_connection", "realtime_connection"})
            columns.push_back({key, key});
    const auto rows = context.rows(std::move(columns));
    for (const store::Dahs& dahs : all) {
        std::vector<Cell> cells{dahs.id, dahs.site_id, dahs.description, dahs.complete_name};
        const store::SiteConnections& c = dahs.connections;
        if (full)
            for (const std::string* text : {&c.alarm, &c.config, &c.data, &c.data_short_term, &c.realtime})
                cells.emplace_back(*text);
        rows->row(cells);
    }
    if (all.empty() && !full) {
        context.console.error("There is no site in " + home + " yet. Load one: `vtdn site import FOLDER`.");
        return ExitCode::done;
    }
    rows->finish();
    return ExitCode::done;
}

ExitCode runSiteRemove(Context& context) {
    const std::int32_t id = integerArgument("ID", context.arguments.operands()[0], 1);
    const bool files = context.arguments.has("--files");
    const std::string home = store::homeFolder();
    const store::Dahs dahs = store::Directory::open(home).get(id);
    if (!context.arguments.has("--yes")) {
        const auto answer = context.console.ask(
            "Remove " + nameOf(dahs) + ", " + dahs.description +
            (files ? ", and delete its databases" : "; its databases stay") + "? Type its id to go on: ");
        if (answer != std::to_string(id))
            throw Failure(ExitCode::refused, "Nothing was removed.",
                          "Type the id when asked, or give --yes.");
    }
    const auto left = removeSite(home, id, files);
    context.console.out("Removed " + nameOf(dahs) + ".\n");
    for (const std::string& file : left) context.console.error("Could not be deleted: " + file);
    if (!left.empty())
        throw Failure(ExitCode::environment, "Some files of the site are still there.",
                      "Close the programs that use them and delete them.");
    return ExitCode::done;
}

}  // namespace vtdn::client

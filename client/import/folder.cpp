#include <algorithm>
#include <array>
#include <system_error>

#include "client/cli/failure.h"
#include "client/cli/spelling.h"
#include "client/import/definition.h"
#include "store/database.h"

namespace vtdn::client {

namespace {

namespace fs = std::filesystem;

/// The CSV files directly in a folder, by name. The name's case counts, as it does on other systems.
std::vector<SiteFile> csvFiles(const fs::path& folder, const std::string& prefix) {
    std::vector<SiteFile> files;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        std::error_code ignored;
        if (!it->is_regular_file(ignored)) continue;
        std::string name = store::utf8Of(it->path().filename());
        if (name.ends_with(".csv") || name.ends_with(".CSV")) files.push_back({it->path(), prefix + name});
    }
    if (error)
        throw Failure(ExitCode::environment, "The folder " + store::utf8Of(folder) + " cannot be listed.",
                      "Check that you may read it.");
    std::sort(files.begin(), files.end(),
              [](const SiteFile& a, const SiteFile& b) { return a.name < b.name; });
    return files;
}

}  // namespace

SiteFolder SiteFolder::look(const fs::path& folder, ImportProblems& problems) {
    std::error_code error;
    if (!fs::is_directory(folder, error))
        throw Failure(ExitCode::environment, "There is no folder " + store::utf8Of(folder) + ".",
                      "Give the folder that holds parameters.csv; docs/site-files.md describes it.");
    SiteFolder found;
    constexpr std::array<std::string_view, 8> names{
        "site.csv",       "units.csv",          "monitor_codes.csv", "parameter_codes.csv",
        "parameters.csv", "special_values.csv", "relationships.csv", "occurrences.csv"};
    const std::array<std::optional<SiteFile>*, names.size()> places{
        &found.site,       &found.units,         &found.monitorCodes,  &found.parameterCodes,
        &found.parameters, &found.specialValues, &found.relationships, &found.occurrences};
    for (SiteFile& file : csvFiles(folder, {})) {
        const auto name = std::find(names.begin(), names.end(), file.name);
        if (name != names.end()) {
            *places[static_cast<std::size_t>(name - names.begin())] = std::move(file);
            continue;
        }
        const std::string_view near = nearestSpelling(file.name, names);
        problems.add({file.name,
                      0,
                      {},
                      near.empty()
                          ? "no file of a site has this name; files with values belong into the folder values"
                          : "no file of a site has this name; was \"" + std::string(near) + "\" meant?"});
    }
    if (!found.parameters) problems.add({"parameters.csv", 0, {}, "the folder has no file of this name"});
    if (fs::is_directory(folder / "values", error)) found.values = csvFiles(folder / "values", "values/");
    return found;
}

}  // namespace vtdn::client

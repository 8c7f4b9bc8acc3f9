// What a site is, from the files site.csv, monitor_codes.csv and parameters.csv of its folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/monitor_codes.h"
#include "store/parameters.h"

namespace vtdn::client {

/// The files of a folder, as far as they are part of the format.
struct SiteFolder {
    std::optional<SiteFile> site;
    std::optional<SiteFile> monitorCodes;
    std::optional<SiteFile> parameters;
    std::vector<SiteFile> values;  ///< in the order of their names

    /// Looks into a folder. Reports missing files and CSV files with other names; throws Failure
    /// (environment) when there is no such folder.
    static SiteFolder look(const std::filesystem::path& folder, ImportProblems& problems);
};

struct SiteDefinition {
    std::optional<std::int32_t> dahsId;
    std::string siteId;
    std::string description;
    std::string completeName;
    std::vector<store::MonitorCodeName> monitorCodes;
    std::vector<store::Parameter> parameters;
};

/// Reads the three files and checks them against each other, parameters by the store's own rules. Where
/// problems were reported, the definition is as complete as it can be, so that values can be checked against
/// it all the same.
SiteDefinition readDefinition(const SiteFolder& folder, ImportProblems& problems);

}  // namespace vtdn::client

// What a site is, from the files of its folder but those with values and occurrences.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "client/import/occurrence_parameters.h"
#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/monitor_codes.h"
#include "store/parameter_codes.h"
#include "store/parameters.h"
#include "store/relationships.h"
#include "store/special_values.h"
#include "store/units.h"

namespace vtdn::client {

/// The files of a folder, as far as they are part of the format.
struct SiteFolder {
    std::optional<SiteFile> site;
    std::optional<SiteFile> units;
    std::optional<SiteFile> monitorCodes;
    std::optional<SiteFile> parameterCodes;
    std::optional<SiteFile> parameters;
    std::optional<SiteFile> specialValues;
    std::optional<SiteFile> relationships;
    std::optional<SiteFile> occurrences;
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
    std::vector<store::UnitName> units;
    std::vector<store::MonitorCodeName> monitorCodes;
    std::vector<store::ParameterCodeName> parameterCodes;
    std::vector<store::Parameter> parameters;
    std::vector<store::SpecialValueEntry> specialValues;
    std::vector<store::Relationship> relationships;
    std::vector<OccurrenceParameter> occurrenceParameters;  ///< those whose special values are in order
};

/// Reads the files and checks them against each other, by the store's own rules where it has them. Where
/// problems were reported, the definition is as complete as it can be, so that values can be checked against
/// it all the same.
SiteDefinition readDefinition(const SiteFolder& folder, ImportProblems& problems);

}  // namespace vtdn::client

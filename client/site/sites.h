// Making, filling and removing the sites of this computer: the one thing that the component has no operations
// for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "client/import/problems.h"
#include "store/directory.h"
#include "store/time.h"

namespace vtdn::client {

struct NewSite {
    std::optional<std::int32_t> dahsId;  ///< nothing: the next free one
    std::string siteId;
    std::string description;
    std::string completeName;
};

/// Makes a site without parameters under the home folder and lists it in the directory. Throws Failure
/// (refused) for a DAHS id that is taken, and store::Error.
store::Dahs createSite(const std::string& home, const NewSite& site);

struct ImportRequest {
    std::filesystem::path folder;
    std::optional<std::int32_t> dahsId;  ///< goes before the one in site.csv
    bool update = false;                 ///< load into a site that has parameters already
    bool checkOnly = false;              ///< read and check everything, change nothing
    std::size_t problemLimit = 20;       ///< reading ends after this many
    std::string editUser;                ///< who the edit log says wrote the occurrences
    store::Time editTime = 0;            ///< when it says so, local standard time
    /// Told how many bytes of how many were read.
    std::function<void(std::uintmax_t, std::uintmax_t)> progress;
};

struct ImportResult {
    std::vector<ImportProblem> problems;  ///< when there are any, nothing was changed
    bool moreProblems = false;            ///< reading ended at the limit
    bool updated = false;                 ///< the site existed
    store::Dahs dahs;                     ///< not set by a mere check
    std::size_t parameters = 0;
    std::size_t monitorCodes = 0;
    std::size_t values = 0;       ///< intervals with a value or a monitor code
    std::size_t occurrences = 0;  ///< intervals with an excursion, a downtime or both
};

/// Loads a folder of site files, all or nothing. A new site is built in a folder of its own and listed in the
/// directory when it is whole; a site that exists gets its parameters and all tables beside them replaced
/// and the given intervals written in one go. Throws Failure and store::Error.
ImportResult importSite(const std::string& home, const ImportRequest& request);

/// Takes a site out of the directory and, if asked for, deletes its database files. Returns what could not be
/// deleted.
std::vector<std::string> removeSite(const std::string& home, std::int32_t dahsId, bool deleteFiles);

}  // namespace vtdn::client

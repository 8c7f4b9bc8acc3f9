// The parameters of a site, from the file parameters.csv of its folder.
#pragma once

#include <vector>

#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/parameters.h"

namespace vtdn::client {

/// Reads the parameters and checks them against each other by the store's own rules. Where problems were
/// reported, the parameters are as complete as they can be, so that what refers to them can be checked all
/// the same.
std::vector<store::Parameter> readParameters(const SiteFile& file, ImportProblems& problems);

}  // namespace vtdn::client

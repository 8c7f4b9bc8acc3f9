// Numbered facts about parameters, from the file special_values.csv of a site's folder.
#pragma once

#include <vector>

#include "client/import/known_parameters.h"
#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/special_values.h"

namespace vtdn::client {

/// Rows with a problem are reported.
std::vector<store::SpecialValueEntry> readSpecialValues(const SiteFile& file,
                                                        const KnownParameters& parameters,
                                                        ImportProblems& problems);

}  // namespace vtdn::client

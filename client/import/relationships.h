// Averaging levels of one quantity, from the file relationships.csv of a site's folder.
#pragma once

#include <vector>

#include "client/import/known_parameters.h"
#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/relationships.h"

namespace vtdn::client {

/// Checked by the store's own rules. A row that breaks one is reported there; a parameter that does not fit
/// to the others of its group, at the first row that names it.
std::vector<store::Relationship> readRelationships(const SiteFile& file, const KnownParameters& parameters,
                                                   ImportProblems& problems);

}  // namespace vtdn::client

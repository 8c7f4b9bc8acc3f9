// Numbered facts about parameters, from the file special_values.csv of a site's folder.
#pragma once

#include <cstddef>
#include <vector>

#include "client/import/known_parameters.h"
#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/special_values.h"

namespace vtdn::client {

struct SpecialValueRow {
    store::SpecialValueEntry entry;
    std::size_t line;
    bool good;  ///< whether its value could be read
};

/// Rows with a problem are reported.
std::vector<SpecialValueRow> readSpecialValues(const SiteFile& file, const KnownParameters& parameters,
                                               ImportProblems& problems);

}  // namespace vtdn::client

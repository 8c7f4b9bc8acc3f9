// Listing the occurrences of data databases, by what stands beside their texts.
#pragma once

#include <span>

#include "store/database.h"
#include "store/occurrences.h"
#include "store/parameters.h"
#include "store/series.h"

namespace vtdn::store {

/// A data database and its series. Both must outlive this.
struct OccurrenceSource {
    Database& db;
    SeriesStore& series;
};

/// The occurrences that all of the databases hold together, each database as of one moment. No occurrence
/// text is parsed. Throws what Site::occurrences throws.
[[nodiscard]] OccurrenceList listOccurrences(std::span<const OccurrenceSource> sources,
                                             const ParameterSet& parameters, const OccurrenceFilter& filter);

}  // namespace vtdn::store

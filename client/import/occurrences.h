// Occurrences of a site, from the file occurrences.csv of its folder.
#pragma once

#include <vector>

#include "client/import/definition.h"
#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/interval.h"
#include "store/occurrence.h"
#include "store/time.h"

namespace vtdn::client {

/// Intervals of a tag in a row that all have the same occurrence.
struct OccurrenceRun {
    store::Pid tag;
    store::Span span;
    store::Occurrence occurrence;
};

/// The occurrences of the rows that keep all rules, ordered by tag and time; the other rows are reported. An
/// excursion and a downtime of one interval are one occurrence, so no two runs of a tag share an interval.
std::vector<OccurrenceRun> readOccurrences(const SiteFile& file, const SiteDefinition& definition,
                                           ImportProblems& problems);

}  // namespace vtdn::client

// Occurrence parameters (I/O type 31): what their special values say of the occurrences recorded for them.
#pragma once

#include <span>
#include <vector>

#include "client/import/known_parameters.h"
#include "client/import/problems.h"
#include "client/import/special_values.h"
#include "store/interval.h"
#include "store/parameters.h"

namespace vtdn::client {

enum class OccurrenceType { excursion, downtime };

struct OccurrenceParameter {
    store::Pid pid;
    store::Pid tag;            ///< the parameter whose data points carry the occurrences
    store::Interval interval;  ///< of the tag
    OccurrenceType type;
    store::Pid limit;  ///< the constant that an excursion exceeded; 0 for none
};

/// The occurrence parameters whose special values keep the rules: -21 the tag, a parameter with stored
/// values; -3 the type, 3 for excursions and 4 for downtimes; -13 the tag's interval in seconds; and for
/// excursions, if there is one, 1003 the constant that is the limit. What breaks them is reported.
std::vector<OccurrenceParameter> readOccurrenceParameters(std::span<const store::Parameter> parameters,
                                                          std::span<const SpecialValueRow> specialValues,
                                                          ImportProblems& problems);

}  // namespace vtdn::client

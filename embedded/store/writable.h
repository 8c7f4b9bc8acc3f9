// What a write needs: a parameter that takes values, and values that can be kept.
#pragma once

#include <span>
#include <string_view>

#include "store/parameters.h"
#include "store/run.h"
#include "store/series.h"
#include "store/value.h"

namespace vtdn::store {

/// Throws badValue for a number that is infinite or NaN, and for a text over longestText. The name of the
/// parameter is in the sentence.
void requireStorable(Pid pid, const Value& value);
/// The same for the values of a run that the mask takes (an empty one takes all).
void requireStorable(Pid pid, const Run& run, std::span<const WriteParts> mask);

/// The same for a text that is no value.
void requireStorableText(Pid pid, std::string_view text);

/// The series of a database parameter. Throws unknownParameter, notWritable, and badInterval when an interval
/// is asked for that is not the parameter's own.
[[nodiscard]] SeriesKey writableSeries(const ParameterSet& parameters, Pid pid, const Interval* asked);

}  // namespace vtdn::store

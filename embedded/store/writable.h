// What a write needs: a parameter that takes values, and values that can be kept.
#pragma once

#include "store/parameters.h"
#include "store/series.h"
#include "store/value.h"

namespace vtdn::store {

/// Throws badValue for a number that is infinite or NaN.
void requireStorable(Pid pid, const Value& value);
void requireFinite(Pid pid, double number);

/// The series of a database parameter. Throws unknownParameter, notWritable, and badInterval when an interval
/// is asked for that is not the parameter's own.
[[nodiscard]] SeriesKey writableSeries(const ParameterSet& parameters, Pid pid, const Interval* asked);

}  // namespace vtdn::store

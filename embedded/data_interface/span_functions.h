// The special functions over a span of time: each takes its start and its end, which it does not include.
#pragma once

#include "com/variant.h"
#include "data_interface/session.h"
#include "data_interface/special_arguments.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Special function 32: the hours that a unit operated, a double, as the sum of its operating-time parameter
/// (see operating_time.h).
com::Variant operatingHours(Session& session, store::Pid pid, const SpecialArguments& arguments);

// Over the parameter's own intervals that begin in the span; only numbers count.

/// Special function 101: in how many percent of the intervals there is a number whose monitor code counts as
/// available, a double. All codes count, or those that special value 1002 of the parameter lists, separated
/// by ",". Where special value 1001 names an operating-time parameter, intervals without operation are left
/// out, as in 40 CFR 75.32(a). Null when no interval is left.
com::Variant availability(Session& session, store::Pid pid, const SpecialArguments& arguments);
/// Special functions 102 and 103: a double; Null when there is no number or the result is beyond a double.
com::Variant average(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant sum(Session& session, store::Pid pid, const SpecialArguments& arguments);
/// Special functions 104 and 105: the value itself, of the kind that it is stored in; Null when there is
/// none.
com::Variant minimum(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant maximum(Session& session, store::Pid pid, const SpecialArguments& arguments);
/// Special function 106: how many of the intervals hold a number, a 32-bit integer.
com::Variant count(Session& session, store::Pid pid, const SpecialArguments& arguments);

}  // namespace vtdn::embedded

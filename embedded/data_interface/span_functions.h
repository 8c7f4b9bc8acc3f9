// The special functions over a span of time: each takes its start and its end, which is not part of it. The
// store says what they come to (store/span_functions.h).
#pragma once

#include "com/variant.h"
#include "data_interface/session.h"
#include "data_interface/special_arguments.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Special function 32: hours of operation, a double.
com::Variant operatingHours(Session& session, store::Pid pid, const SpecialArguments& arguments);
/// Special function 101: a double, or Null when no interval begins in the span.
com::Variant availability(Session& session, store::Pid pid, const SpecialArguments& arguments);
// Special functions 102 to 106: the values themselves for the extremes, a 32-bit integer for the count,
// doubles for the others; Null where there is no value.
com::Variant average(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant sum(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant minimum(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant maximum(Session& session, store::Pid pid, const SpecialArguments& arguments);
com::Variant count(Session& session, store::Pid pid, const SpecialArguments& arguments);

}  // namespace vtdn::embedded

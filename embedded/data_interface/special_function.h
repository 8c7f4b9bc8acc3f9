// The numbered functions of a parameter.
//
// | id  | arguments             | does                                                              | result
// |
// |-----|-----------------------|-------------------------------------------------------------------|--------|
// | 6   | time, data item       | stores one interval                                               | True |
// | 32  | start, end            | operating time in hours                                           | double
// | | 33  | data array, its mask  | stores a run of intervals, as much of each as the mask says       | True
// | | 101 | start, end            | availability in percent                                           |
// double | | 102 | start, end            | average | double | | 103 | start, end            | sum | double |
// | 104 | start, end            | minimum                                                           | itself
// | | 105 | start, end            | maximum                                                           |
// itself | | 106 | start, end            | how many numbers there are | long   |
//
// docs/engine.md says exactly what each of them does.
#pragma once

#include "com/variant.h"
#include "data_interface/session.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Calls a function of a parameter with an array of VARIANT, of any lower bound, that holds its arguments, or
/// another such array that holds them. What is refused (an unknown id, other arguments, and whatever the
/// store refuses) is said as a message and thrown: callers may ignore results, so no refusal is ever a
/// result.
com::Variant callSpecialFunction(Session& session, store::Pid pid, LONG id, SAFEARRAY* arguments);

}  // namespace vtdn::embedded

// The numbered functions of a parameter.
//
// | id | arguments                   | does                                                    | result |
// |----|-----------------------------|---------------------------------------------------------|--------|
// | 6  | time, data item             | stores the item's value and code in the interval that   | True   |
// |    |                             | begins at the time; on the disk when it returns         |        |
//
// The time is a date or a serial number. The data item may be any engine's: its public interface is asked.
#pragma once

#include "com/variant.h"
#include "data_interface/session.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Calls a function of a parameter with an array of VARIANT, of any lower bound. What is refused (an unknown
/// id, other arguments, and whatever the store refuses) is said as a message and thrown: callers may ignore
/// results, so no refusal is ever a result.
com::Variant callSpecialFunction(Session& session, store::Pid pid, LONG id, SAFEARRAY* arguments);

}  // namespace vtdn::embedded

// The special functions that store values.
#pragma once

#include "com/variant.h"
#include "data_interface/session.h"
#include "data_interface/special_arguments.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Special function 6: stores the value and the monitor code of a data item in the interval that begins at a
/// time. The item may be any library's: its public interface is asked. On the disk when it returns.
com::Variant writeDataItem(Session& session, store::Pid pid, const SpecialArguments& arguments);

/// Special function 33: stores the items of a data array, of each as much as the number in the mask array
/// says: 0 nothing, 1 the value, 2 the monitor code, 3 both. All of it or nothing; on the disk when it
/// returns. Both arrays are this engine's, since another library's do not tell where they are placed.
com::Variant writeDataArray(Session& session, store::Pid pid, const SpecialArguments& arguments);

}  // namespace vtdn::embedded

// The program's own allocations, so that a spy can refuse them as it refuses the platform's.
#pragma once

#include "support/allocation_spy.h"

namespace vtdn::test {

/// The spy that is asked before every allocation by `new`; null for none.
void askBeforeNew(AllocationSpy* spy) noexcept;

}  // namespace vtdn::test

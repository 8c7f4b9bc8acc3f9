// The lenient engine's data points.
#pragma once

#include "com/ptr.h"
#include "fake_engine/lenient.h"

namespace vtdn::fake {

com::Ptr<DIQAManager> makeLongTermData(Site& site);
com::Ptr<DIDataPointList> makeShortTermData(Site& site);

}  // namespace vtdn::fake

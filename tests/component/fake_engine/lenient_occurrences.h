// The lenient engine's occurrences.
#pragma once

#include <memory>
#include <string>

#include "com/ptr.h"
#include "fake_engine/lenient.h"

namespace vtdn::fake {

/// The occurrence text that a data point shares with its events.
using SharedText = std::shared_ptr<std::wstring>;

com::Ptr<DIOccurrenceEvent> makeEvent(Site& site, const SharedText& text);

struct OccurrenceQuery {
    DATE first;
    DATE last;
    bool downtimes;
    bool excursions;
    bool byTag;
    const VARIANT& pids;  ///< an object reference for all; a number or an array of numbers
};
/// Its filter is not looked at: everything counts.
com::Ptr<DICollection> listOccurrences(Site& site, const OccurrenceQuery& query);

}  // namespace vtdn::fake

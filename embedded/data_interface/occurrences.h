// Occurrences of a site, listed.
#pragma once

#include <VTDI.h>

#include <memory>

#include "data_interface/session.h"

namespace vtdn::embedded {

/// Which occurrences, as clients say it. Borrowed.
struct OccurrenceQuery {
    BSTR siteId;
    DATE first;
    DATE last;
    bool downtimes;
    bool excursions;
    LONG filter;
    bool byTag;
    const VARIANT& units_or_pids;  ///< see pid_list.h
};

/// The occurrences whose intervals begin from the first to the last time, both included, each made when it is
/// asked for. Null when there are none. Checked in this order: that the engine is set up (91), the site id
/// (5), the filter (6), the list (13), the dates (6), then what the store checks: the span (6) and the PIDs
/// of the list (9). What is refused is said as a message, too. Texts that are damaged are notes, and left
/// out.
///
/// The session is kept during the call: who hears a note may let go of all others that do.
com::Ptr<DICollection> occurrences(std::shared_ptr<Session> session, const OccurrenceQuery& query);

}  // namespace vtdn::embedded

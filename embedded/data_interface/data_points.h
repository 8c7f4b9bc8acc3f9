// What the two managers of data points have in common: they differ in the intervals that they keep.
#pragma once

#include <VTDI.h>

#include <memory>

#include "data_interface/session.h"

namespace vtdn::embedded {

enum class Term {
    longer,   ///< intervals of an hour and longer
    shorter,  ///< intervals below an hour
};

/// Which data points, as clients say it: those of a tag of a site at an interval. Borrowed.
struct DataPointKey {
    BSTR siteId;
    LONG tagId;
    BSTR interval;
};

/// The interval of a key whose site is the open one. Throws com::Error and store::Error (5 both).
store::Interval intervalOf(const store::Site& site, const DataPointKey& key);

// All check that the engine is set up (91), the site id (5), the interval text and, where there is a term,
// that it has this interval (5), then the dates (6) and what the store checks: the tag (9), whether its
// values are stored at this interval, and where the intervals begin (5). What they refuse is said as a
// message, too.

/// The data points whose intervals begin from `first` to `last`, both included, in the order of time, each
/// made when it is asked for. Null when there are none.
com::Ptr<DICollection> dataPoints(const std::shared_ptr<Session>& session, Term term, const DataPointKey& key,
                                  DATE first, DATE last);

/// The first interval that begins from one time to the other, both included, and has anything stored. Of
/// intervals of any length. Null when there is none.
com::Ptr<DIDataPoint> findDataPoint(Session& session, const DataPointKey& key, DATE from, DATE to);

/// Writes the extra value of the interval that begins at the time and nothing else; "" removes it. On the
/// disk with its edit, by the client application, when it returns. Error 5 for a text that cannot be kept.
bool updateExtraValue(Session& session, Term term, const DataPointKey& key, DATE timeStamp, BSTR xValueXml);

}  // namespace vtdn::embedded

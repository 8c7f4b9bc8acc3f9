// Data points of a tag: listed, made blank, their extra values written.
#pragma once

#include "binding/session.h"
#include "com/safe_array.h"
#include "occurrences/data_point.h"

namespace vtdn::occurrences {

/// Which data points: those of a tag at an interval, handed to the engine as they are. The text is borrowed.
struct Tag {
    LONG id;
    BSTR interval;
};

/// The data points from one time to another as objects, in the engine's order; no array before set-up and
/// where there are none.
com::SafeArray longTermDataPoints(const binding::Session& session, const Tag& tag, DATE first, DATE last);
com::SafeArray shortTermDataPoints(const binding::Session& session, const Tag& tag, DATE first, DATE last);

/// Needs no set-up.
com::Ptr<_DataPointBasicWrapper> blankDataPoint(DATE start);

/// Writes the extra value of a data point. False, with nothing asked, before set-up and without a data point;
/// error 13 for an object of another class.
bool updateLongTermXValue(const binding::Session& session, IUnknown* dataPoint, const Tag& tag);
bool updateShortTermXValue(const binding::Session& session, IUnknown* dataPoint, const Tag& tag);

}  // namespace vtdn::occurrences

// Data points that clients save: value, monitor code and occurrence in one step.
#pragma once

#include <VTDI.h>

#include <memory>

#include "data_interface/data_points.h"

namespace vtdn::embedded {

/// What a client saves of a data point. Borrowed.
struct SavedDataPoint {
    DATE timeStamp;
    const VARIANT& value;  ///< Null or Empty: stays as it is
    const VARIANT& code;   ///< Null or Empty: stays as it is
    bool mayCreate;        ///< whether the interval may be one that nothing is stored of
    BSTR occurrenceXml;    ///< "" removes what there is
    BSTR editSource;
    BSTR editUser;  ///< "" for the user of this computer
};

/// Stores it, with its edit, on the disk when it returns. An excursion without a limit gets its own (see
/// occurrence_limit.h). Checked in this order: that the engine is set up (91), the site id (5), the interval
/// text (5), the time (6), value and code (5, 6, 13), the texts and whether the occurrence is one (5), then
/// what the store checks: the tag (9, 70, 5), where the interval begins (5), and whether there is something
/// stored of it when nothing may be made (9). What is refused is said as a message, too, and changes nothing.
void saveDataPoint(const std::shared_ptr<Session>& session, const DataPointKey& key,
                   const SavedDataPoint& saved);

}  // namespace vtdn::embedded

// The engine's lists of names, its parameter cache and its alarm log.
#pragma once

#include "binding/session.h"

namespace vtdn::binding {

// All of these but writeAlarm need a wrapper that is set up: before that they fail with error 91.

void flushParameterCache(const Session& session);

/// Names by unit number: an array of 20 texts.
com::SafeArray unitNames(const Session& session);

/// What a unit has in electronic data reports, as the number of a special value of the unit's own parameter.
enum class ReportedAs : LONG { orisCode = -95, unitId = -97 };
/// One text for each of the 20 units; "" for one without a parameter of its own and for one that does not
/// report. Null as that special value is error 94.
com::SafeArray reportedUnits(const Session& session, ReportedAs what);

/// A list of names by code.
struct CodeNames {
    engine::HighestCode highest;
    engine::CodeName name;
    bool longNames;
};
inline constexpr CodeNames longMonitorCodes{&DIUtils::get_MaxMC, &DIUtils::MCName, true};
inline constexpr CodeNames shortMonitorCodes{&DIUtils::get_MaxMC, &DIUtils::MCName, false};
inline constexpr CodeNames longParameterCodes{&DIUtils::get_MaxPC, &DIUtils::PCName, true};
inline constexpr CodeNames shortParameterCodes{&DIUtils::get_MaxPC, &DIUtils::PCName, false};
/// The names from code 0 to the highest. A highest code below 0 is error 9.
com::SafeArray codeNames(const Session& session, const CodeNames& which);

/// Writes an alarm to the log of the DAHS. False, with nothing asked and no problem, before set-up and for a
/// severity outside 0 to 4.
bool writeAlarm(const Session& session, const engine::Alarm& alarm);

}  // namespace vtdn::binding

// Writes of a run of intervals in one request.
#pragma once

#include <string>

#include "binding/session.h"
#include "com/safe_array.h"
#include "params/run.h"

namespace vtdn::params {

inline constexpr binding::Code valuesUnknownPid = binding::code(38);
inline constexpr binding::Code valuesNotDatabase = binding::code(39);
inline constexpr binding::Code valuesSizes = binding::code(40);
inline constexpr binding::Code valuesCount = binding::code(41);

/// Writes the values (separated by tabs, an empty one is Null) and monitor codes of a run as the flags say: 1
/// value, 2 monitor code, 3 both, any other number nothing. The arrays hold 32-bit numbers from index 0, one
/// for each value. Numbers are written as singles, other texts as they stand.
///
/// The result is the engine's own. False, and one problem, when the PID, the I/O type, the sizes or the count
/// fails its check, in this order. An array without dimensions is error 9, a number beyond a single error 6.
bool writeValues(binding::Session& session, const Run& run, std::wstring values, SAFEARRAY* mcs,
                 SAFEARRAY* flags);

}  // namespace vtdn::params

// The engine's numbered facts (special values) and functions of a parameter, in a client's types.
//
// Before set-up the result is the default one. An unknown PID is a problem; so is every failure from fetching
// the parameter on, with the error's number and description. The two checks in front are not trapped.
#pragma once

#include "binding/session.h"

namespace vtdn::params {

/// Operating time over a span, as a whole number; 0 when the engine's answer is no number.
LONG callOperatingTime(binding::Session& session, std::int32_t pid, DATE start, DATE end);

/// 0 for a value that is no number or does not fit.
LONG specialValueAsLong(binding::Session& session, std::int32_t pid, LONG id);
bool specialValueAsBool(binding::Session& session, std::int32_t pid, LONG id);
/// "" for a value that cannot be text.
com::Bstr specialValueAsText(binding::Session& session, std::int32_t pid, LONG id);

// The client's array of arguments, which may be none, reaches the engine whole: as the one element of the
// array of arguments that it is called with.

bool specialFunctionAsBool(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs);
LONG specialFunctionAsLong(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs);
/// Converted to a single and then rounded, halves to even.
LONG specialFunctionAsRoundedSingle(binding::Session& session, std::int32_t pid, LONG id,
                                    SAFEARRAY* moreArgs);
/// "" for a result that cannot be text.
com::Bstr specialFunctionAsText(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs);

}  // namespace vtdn::params

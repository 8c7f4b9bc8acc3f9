// The texts of refused occurrence operations.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "binding/problem_texts.h"

namespace vtdn::occurrences {

/// The I/O type of occurrence parameters.
inline constexpr std::int32_t occurrenceIo = 31;

inline constexpr binding::Code unknownPid = binding::code(65);

/// PID 1-234-5-67-89 is not an occurrence parameter (WDN-0060)
std::wstring notAnOccurrenceParameter(std::int32_t pid);
/// Unknown occurrence type specified for PID 1-234-5-67-89 (WDN-0061)
std::wstring unknownType(std::int32_t tagPid);
/// Error in retrieving occurrence data for PID 1-234-5-67-89 (WDN-0062): no answer.
std::wstring notReadBack(std::int32_t tagPid);
/// The same (WDN-0063): none, or more than one.
std::wstring notOneReadBack(std::int32_t tagPid);
/// Unable to update occurrence data for PID 1-234-5-67-89 (WDN-0064)
std::wstring notSaved(std::int32_t tagPid);
/// Error in creating/retrieving occurrence data points.  13 Type mismatch: without a code.
std::wstring trapped(std::int32_t number, std::wstring_view description);

}  // namespace vtdn::occurrences

// The texts of refused calls. Each ends in a code that is unique to the place that refuses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vtdn::binding {

/// The number of a problem code.
enum class Code : std::uint8_t {};

constexpr Code code(std::uint8_t number) noexcept {
    return Code{number};
}

// Codes have three digits, from 49 on four.
//
// PIDs are shown in their display form; an ill-formed one shows as nothing between its two blanks.

/// A PID between two texts, and the code.
std::wstring aboutPid(std::wstring_view before, std::int32_t pid, std::wstring_view after, Code code);

/// PID 1-234-5-67-89 does not exist (WDN-nnn)
std::wstring doesNotExist(std::int32_t pid, Code code);
/// PID 1-234-5-67-89 time-type is wrong (WDN-nnn)
std::wstring wrongTimeType(std::int32_t pid, Code code);
/// 1-234-5-67-89 is not a DBDataIO parameter (WDN-nnn): without "PID " in front.
std::wstring notDatabaseIo(std::int32_t pid, Code code);
/// '99' is not a known monitor code (WDN-nnn)
std::wstring unknownMonitorCode(std::int32_t mc, Code code);
/// Array sizes are different. Can't write values/MCs to 1-234-5-67-89 (WDN-nnn)
std::wstring differentSizes(std::int32_t pid, Code code);
/// Count does not match array size. Can't write values/MCs to 1-234-5-67-89 (WDN-nnn)
std::wstring countMismatch(std::int32_t pid, Code code);
/// 13, Type mismatch (WDN-nnn)
std::wstring trappedError(std::int32_t number, std::wstring_view description, Code code);

}  // namespace vtdn::binding

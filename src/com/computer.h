// The computer that the program runs on: its clock and its user.
#pragma once

#include <cstdint>
#include <string>

namespace vtdn::com {

/// Now in local standard time, whole seconds since 30 December 1899 00:00: daylight saving time is not added.
std::int64_t standardTimeNow() noexcept;

/// The name of the user that this thread acts for, as the operating system has it: without a domain. Throws
/// the system's error when it has none.
std::wstring userName();

}  // namespace vtdn::com

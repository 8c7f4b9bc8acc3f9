// Parameter ids (PIDs): composition, validation, display and parsing.
//
// PID = A*100000000 + B*100000 + C*10000 + D*100 + E, with A the unit (0 to 19), B 0 to 999, C the time-type
// digit (0 to 9), D and E 0 to 99. A PID is well formed from 100000 to 1999999999 with C one of 0, 1, 2, 3,
// 4, 5, 7, 8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vtdn::common {

/// A field of a PID by its part number: 1 = A, 2 = B, 3 = E, 4 = D, 5 = C; -5 is C with 7 shown as 8. Any
/// other part gives 0.
std::int32_t pidField(std::int32_t pid, std::int32_t part) noexcept;

/// The PID of five fields; 0 when a field is out of its range or the PID would not be well formed.
std::int32_t makePid(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d, std::int32_t e) noexcept;

/// The PID with B = 1 and nothing else of a unit, which is given by its number (up to 19) or by any PID of
/// it.
std::int32_t unitPid(std::int32_t unitOrPid) noexcept;

bool isValidPid(std::int32_t pid) noexcept;
/// A real number is rounded half to even first; one beyond 32 bits is no PID.
bool isValidPid(double pid) noexcept;
/// A text is a PID when it parses as one.
bool isValidPid(std::wstring_view text) noexcept;

/// Display form "#0-000-0-00-00", for example 1-234-5-67-89; "" for a PID that is not well formed.
std::wstring formatPid(std::int32_t pid);
/// The display form behind a text.
void appendPid(std::wstring& text, std::int32_t pid);
/// List form "#000000000": at least nine digits, zero-padded; "" for a PID that is not well formed, except
/// that the end of the range, 1999999999, is listed.
std::wstring formatPid9(std::int32_t pid);

/// Reads a PID from the right, skipping separators between its fields. `bracketed` takes it from "[...]" at
/// the start of the text, where "[@...]" refers to no PID. 0 when there is none.
std::int32_t parsePidText(std::wstring_view text, bool bracketed) noexcept;

/// Takes up to `maximum` digits off the end of the text, with the other characters behind them and the one
/// that ends them early. -1 when there is no digit or the number exceeds 32 bits.
std::int32_t takeTrailingDigits(std::wstring_view& text, std::int32_t maximum) noexcept;

}  // namespace vtdn::common

// UTF-8: checking what comes in, and measuring what goes out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vtdn::client {

/// Index of the first byte that is not part of well-formed UTF-8 (overlong forms and surrogates included), or
/// npos.
std::size_t invalidUtf8(std::string_view text);

/// Takes one character off the front of a text that is not empty; a malformed byte counts as U+FFFD.
char32_t takeCharacter(std::string_view& text);

/// Number of characters; a malformed byte counts as one.
std::size_t characterCount(std::string_view text);

/// Columns that a text takes in a terminal: none for combining marks, two for wide East Asian characters.
std::size_t displayWidth(std::string_view text);

/// The text with everything that would move the cursor (control characters) as a space, for tables.
std::string oneLine(std::string_view text);

}  // namespace vtdn::client

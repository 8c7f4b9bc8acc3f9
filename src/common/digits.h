// Whole numbers in plain decimal, without the C library's formatting, which asks for a locale and for memory.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>

namespace vtdn::common {

/// Appends a number, with zeros in front of its digits up to a width.
inline void appendNumber(std::wstring& text, std::int32_t number, std::size_t width = 1) {
    wchar_t digits[10];
    wchar_t* first = std::end(digits);
    std::uint32_t rest =
        number < 0 ? 0U - static_cast<std::uint32_t>(number) : static_cast<std::uint32_t>(number);
    do {
        *--first = static_cast<wchar_t>(L'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    const auto length = static_cast<std::size_t>(std::end(digits) - first);
    if (number < 0) text += L'-';
    if (length < width) text.append(width - length, L'0');
    text.append(first, length);
}

}  // namespace vtdn::common

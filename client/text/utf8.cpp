#include "client/text/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace vtdn::client {

namespace {

constexpr char32_t replacement = 0xFFFD;

unsigned byteAt(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

/// Length and value of the character at the front; length 0 when it is malformed.
struct Decoded {
    std::size_t length;
    char32_t character;
};

Decoded decode(std::string_view text) {
    const unsigned first = byteAt(text, 0);
    if (first < 0x80) return {1, first};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return {0, replacement};
    char32_t character = first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0) != 0x80) return {0, replacement};
        character = character << 6 | (byteAt(text, i) & 0x3F);
    }
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < least[length] || character > 0x10FFFF || surrogate) return {0, replacement};
    return {length, character};
}

/// Whether the eight bytes hold ASCII only.
bool isAscii8(const char* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return (word & 0x8080808080808080u) == 0;
}

struct Range {
    char32_t first;
    char32_t last;
};

// The blocks that matter in names and units; a terminal decides about the rest.
constexpr std::array<Range, 6> noColumns{{{0x300, 0x36F},
                                          {0x1AB0, 0x1AFF},
                                          {0x1DC0, 0x1DFF},
                                          {0x200B, 0x200F},
                                          {0x20D0, 0x20FF},
                                          {0xFE00, 0xFE0F}}};
constexpr std::array<Range, 8> twoColumns{{{0x1100, 0x115F},
                                           {0x2E80, 0xA4CF},
                                           {0xAC00, 0xD7A3},
                                           {0xF900, 0xFAFF},
                                           {0xFE30, 0xFE6F},
                                           {0xFF00, 0xFF60},
                                           {0x1F300, 0x1FAFF},
                                           {0x20000, 0x3FFFD}}};

template <std::size_t n>
bool contains(const std::array<Range, n>& ranges, char32_t c) {
    return std::any_of(ranges.begin(), ranges.end(), [c](Range r) { return c >= r.first && c <= r.last; });
}

}  // namespace

std::size_t invalidUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (text.size() - i >= 8 && isAscii8(text.data() + i)) {
            i += 8;
            continue;
        }
        const std::size_t length = decode(text.substr(i)).length;
        if (length == 0) return i;
        i += length;
    }
    return std::string_view::npos;
}

char32_t takeCharacter(std::string_view& text) {
    const Decoded decoded = decode(text);
    text.remove_prefix(std::max<std::size_t>(decoded.length, 1));
    return decoded.character;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count) takeCharacter(text);
    return count;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const char32_t c = takeCharacter(text);
        if (c >= 0x300)
            width += contains(noColumns, c) ? 0 : contains(twoColumns, c) ? 2 : 1;
        else
            ++width;
    }
    return width;
}

std::string oneLine(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    return result;
}

}  // namespace vtdn::client

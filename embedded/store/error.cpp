#include "store/error.h"

namespace vtdn::store {

std::string quote(std::string_view text) {
    constexpr std::size_t longest = 80;
    constexpr char digits[] = "0123456789abcdef";
    std::string result = "\"";
    for (const char c : text.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            result += "\\x";
            result += digits[byte >> 4];
            result += digits[byte & 15];
        } else {
            result += c;
        }
    }
    if (text.size() > longest) {
        // Do not cut a UTF-8 sequence in two.
        while (!result.empty() && (static_cast<unsigned char>(result.back()) & 0xC0) == 0x80)
            result.pop_back();
        if (!result.empty() && static_cast<unsigned char>(result.back()) >= 0xC0) result.pop_back();
        result += "...";
    }
    return result + "\"";
}

}  // namespace vtdn::store

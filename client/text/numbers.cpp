#include "client/text/numbers.h"

#include <charconv>

namespace vtdn::client {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    const std::string_view unsignedText = text.starts_with('-') ? text.substr(1) : text;
    // Keeps out the words for infinity and NaN, and a point alone.
    if (unsignedText.empty() || !(isDigit(unsignedText[0]) || unsignedText[0] == '.')) return std::nullopt;
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<std::int32_t> parseInteger(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && isDigit(text[1])) text.remove_prefix(1);
    std::int32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string counted(std::size_t number, std::string_view thing) {
    return std::to_string(number) + " " + std::string(thing) + (number == 1 ? "" : "s");
}

}  // namespace vtdn::client

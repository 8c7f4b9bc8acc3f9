#include "common/lists.h"

#include <algorithm>

namespace vtdn::common {

std::vector<std::wstring_view> split(std::wstring_view text, std::wstring_view separator) {
    std::vector<std::wstring_view> pieces;
    if (text.empty()) return pieces;
    while (!separator.empty()) {
        const auto end = text.find(separator);
        if (end == std::wstring_view::npos) break;
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end + separator.size());
    }
    pieces.push_back(text);
    return pieces;
}

std::optional<std::vector<std::int32_t>> splitToLongs(std::wstring_view text, std::wstring_view separator,
                                                      ReadLong read) {
    const auto pieces = split(text, separator);
    if (pieces.empty()) return std::nullopt;
    std::vector<std::int32_t> numbers(pieces.size(), 0);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        std::int32_t number = 0;
        const Reading reading = read(pieces[i], number);
        if (reading == Reading::outOfRange) return std::nullopt;
        if (reading == Reading::number) numbers[i] = number;
    }
    return numbers;
}

// Texts that compare equal by code are the same text, so the order of the result does not depend on the
// algorithm.
void sortStrings(std::vector<std::wstring>& texts) {
    std::sort(texts.begin(), texts.end());
}

bool sameByCode(std::wstring_view a, std::wstring_view b) noexcept {
    return a == b;
}

std::int32_t removeDuplicateStrings(std::vector<std::wstring>& texts, SameText same) {
    sortStrings(texts);
    std::int32_t duplicates = 0;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (kept > 0 && same(texts[i], texts[kept - 1])) {
            if (!texts[i].empty()) ++duplicates;
        } else {
            if (kept != i) texts[kept] = std::move(texts[i]);
            ++kept;
        }
    }
    texts.resize(kept);
    return duplicates;
}

std::wstring sortUniqueDelimited(std::wstring_view text, std::wstring_view separator) {
    std::vector<std::wstring> pieces;
    for (const auto piece : split(text, separator)) pieces.emplace_back(piece);
    removeDuplicateStrings(pieces);
    std::wstring joined;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) joined += separator;
        joined += pieces[i];
    }
    return joined;
}

}  // namespace vtdn::common

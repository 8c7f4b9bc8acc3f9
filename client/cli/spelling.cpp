#include "client/cli/spelling.h"

#include <algorithm>
#include <string>
#include <vector>

namespace vtdn::client {

int editDistance(std::string_view from, std::string_view to) {
    // Three rows of the table of prefix distances: two back (for swaps), one back, and the one being filled.
    std::vector<int> before(to.size() + 1), last(to.size() + 1), row(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) last[j] = static_cast<int>(j);
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const int change = from[i - 1] == to[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[to.size()];
}

namespace {

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    return result;
}

}  // namespace

std::string_view nearestSpelling(std::string_view typed, std::span<const std::string_view> known) {
    const std::string word = lower(typed);
    // Long words are no slips of the finger, and the table would grow with their square.
    if (word.empty() || word.size() > 64) return {};
    std::string_view best;
    int bestDistance = 1 + static_cast<int>(word.size()) / 3;
    std::string_view beginning;
    int beginnings = 0;
    for (const std::string_view candidate : known) {
        const int distance = editDistance(word, lower(candidate));
        if (distance <= bestDistance && (best.empty() || distance < bestDistance)) {
            best = candidate;
            bestDistance = distance;
        }
        if (lower(candidate).starts_with(word)) {
            beginning = candidate;
            ++beginnings;
        }
    }
    return beginnings == 1 ? beginning : best;
}

}  // namespace vtdn::client

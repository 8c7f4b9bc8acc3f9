// The nearest spelling of a word that nobody knows.
#pragma once

#include <span>
#include <string_view>

namespace vtdn::client {

/// Number of letters to insert, drop, replace or swap with a neighbour to get from one word to the other.
int editDistance(std::string_view from, std::string_view to);

/// The word that was most likely meant, or an empty one when none is near: at most a third of the letters
/// differ, or the typed word is the beginning of exactly one. Case does not count.
std::string_view nearestSpelling(std::string_view typed, std::span<const std::string_view> known);

}  // namespace vtdn::client

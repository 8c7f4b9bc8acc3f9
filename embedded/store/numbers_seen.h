// The numbers of a table whose rows are numbered by the one who gives them.
#pragma once

#include <cstdint>
#include <set>
#include <string_view>

namespace vtdn::store {

/// Refuses (outOfRange) a number outside 0 to highest, and one that was there before.
class NumbersSeen {
  public:
    /// What is numbered, "monitor code", for the sentence.
    NumbersSeen(std::string_view what, std::int32_t highest) : what_(what), highest_(highest) {}

    void add(std::int32_t number);
    [[nodiscard]] bool contains(std::int32_t number) const { return seen_.contains(number); }

  private:
    std::string_view what_;
    std::int32_t highest_;
    std::set<std::int32_t> seen_;
};

}  // namespace vtdn::store

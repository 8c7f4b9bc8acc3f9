// What is fuzzed: readers of texts and bytes that come from outside. A target runs a reader on any input and
// checks what must hold for whatever it accepts; a reader that refuses does so with its own exception and
// nothing else.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace vtdn::store::fuzz {

struct Target {
    const char* name;
    /// Returns whether the input was accepted. Ends the program when something does not hold.
    bool (*run)(std::string_view input);
    /// Inputs to begin with, most of them accepted.
    std::vector<std::string_view> seeds;
    /// Pieces to put in.
    std::vector<std::string_view> pieces;
};

[[nodiscard]] const std::vector<Target>& targets();

}  // namespace vtdn::store::fuzz

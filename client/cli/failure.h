// How a command ends: exit codes, and the one exception that carries a sentence for the user to the top.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace vtdn::client {

/// What the program hands back to whoever started it. Documented in docs/vtdn.md; the numbers never change.
enum class ExitCode {
    done = 0,
    refused = 1,      ///< the operation was refused: by the component, or because a file breaks a rule
    usage = 2,        ///< the command line was not understood; nothing was done
    environment = 3,  ///< something that has to be there is not: the component, an engine, a site, a file
    internal = 4,     ///< a failure that nobody foresaw
};

/// Ends a command with a sentence that says what is wrong and, in `next`, one that says what to do about it.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& sentence, std::string next = {})
        : std::runtime_error(sentence), code_(code), next_(std::move(next)) {}
    [[nodiscard]] ExitCode code() const { return code_; }
    [[nodiscard]] const std::string& next() const { return next_; }

  private:
    ExitCode code_;
    std::string next_;
};

}  // namespace vtdn::client

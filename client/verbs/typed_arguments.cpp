#include "client/verbs/typed_arguments.h"

#include <algorithm>

#include "client/cli/spelling.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "store/pid_text.h"

namespace vtdn::client {

std::int32_t pidArgument(const std::string& text) {
    if (const store::Pid pid = store::parsePid(text)) return pid;
    throw Failure(ExitCode::usage, "\"" + text + "\" is no PID.",
                  "PIDs look like 5-040-3-00-00 or 504030000, with 0 to 5, 7 or 8 in the middle. `vtdn "
                  "params list` shows "
                  "those of a DAHS.");
}

std::int32_t integerArgument(std::string_view option, const std::string& text, std::int32_t least,
                             std::int32_t most) {
    const auto number = parseInteger(text);
    if (number && *number >= least && *number <= most) return *number;
    throw Failure(
        ExitCode::usage, "\"" + text + "\" is not what " + std::string(option) + " takes.",
        "It takes a whole number from " + std::to_string(least) + " to " + std::to_string(most) + ".");
}

std::size_t choiceArgument(const Arguments& arguments, std::string_view option,
                           std::span<const std::string_view> words, std::size_t otherwise) {
    const auto text = arguments.value(option);
    if (!text) return otherwise;
    const auto found = std::find(words.begin(), words.end(), *text);
    if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
    std::string all;
    for (const std::string_view word : words) all += (all.empty() ? "" : ", ") + std::string(word);
    const std::string_view near = nearestSpelling(*text, words);
    throw Failure(ExitCode::usage, "\"" + *text + "\" is not what " + std::string(option) + " takes.",
                  (near.empty() ? "" : "Did you mean \"" + std::string(near) + "\"? ") + "It takes one of " +
                      all + ".");
}

FunctionArgument functionArgument(std::string_view text) {
    constexpr std::string_view textMark = "text:";
    if (text.starts_with(textMark)) return std::string(text.substr(textMark.size()));
    if (const auto time = parseTime(text)) return TimeValue{*time};
    if (const auto integer = parseInteger(text)) return *integer;
    if (const auto number = parseNumber(text)) return *number;
    if (text == "true") return true;
    if (text == "false") return false;
    return std::string(text);
}

}  // namespace vtdn::client

// The command line as tables: what verbs there are, what each takes, how they are explained and how they are
// read.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/cli/failure.h"

namespace vtdn::client {

struct OptionSpec {
    std::string_view name;     ///< "--from"
    std::string_view value;    ///< what follows it, "TIME"; empty for a switch
    std::string_view help;     ///< sentences
    std::string_view example;  ///< as it would be typed, "--from \"2007-01-15 13:00\""
};

struct OperandSpec {
    std::string_view name;  ///< "PID"
    std::string_view help;
    bool required = true;
    bool many = false;  ///< one or more; the last operand only
};

struct Example {
    std::string_view command;
    std::string_view what;
};

struct VerbSpec {
    std::string_view name;  ///< one word, or two for a verb of a group: "site import"
    std::string_view summary;
    std::vector<OperandSpec> operands;
    std::vector<OptionSpec> options;
    std::vector<std::string_view> notes;  ///< paragraphs
    std::vector<Example> examples;
};

/// What stood behind the verb. Options are asked for by their full name, "--from".
class Arguments {
  public:
    [[nodiscard]] bool has(std::string_view option) const { return options_.contains(option); }
    /// The value of an option that was given.
    [[nodiscard]] std::optional<std::string> value(std::string_view option) const;
    [[nodiscard]] const std::vector<std::string>& operands() const { return operands_; }

    void addOperand(std::string text) { operands_.push_back(std::move(text)); }
    /// False when the option was given before.
    bool addOption(std::string_view name, std::string value);

  private:
    std::map<std::string, std::string, std::less<>> options_;
    std::vector<std::string> operands_;
};

/// A command line, understood.
struct Command {
    enum class Kind { nothing, run, help, groupHelp, overview, version };
    Kind kind = Kind::nothing;
    const VerbSpec* verb = nullptr;  ///< for run and help
    std::string_view group;          ///< for groupHelp
    Arguments arguments;
};

/// Reads what stood behind the program's name. Every verb takes --help. Options come in any place behind the
/// verb, with their value as the next word or behind "="; "--" ends them. Throws Failure (usage), with the
/// nearest spelling.
Command parseCommand(std::span<const VerbSpec> verbs, std::span<const std::string> words);

/// Two options that do not go together: throws Failure (usage) when more than one of them was given.
void refuseTogether(const Arguments& arguments, std::span<const std::string_view> options);

/// Help for people, `width` columns wide.
std::string overviewText(std::span<const VerbSpec> verbs, std::size_t width = 100);
std::string groupText(std::span<const VerbSpec> verbs, std::string_view group, std::size_t width = 100);
std::string helpText(const VerbSpec& verb, std::size_t width = 100);

}  // namespace vtdn::client

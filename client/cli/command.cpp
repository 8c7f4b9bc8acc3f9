#include "client/cli/command.h"

#include <algorithm>

#include "client/cli/spelling.h"

namespace vtdn::client {

std::optional<std::string> Arguments::value(std::string_view option) const {
    const auto found = options_.find(option);
    if (found == options_.end()) return std::nullopt;
    return found->second;
}

bool Arguments::addOption(std::string_view name, std::string value) {
    return options_.emplace(std::string(name), std::move(value)).second;
}

namespace {

Failure usage(const std::string& sentence, const std::string& next) {
    return Failure(ExitCode::usage, sentence, next);
}

std::string helpHint(const VerbSpec& verb) {
    return "`vtdn " + std::string(verb.name) + " --help` explains it.";
}

/// "Did you mean ...? " when something is near, then where to look.
std::string meantHint(std::string_view typed, std::span<const std::string_view> known,
                      const std::string& look) {
    const std::string_view near = nearestSpelling(typed, known);
    return near.empty() ? look : "Did you mean \"" + std::string(near) + "\"? " + look;
}

std::string_view groupOf(std::string_view name) {
    const auto blank = name.find(' ');
    return blank == std::string_view::npos ? std::string_view() : name.substr(0, blank);
}

bool isHelp(std::string_view word) {
    return word == "--help" || word == "-h" || word == "/?";
}

void addUnique(std::vector<std::string_view>& list, std::string_view word) {
    if (!word.empty() && std::find(list.begin(), list.end(), word) == list.end()) list.push_back(word);
}

/// Which verb the words begin with, and how many words its name takes. No verb when a group is asked for as a
/// whole.
struct Found {
    const VerbSpec* verb = nullptr;
    std::string_view group;
    std::size_t words = 0;
};

Found findVerb(std::span<const VerbSpec> verbs, std::span<const std::string> words) {
    std::vector<std::string_view> firstWords;
    std::vector<std::string_view> secondWords;
    std::string_view group;
    for (const VerbSpec& verb : verbs) {
        const std::string_view of = groupOf(verb.name);
        if (of.empty() && verb.name == words[0]) return {&verb, {}, 1};
        addUnique(firstWords, of.empty() ? verb.name : of);
        if (of.empty() || of != words[0]) continue;
        group = of;
        const std::string_view second = verb.name.substr(of.size() + 1);
        if (words.size() > 1 && second == words[1]) return {&verb, of, 2};
        addUnique(secondWords, second);
    }
    if (group.empty())
        throw usage("\"" + words[0] + "\" is not something vtdn does.",
                    meantHint(words[0], firstWords, "`vtdn --help` lists what it does."));
    if (words.size() == 1 || isHelp(words[1])) return {nullptr, group, 1};
    throw usage(
        "\"" + std::string(group) + " " + words[1] + "\" is not something vtdn does.",
        meantHint(words[1], secondWords, "`vtdn " + std::string(group) + " --help` lists what it does."));
}

const OptionSpec& findOption(const VerbSpec& verb, std::string_view name) {
    std::vector<std::string_view> known{"--help"};
    for (const OptionSpec& option : verb.options) {
        if (option.name == name) return option;
        known.push_back(option.name);
    }
    throw usage("`vtdn " + std::string(verb.name) + "` has no option " + std::string(name) + ".",
                meantHint(name, known, helpHint(verb)));
}

bool looksLikeOption(std::string_view word) {
    // A negative number is an operand.
    return word.size() > 1 && word[0] == '-' && !(word[1] >= '0' && word[1] <= '9') && word[1] != '.';
}

void checkOperandCount(const VerbSpec& verb, const Arguments& arguments) {
    std::size_t given = arguments.operands().size();
    for (const OperandSpec& operand : verb.operands) {
        if (given == 0) {
            if (!operand.required) return;
            throw usage("`vtdn " + std::string(verb.name) + "` needs " + std::string(operand.name) + ": " +
                            std::string(operand.help),
                        helpHint(verb));
        }
        given = operand.many ? 0 : given - 1;
    }
    if (given == 0) return;
    const std::string& extra = arguments.operands()[arguments.operands().size() - given];
    throw usage("`vtdn " + std::string(verb.name) + "` does not know what to do with \"" + extra + "\".",
                "A text with blanks goes between quotation marks. " + helpHint(verb));
}

}  // namespace

Command parseCommand(std::span<const VerbSpec> verbs, std::span<const std::string> words) {
    if (words.empty()) return {};
    if (words[0] == "--version") return Command{Command::Kind::version, nullptr, {}, {}};
    if (isHelp(words[0]) || words[0] == "help") {
        words = words.subspan(1);
        if (words.empty()) return Command{Command::Kind::overview, nullptr, {}, {}};
        const Found found = findVerb(verbs, words);
        return Command{
            found.verb ? Command::Kind::help : Command::Kind::groupHelp, found.verb, found.group, {}};
    }
    if (looksLikeOption(words[0]))
        throw usage(
            "vtdn has no option " + words[0] + " of its own.",
            "Options stand behind the verb: `vtdn read --help`, for example. `vtdn --help` lists the verbs.");

    const Found found = findVerb(verbs, words);
    if (!found.verb) return Command{Command::Kind::groupHelp, nullptr, found.group, {}};
    const VerbSpec& verb = *found.verb;
    Command command{Command::Kind::run, &verb, found.group, {}};

    bool optionsEnded = false;
    for (std::size_t i = found.words; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!optionsEnded && word == "--") {
            optionsEnded = true;
            continue;
        }
        if (optionsEnded || !looksLikeOption(word)) {
            command.arguments.addOperand(word);
            continue;
        }
        if (isHelp(word)) return Command{Command::Kind::help, &verb, {}, {}};
        const auto equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const OptionSpec& option = findOption(verb, name);
        std::string value;
        if (option.value.empty()) {
            if (equals != std::string::npos)
                throw usage(name + " is a switch and takes no value.", helpHint(verb));
        } else if (equals != std::string::npos) {
            value = word.substr(equals + 1);
        } else if (i + 1 < words.size() && !words[i + 1].starts_with("--")) {
            value = words[++i];
        } else {
            throw usage(name + " needs a value behind it, for example `" + std::string(option.example) + "`.",
                        helpHint(verb));
        }
        if (!command.arguments.addOption(option.name, std::move(value)))
            throw usage(name + " was given twice.", "Give it once. " + helpHint(verb));
    }
    checkOperandCount(verb, command.arguments);
    return command;
}

void refuseTogether(const Arguments& arguments, std::span<const std::string_view> options) {
    std::string_view first;
    for (const std::string_view option : options) {
        if (!arguments.has(option)) continue;
        if (!first.empty())
            throw usage(std::string(first) + " and " + std::string(option) + " do not go together.",
                        "Leave one of them away.");
        first = option;
    }
}

}  // namespace vtdn::client

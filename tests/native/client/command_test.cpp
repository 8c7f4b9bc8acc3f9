#include "client/cli/command.h"

#include <gtest/gtest.h>

#include <set>

#include "client/cli/spelling.h"
#include "client/text/utf8.h"
#include "client/verbs/table.h"

namespace vtdn::client {
namespace {

Command parse(std::vector<std::string> words) {
    return parseCommand(verbTable(), words);
}

/// The failure of a command line, which has to fail.
Failure failureOf(std::vector<std::string> words) {
    try {
        parse(std::move(words));
    } catch (const Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "was accepted";
    return {ExitCode::done, ""};
}

TEST(Command, AVerbOfAGroupHasTwoWords) {
    const Command command = parse({"site", "import", "some folder"});
    EXPECT_EQ(command.kind, Command::Kind::run);
    EXPECT_EQ(command.verb->name, "site import");
    EXPECT_EQ(command.arguments.operands(), std::vector<std::string>{"some folder"});
}

TEST(Command, OptionsTakeTheirValueAsTheNextWordOrBehindAnEqualsSign) {
    const Command command = parse({"read", "--from", "2007-01-15", "5-040-3-00-00", "--count=24", "--csv"});
    EXPECT_EQ(command.arguments.value("--from"), "2007-01-15");
    EXPECT_EQ(command.arguments.value("--count"), "24");
    EXPECT_TRUE(command.arguments.has("--csv"));
    EXPECT_FALSE(command.arguments.has("--json"));
    EXPECT_EQ(command.arguments.operands(), std::vector<std::string>{"5-040-3-00-00"});
}

TEST(Command, ANegativeNumberIsNoOption) {
    const Command command = parse({"write", "5-040-3-00-00", "2007-01-15", "--value", "-12.5"});
    EXPECT_EQ(command.arguments.value("--value"), "-12.5");
    EXPECT_EQ(parse({"params", "special", "5-040-3-00-00", "-22"}).arguments.operands()[1], "-22");
    EXPECT_EQ(parse({"params", "list", "-.5"}).arguments.operands(), std::vector<std::string>{"-.5"});
}

TEST(Command, OneHyphenIsAValue) {
    EXPECT_EQ(parse({"write", "5-040-3-00-00", "--file", "-"}).arguments.value("--file"), "-");
}

TEST(Command, TwoHyphensEndTheOptions) {
    EXPECT_EQ(parse({"params", "list", "--", "--csv"}).arguments.operands(),
              std::vector<std::string>{"--csv"});
}

TEST(Command, HelpIsFoundEverywhere) {
    EXPECT_EQ(parse({"--help"}).kind, Command::Kind::overview);
    EXPECT_EQ(parse({"help"}).kind, Command::Kind::overview);
    EXPECT_EQ(parse({"site"}).kind, Command::Kind::groupHelp);
    EXPECT_EQ(parse({"site", "--help"}).kind, Command::Kind::groupHelp);
    EXPECT_EQ(parse({"help", "site"}).kind, Command::Kind::groupHelp);
    EXPECT_EQ(parse({"read", "--help"}).verb->name, "read");
    EXPECT_EQ(parse({"read", "x", "--csv", "-h"}).kind, Command::Kind::help);
    EXPECT_EQ(parse({"help", "site", "remove"}).verb->name, "site remove");
    EXPECT_EQ(parse({}).kind, Command::Kind::nothing);
    EXPECT_EQ(parse({"--version"}).kind, Command::Kind::version);
}

TEST(Command, AnUnknownVerbIsAnsweredWithTheNearestOne) {
    const Failure failure = failureOf({"raed", "5-040-3-00-00"});
    EXPECT_EQ(failure.code(), ExitCode::usage);
    EXPECT_STREQ(failure.what(), "\"raed\" is not something vtdn does.");
    EXPECT_NE(failure.next().find("Did you mean \"read\"?"), std::string::npos) << failure.next();
    EXPECT_NE(failureOf({"site", "imprt"}).next().find("\"import\""), std::string::npos);
    EXPECT_EQ(failureOf({"xylophone"}).next().find("Did you mean"), std::string::npos);
}

TEST(Command, AnUnknownOptionIsAnsweredWithTheNearestOne) {
    EXPECT_NE(failureOf({"read", "x", "--form", "y"}).next().find("\"--from\""), std::string::npos);
    EXPECT_NE(failureOf({"read", "x", "--inter", "y"}).next().find("\"--interval\""), std::string::npos);
    EXPECT_STREQ(failureOf({"doctor", "--dahs", "1"}).what(), "`vtdn doctor` has no option --dahs.");
    EXPECT_STREQ(failureOf({"--csv"}).what(), "vtdn has no option --csv of its own.");
}

TEST(Command, WhatIsMissingOrTooMuchIsNamed) {
    EXPECT_NE(std::string(failureOf({"read"}).what()).find("needs PID"), std::string::npos);
    EXPECT_NE(std::string(failureOf({"params", "special", "5-040-3-00-00"}).what()).find("needs ID"),
              std::string::npos);
    EXPECT_NE(
        std::string(failureOf({"params", "optime", "5-040-3-00-00", "2007-01-15"}).what()).find("needs TO"),
        std::string::npos);
    EXPECT_NE(
        std::string(failureOf({"write", "5-040-3-00-00", "2007-01-15", "13:00"}).what()).find("\"13:00\""),
        std::string::npos);
    EXPECT_NE(std::string(failureOf({"read", "x", "--from"}).what()).find("--from needs a value"),
              std::string::npos);
    EXPECT_NE(std::string(failureOf({"read", "x", "--from", "--csv"}).what()).find("--from needs a value"),
              std::string::npos);
    EXPECT_NE(std::string(failureOf({"read", "x", "--csv=yes"}).what()).find("switch"), std::string::npos);
    EXPECT_NE(std::string(failureOf({"read", "x", "--csv", "--csv"}).what()).find("twice"),
              std::string::npos);
}

TEST(Help, EveryOptionHasAnExplanationAndAnExample) {
    for (const VerbSpec& verb : verbTable()) {
        EXPECT_FALSE(verb.examples.empty()) << verb.name;
        std::set<std::string_view> names;
        for (const OptionSpec& option : verb.options) {
            EXPECT_TRUE(names.insert(option.name).second) << verb.name << " " << option.name;
            EXPECT_TRUE(option.name.starts_with("--")) << verb.name << " " << option.name;
            EXPECT_TRUE(option.help.ends_with('.') || option.help.ends_with(")."))
                << verb.name << " " << option.name;
            EXPECT_NE(option.example.find(option.name), std::string_view::npos)
                << verb.name << " " << option.name;
            EXPECT_NE(helpText(verb).find(option.name), std::string::npos) << verb.name << " " << option.name;
        }
    }
}

TEST(Help, EveryVerbIsListedInTheOverviewAndInItsGroup) {
    const std::string overview = overviewText(verbTable());
    for (const VerbSpec& verb : verbTable()) {
        const std::string line = "  " + std::string(verb.name) + " ";
        EXPECT_NE(overview.find(line), std::string::npos) << verb.name;
        const auto blank = verb.name.find(' ');
        if (blank == std::string_view::npos) continue;
        EXPECT_NE(groupText(verbTable(), verb.name.substr(0, blank)).find(line), std::string::npos)
            << verb.name;
    }
}

TEST(Help, ItsExamplesAreAcceptedByTheParser) {
    for (const VerbSpec& verb : verbTable())
        for (const Example& example : verb.examples) {
            // Splits as a shell does, quotation marks included; what comes behind > is the shell's.
            std::vector<std::string> words(1);
            bool quoted = false;
            for (const char c : example.command.substr(0, example.command.find(" >"))) {
                if (c == '"')
                    quoted = !quoted;
                else if (c == ' ' && !quoted)
                    words.emplace_back();
                else
                    words.back() += c;
            }
            ASSERT_EQ(words[0], "vtdn");
            words.erase(words.begin());
            const Command command = parse(words);
            EXPECT_EQ(command.kind, Command::Kind::run) << example.command;
            EXPECT_EQ(command.verb->name, verb.name) << example.command;
        }
}

TEST(Help, NoLineIsWiderThanThePage) {
    std::string all = overviewText(verbTable(), 80);
    for (const std::string_view group : {"site", "params", "names", "points", "alarm"})
        all += groupText(verbTable(), group, 80);
    for (const VerbSpec& verb : verbTable()) all += helpText(verb, 80);
    for (std::size_t start = 0; start < all.size();) {
        const std::size_t end = all.find('\n', start);
        const std::string line = all.substr(start, end - start);
        // Examples stand as they are typed.
        EXPECT_TRUE(line.starts_with("  vtdn") || displayWidth(line) <= 82) << line;
        start = end + 1;
    }
}

TEST(Spelling, DistanceCountsInsertsDropsReplacementsAndSwaps) {
    EXPECT_EQ(editDistance("", ""), 0);
    EXPECT_EQ(editDistance("read", "read"), 0);
    EXPECT_EQ(editDistance("raed", "read"), 1);
    EXPECT_EQ(editDistance("ead", "read"), 1);
    EXPECT_EQ(editDistance("reads", "read"), 1);
    EXPECT_EQ(editDistance("roar", "read"), 2);
    EXPECT_EQ(editDistance("", "read"), 4);
}

TEST(Spelling, OnlyWordsThatAreNearCount) {
    constexpr std::string_view words[] = {"read", "write", "params"};
    EXPECT_EQ(nearestSpelling("READ", words), "read");
    EXPECT_EQ(nearestSpelling("par", words), "params");
    EXPECT_EQ(nearestSpelling("wrote", words), "write");
    EXPECT_EQ(nearestSpelling("qqqq", words), "");
    EXPECT_EQ(nearestSpelling("", words), "");
    EXPECT_EQ(nearestSpelling(std::string(100'000, 'r'), words), "");
}

}  // namespace
}  // namespace vtdn::client

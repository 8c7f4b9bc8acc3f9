#include "client/verbs/read_range.h"

#include <gtest/gtest.h>

namespace vtdn::client {
namespace {

ReadRange range(std::initializer_list<std::pair<const char*, const char*>> options,
                const char* interval = "1h") {
    Arguments arguments;
    for (const auto& [name, value] : options) arguments.addOption(name, value);
    return readRange(arguments, askedInterval(arguments).value_or(store::Interval::parse(interval)));
}

TEST(ReadRange, CanBeSaidInSeveralWays) {
    EXPECT_TRUE(range({{"--at", "2007-01-15 13:00"}}).one);
    EXPECT_EQ(range({{"--day", "2007-01-15"}}).count, 24);
    EXPECT_EQ(range({{"--day", "2007-01-15"}}, "1m").count, 1440);
    EXPECT_EQ(range({{"--month", "2007-02"}}).count, 28 * 24);
    EXPECT_EQ(range({{"--month", "2007-12"}}, "1d").count, 31);
    EXPECT_EQ(range({{"--from", "2007-01-15"}, {"--count", "7"}}).count, 7);
    EXPECT_EQ(range({{"--from", "2007-01-15"}, {"--to", "2007-01-17"}}).count, 48);
    EXPECT_EQ(range({{"--from", "2007-01-01"}, {"--to", "2008-01-01"}}, "1M").count, 12);
    EXPECT_EQ(range({{"--from", "2007-01-01"}, {"--to", "2007-02-02"}}, "1M").count, 2);
    EXPECT_EQ(range({{"--day", "2007-01-15"}, {"--interval", "15m"}}).count, 96);
}

TEST(ReadRange, AnIntervalThatBeginsBeforeTheEndBelongsToTheRun) {
    EXPECT_EQ(range({{"--from", "2007-01-15 00:00"}, {"--to", "2007-01-15 01:30"}}).count, 2);
}

TEST(ReadRange, WhatSaysNothingOrTooMuchIsAUsageFailure) {
    using Options = std::initializer_list<std::pair<const char*, const char*>>;
    for (const Options& options :
         {Options{}, Options{{"--from", "2007-01-15"}}, Options{{"--to", "2007-01-15"}},
          Options{{"--count", "3"}}, Options{{"--from", "2007-01-15"}, {"--count", "0"}},
          Options{{"--from", "2007-01-15"}, {"--count", "-1"}},
          Options{{"--from", "2007-01-15"}, {"--count", "2000001"}},
          Options{{"--from", "2007-01-15"}, {"--count", "many"}},
          Options{{"--from", "2007-01-15"}, {"--to", "2007-01-15"}},
          Options{{"--from", "2007-01-15"}, {"--to", "2007-01-14"}},
          Options{{"--from", "2007-01-15"}, {"--to", "2007-01-16"}, {"--count", "1"}},
          Options{{"--at", "2007-01-15"}, {"--day", "2007-01-15"}}, Options{{"--at", "yesterday"}},
          Options{{"--day", "2007-01-15 13:00"}}, Options{{"--month", "2007-01-15"}},
          Options{{"--day", "2007-01-15"}, {"--interval", "7m"}},
          Options{{"--from", "1900-01-01"}, {"--to", "9999-12-31"}, {"--interval", "1s"}}}) {
        try {
            range(options);
            ADD_FAILURE() << "was accepted";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::usage);
            EXPECT_FALSE(failure.next().empty()) << failure.what();
        }
    }
}

TEST(EngineInterval, IsAUnitLetterAndACount) {
    const auto quarter = engineInterval(store::Interval::parse("15m"));
    EXPECT_EQ(quarter.type, "m");
    EXPECT_EQ(quarter.length, 15);
    EXPECT_EQ(engineInterval(store::Interval::parse("24h")).type, "d");
    EXPECT_EQ(engineInterval(store::Interval::parse("1M")).type, "M");
}

}  // namespace
}  // namespace vtdn::client

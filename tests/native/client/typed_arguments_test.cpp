#include "client/verbs/typed_arguments.h"

#include <gtest/gtest.h>

#include <array>

#include "client/verbs/params_selection.h"
#include "usage.h"

namespace vtdn::client {
namespace {

TEST(FunctionArgument, IsWhatItLooksLike) {
    EXPECT_EQ(functionArgument("2007-01-08"),
              FunctionArgument(TimeValue{store::timeOf({2007, 1, 8, 0, 0, 0})}));
    EXPECT_EQ(functionArgument("2007-01-08 13:00"),
              FunctionArgument(TimeValue{store::timeOf({2007, 1, 8, 13, 0, 0})}));
    EXPECT_EQ(functionArgument("2007-01-08T13:00:30"),
              FunctionArgument(TimeValue{store::timeOf({2007, 1, 8, 13, 0, 30})}));
    EXPECT_EQ(functionArgument("-7"), FunctionArgument(std::int32_t{-7}));
    EXPECT_EQ(functionArgument("2147483648"), FunctionArgument(2147483648.0));
    EXPECT_EQ(functionArgument("12.5"), FunctionArgument(12.5));
    EXPECT_EQ(functionArgument("true"), FunctionArgument(true));
    EXPECT_EQ(functionArgument("false"), FunctionArgument(false));
    EXPECT_EQ(functionArgument("1,2"), FunctionArgument(std::string("1,2")));
    EXPECT_EQ(functionArgument("2007-02-30"), FunctionArgument(std::string("2007-02-30")));
    EXPECT_EQ(functionArgument(""), FunctionArgument(std::string()));
}

TEST(FunctionArgument, IsATextWhenItSaysSo) {
    EXPECT_EQ(functionArgument("text:7"), FunctionArgument(std::string("7")));
    EXPECT_EQ(functionArgument("text:2007-01-08"), FunctionArgument(std::string("2007-01-08")));
    EXPECT_EQ(functionArgument("text:"), FunctionArgument(std::string()));
    EXPECT_EQ(functionArgument("text:text:a"), FunctionArgument(std::string("text:a")));
}

TEST(IntegerArgument, HasToLieBetweenItsBounds) {
    EXPECT_EQ(integerArgument("--severity", "0", 0, 4), 0);
    EXPECT_EQ(integerArgument("--severity", "4", 0, 4), 4);
    for (const char* text : {"5", "-1", "high", "", "1.5", "99999999999"})
        EXPECT_NE(refusalOf([&] { integerArgument("--severity", text, 0, 4); }).find("from 0 to 4"),
                  std::string::npos)
            << text;
}

TEST(ChoiceArgument, IsOneOfItsWords) {
    constexpr std::array<std::string_view, 3> words{"text", "number", "boolean"};
    EXPECT_EQ(choiceArgument(argumentsOf({}), "--as", words, 2), 2u);
    EXPECT_EQ(choiceArgument(argumentsOf({{"--as", "number"}}), "--as", words, 0), 1u);
    EXPECT_EQ(refusalOf([&] {
                  choiceArgument(argumentsOf({{"--as", "numbr"}}), "--as", words, 0);
              }),
              "\"numbr\" is not what --as takes. Did you mean \"number\"? It takes one of text, number, "
              "boolean.");
    EXPECT_EQ(refusalOf([&] {
                  choiceArgument(argumentsOf({{"--as", ""}}), "--as", words, 0);
              }),
              "\"\" is not what --as takes. It takes one of text, number, boolean.");
}

TEST(ParamsSelection, AsksForOneList) {
    using Kind = ParamsSelection::Kind;
    EXPECT_EQ(paramsSelection(argumentsOf({})).kind, Kind::all);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--type", "-3"}})).kind, Kind::type);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--type", "-3"}})).type, -3);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--calibration", ""}})).kind, Kind::calibration);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--calibration", ""}, {"--part75", ""}})).kind,
              Kind::part75Calibration);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--linearity", ""}})).kind, Kind::part75Linearity);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--interference", ""}})).kind, Kind::part75Interference);
    EXPECT_EQ(paramsSelection(argumentsOf({{"--related", ""}})).kind, Kind::related);
    EXPECT_FALSE(paramsSelection(argumentsOf({{"--related", ""}})).level);
}

TEST(ParamsSelection, ALevelIsAnIntervalOfMinutesHoursOrDays) {
    const auto level = [](const char* interval) {
        return paramsSelection(argumentsOf({{"--related", ""}, {"--interval", interval}})).level;
    };
    using Unit = AveragingLevel::Unit;
    EXPECT_EQ(level("15m"), (AveragingLevel{Unit::minute, 15}));
    EXPECT_EQ(level("60m"), (AveragingLevel{Unit::hour, 1}));
    EXPECT_EQ(level("1h"), (AveragingLevel{Unit::hour, 1}));
    EXPECT_EQ(level("1d"), (AveragingLevel{Unit::day, 1}));
    for (const char* interval : {"1M", "30s", "7m", "hourly", ""})
        EXPECT_NE(refusalOf([&] { level(interval); }), "accepted") << interval;
}

TEST(ParamsSelection, ListsDoNotMix) {
    const auto refused = [](Options options) {
        return refusalOf([&] { paramsSelection(argumentsOf(options)); });
    };
    EXPECT_EQ(refused({{"--type", "3"}, {"--calibration", ""}}),
              "--type and --calibration do not go together. Leave one of them away.");
    EXPECT_NE(refused({{"--linearity", ""}, {"--interference", ""}}), "accepted");
    EXPECT_NE(refused({{"--interference", ""}, {"--related", ""}}), "accepted");
    EXPECT_EQ(refused({{"--part75", ""}}),
              "--part75 needs --calibration. --linearity and --interference are about part 75 in any case.");
    EXPECT_NE(refused({{"--linearity", ""}, {"--part75", ""}}), "accepted");
    EXPECT_EQ(refused({{"--interval", "1h"}}),
              "--interval needs --related. For example: --related --interval 1h");
    EXPECT_NE(refused({{"--type", "three"}}), "accepted");
}

TEST(ParamsSelection, EveryListHasItsOwnWords) {
    std::vector<std::string> all;
    for (const Options& options :
         {Options{{"--type", "3"}}, Options{{"--calibration", ""}},
          Options{{"--calibration", ""}, {"--part75", ""}}, Options{{"--linearity", ""}},
          Options{{"--interference", ""}}, Options{{"--related", ""}},
          Options{{"--related", ""}, {"--interval", "1h"}}})
        all.push_back(inWords(paramsSelection(argumentsOf(options))));
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.size(), 7u);
}

}  // namespace
}  // namespace vtdn::client

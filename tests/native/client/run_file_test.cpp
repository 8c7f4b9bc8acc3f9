#include "client/run/run_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "client/verbs/read_range.h"

namespace vtdn::client {
namespace {

constexpr store::Pid load = 502030000;

RunFile read(const std::string& text, const char* interval = "1h", std::size_t limit = 20) {
    RunFileRequest request{"run.csv",
                           [text, done = std::size_t{0}](char* buffer, std::size_t room) mutable {
                               const std::size_t n = std::min(room, text.size() - done);
                               text.copy(buffer, n, done);
                               done += n;
                               return n;
                           },
                           load,
                           store::Interval::parse(interval),
                           [](store::MonitorCode code) { return code < 100; },
                           [](const std::string& words) { return words == "(5)"; },
                           limit};
    return readRunFile(request);
}

/// The items of a run, one word each: value, "-" for no value or "." for one that is left alone; then the
/// code, or "." for one that is left alone.
std::string inWords(const WrittenRun& run) {
    std::string text;
    for (const store::WriteItem& item : run.items) {
        if (!text.empty()) text += ' ';
        if (!item.value)
            text += '.';
        else if (const auto number = store::numberOf(item.item.value))
            text += std::to_string(std::lround(*number * 10)) + "e-1";
        else if (const auto* words = std::get_if<std::string>(&item.item.value))
            text += *words;
        else
            text += '-';
        text += "/" + (item.code ? std::to_string(item.item.code) : ".");
    }
    return text;
}

std::vector<std::string> problemsOf(const RunFile& file) {
    EXPECT_TRUE(file.runs.empty());
    std::vector<std::string> texts;
    for (const ImportProblem& problem : file.problems) texts.push_back(problem.text());
    return texts;
}

store::Time at(int hour, int minute = 0, int day = 8) {
    return store::timeOf({2007, 1, day, hour, minute, 0});
}

using Lines = std::vector<std::string>;

TEST(RunFile, IsInTheFormThatReadPrints) {
    const RunFile file = read(
        "time,5-020-3-00-00,5-020-3-00-00 mc\n"
        "2007-01-08 13:00,12.5,1\n2007-01-08 14:00,,9\n2007-01-08 15:00,stopped,0\n");
    ASSERT_TRUE(file.problems.empty()) << file.problems[0].text();
    ASSERT_EQ(file.runs.size(), 1u);
    EXPECT_EQ(file.runs[0].start, at(13));
    EXPECT_EQ(inWords(file.runs[0]), "125e-1/1 -/9 stopped/0");
    EXPECT_EQ(file.values, 2u);
    EXPECT_EQ(file.noValues, 1u);
    EXPECT_EQ(file.codes, 3u);
}

TEST(RunFile, AnEmptyCodeOrNoColumnOfCodesKeepsTheCode) {
    EXPECT_EQ(inWords(read("mc,time,value\n1,2007-01-08 13:00,2\n,2007-01-08 14:00,3\n").runs.at(0)),
              "20e-1/1 30e-1/.");
    const RunFile file = read("time,502030000\n2007-01-08 13:00,2\n2007-01-08 14:00,\n");
    EXPECT_EQ(inWords(file.runs.at(0)), "20e-1/. -/.");
    EXPECT_EQ(file.codes, 0u);
}

TEST(RunFile, WithoutAColumnOfValuesOnlyCodesAreWritten) {
    const RunFile file = read("time,mc\n2007-01-08 13:00,1\n2007-01-08 14:00,\n2007-01-08 15:00,2\n");
    EXPECT_EQ(inWords(file.runs.at(0)), "./1 ./. ./2");
    EXPECT_EQ(file.values + file.noValues, 0u);
    EXPECT_EQ(file.codes, 2u);
}

TEST(RunFile, ColumnsOfOtherParametersArePassedOver) {
    const RunFile file = read(
        "time,5-050-3-00-00,5-050-3-00-00 mc,5-020-3-00-00,5-020-3-00-00 mc\n"
        "2007-01-08 13:00,not looked at,nor this,7,1\n");
    ASSERT_TRUE(file.problems.empty()) << file.problems[0].text();
    EXPECT_EQ(inWords(file.runs.at(0)), "70e-1/1");
}

TEST(RunFile, ANarrowGapIsLeftAloneAndAWideOneEndsTheRun) {
    const RunFile file =
        read("time,value\n2007-01-08 13:00,1\n2007-01-08 16:00,2\n2007-03-09 17:00,3\n2007-05-08 19:00,4\n");
    ASSERT_EQ(file.runs.size(), 2u);
    // 1440 intervals lie between the second and the third row, 1441 between the third and the fourth.
    EXPECT_EQ(file.runs[0].items.size(), 4u + 1441u);
    EXPECT_EQ(inWords(file.runs[0]).substr(0, 21), "10e-1/. ./. ./. 20e-1");
    EXPECT_FALSE(file.runs[0].items[1443].value);
    EXPECT_TRUE(file.runs[0].items[1444].value);
    EXPECT_EQ(file.runs[1].start, store::timeOf({2007, 5, 8, 19, 0, 0}));
    EXPECT_EQ(inWords(file.runs[1]), "40e-1/.");
    EXPECT_EQ(file.values, 4u);
}

TEST(RunFile, MonthsFollowEachOther) {
    const RunFile file =
        read("time,value\n2007-01-01 00:00,1\n2007-02-01 00:00,2\n2007-04-01 00:00,3\n", "1M");
    EXPECT_EQ(inWords(file.runs.at(0)), "10e-1/. 20e-1/. ./. 30e-1/.");
}

TEST(RunFile, EveryBrokenRowIsListedWithItsLineAndItsReason) {
    EXPECT_EQ(
        problemsOf(read("time,value,mc\n"
                        "2007-01-08 13:00,1,1\n"
                        "8.1.2007 14:00,1,1\n"
                        "2007-01-08 14:30,1,1\n"
                        "2007-01-08 13:00,1,1\n"
                        "2007-01-08 15:00,\"12,5\",1\n"
                        "2007-01-08 16:00,1e39,1\n"
                        "2007-01-08 17:00,(5),1\n"
                        "2007-01-08 18:00,1,many\n"
                        "2007-01-08 19:00,1,100\n"
                        "2007-01-08 20:00,1\n")),
        (Lines{("run.csv:3: column \"time\": \"8.1.2007 14:00\" is no time; times look like 2007-03-25 "
                "06:00 or 2007-03-25 06:00:30"),
               "run.csv:4: column \"time\": 2007-01-08 14:30 is not on the 1h interval of 5-020-3-00-00",
               ("run.csv:5: column \"time\": 2007-01-08 13:00 is not later than 2007-01-08 13:00, which "
                "5-020-3-00-00 has a row for already; sort the rows by time"),
               ("run.csv:6: column \"value\": \"12,5\" begins like a number and is none that can be "
                "stored; numbers look like -12.5 or 6.02e23"),
               ("run.csv:7: column \"value\": \"1e39\" is out of the range of single precision, which "
                "numbers are written in"),
               ("run.csv:8: column \"value\": \"(5)\" is a number by this computer's settings and none "
                "in a file; numbers look like -12.5 or 6.02e23"),
               "run.csv:9: column \"mc\": \"many\" is no monitor code; it has to be a whole number",
               ("run.csv:10: column \"mc\": the site has no monitor code 100; `vtdn names mc` lists "
                "those that it has"),
               "run.csv:11: the line has 2 fields and the header 3"}));
}

TEST(RunFile, TheLargestSingleIsWrittenAndTheNextNumberIsNot) {
    EXPECT_TRUE(read("time,value\n2007-01-08 13:00,-3.4028234663852886e38\n").problems.empty());
    EXPECT_EQ(problemsOf(read("time,value\n2007-01-08 13:00,3.4028235e38\n")).size(), 1u);
}

TEST(RunFile, AllThatIsWrongWithARowIsSaid) {
    EXPECT_EQ(problemsOf(read("time,value,mc\n2007-01-08 13:30,1e39,-1\n")).size(), 3u);
}

TEST(RunFile, ReadingEndsAtTheLimit) {
    const RunFile file = read("time,value\nx,1\ny,2\nz,3\n", "1h", 2);
    EXPECT_TRUE(file.moreProblems);
    EXPECT_EQ(problemsOf(file).size(), 2u);
    EXPECT_FALSE(read("time,value\nx,1\ny,2\n", "1h", 3).moreProblems);
}

TEST(RunFile, AHeaderThatDoesNotFitIsRefused) {
    const auto problem = [](const std::string& text) {
        const auto all = problemsOf(read(text));
        return all.size() == 1 ? all[0] : std::to_string(all.size()) + " problems";
    };
    EXPECT_EQ(problem(""), "run.csv: the file is empty; its first line has to be the header");
    EXPECT_EQ(problem("value\n1\n"), "run.csv:1: the column \"time\" is missing");
    EXPECT_EQ(problem("time,value,code\n"),
              "run.csv:1: there is no use for the column \"code\" beside time, value and mc");
    EXPECT_EQ(problem("time,value,5-020-3-00-00\n"),
              "run.csv:1: the column \"5-020-3-00-00\" is the second of its kind");
    EXPECT_EQ(
        problem("time\n2007-01-08 13:00\n"),
        "run.csv:1: there is neither a column \"5-020-3-00-00\" nor \"5-020-3-00-00 mc\", nor value, nor mc");
    EXPECT_EQ(problem("time,5-050-3-00-00\n2007-01-08 13:00,1\n"),
              "run.csv:1: there is neither a column \"5-020-3-00-00\" nor \"5-020-3-00-00 mc\"; to write the "
              "values of another parameter, name its columns value and mc");
}

TEST(RunFile, AFileThatSaysNothingIsRefused) {
    EXPECT_EQ(problemsOf(read("time,value\n")), Lines{"run.csv:1: there is no row below the header"});
    EXPECT_EQ(problemsOf(read("time,mc\n2007-01-08 13:00,\n")),
              Lines{"run.csv:2: no row has a monitor code, and there are no values"});
}

}  // namespace
}  // namespace vtdn::client

// Formulas: values of expressions, missing inputs, and what is not understood.

#include "store/formula.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "expect_error.h"

namespace vtdn::store::test {
namespace {

double valueOf(const char* text, std::vector<double> inputs = {}) {
    return Formula::parse(text).evaluate(inputs);
}

TEST(Formula, ComputesWithTheUsualPrecedence) {
    const std::pair<const char*, double> cases[] = {
        {"1 + 2 * 3", 7},
        {"(1 + 2) * 3", 9},
        {"8 / 4 / 2", 1},
        {"8 - 4 - 2", 2},
        {"-2 * 3", -6},
        {"2 * -3", -6},
        {"--2", 2},
        {"+2", 2},
        {"1e3 + .5", 1000.5},
        {"6.02E2", 602},
        {"abs(-4)", 4},
        {"sqrt(9)", 3},
        {"min(3, 1, 2)", 1},
        {"MAX(3, 1, 2)", 3},
        {"min(5)", 5},
        {"if(1, 2, 3)", 2},
        {"if(0, 2, 3)", 3},
        {"1 < 2", 1},
        {"2 < 1", 0},
        {"2 <= 2", 1},
        {"2 >= 3", 0},
        {"3 > 2", 1},
        {"2 = 2", 1},
        {"2 <> 2", 0},
        {"if(2 > 1, 10, 20)", 10},
        {"1+1=2", 1},
        {"\t1\t+ 1 ", 2},
        {"((((1))))", 1},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(valueOf(text), expected) << text;
}

TEST(Formula, RefersToParametersInThreeForms) {
    const Formula f = Formula::parse("[5-040-3-00-00] + P(504030000) * [ 504050000 ] + p( 5-040-5-00-00 )");
    EXPECT_EQ(f.inputs(), (std::vector<Pid>{504030000, 504050000}));
    EXPECT_EQ(f.evaluate(std::vector<double>{2, 10}), 2 + 2 * 10 + 10);
}

TEST(Formula, AMissingInputMakesTheResultMissing) {
    const double none = missingNumber();
    for (const char* text : {"[1-050-3-00-00] + 1", "-[1-050-3-00-00]", "min(1, [1-050-3-00-00])",
                             "[1-050-3-00-00] = 1", "abs([1-050-3-00-00])", "sqrt([1-050-3-00-00])",
                             "if([1-050-3-00-00], 1, 2)", "0 * [1-050-3-00-00]"})
        EXPECT_TRUE(isMissing(valueOf(text, {none}))) << text;
    EXPECT_EQ(valueOf("if(1, 5, [1-050-3-00-00])", {none}), 5)
        << "the branch that is not taken does not count";
    EXPECT_TRUE(isMissing(valueOf("if(0, 5, [1-050-3-00-00])", {none})));
}

TEST(Formula, WhatCannotBeComputedIsMissing) {
    for (const char* text :
         {"1 / 0", "0 / 0", "sqrt(-1)", "1e308 * 10", "1e308 + 1e308", "-1e308 - 1e308", "1e300 / 1e-300"})
        EXPECT_TRUE(isMissing(valueOf(text))) << text;
}

TEST(Formula, RefusesWhatIsNotUnderstood) {
    for (const char* text : {"",
                             " ",
                             "1 +",
                             "* 2",
                             "1 2",
                             "(1",
                             "1)",
                             "()",
                             "[",
                             "[]",
                             "[1-05]",
                             "[@1-050-3-00-00]",
                             "P()",
                             "P(",
                             "P 1",
                             "[1-050-6-00-00]",
                             "abs()",
                             "abs(1, 2)",
                             "abs 1",
                             "if(1, 2)",
                             "if(1,2,3,4)",
                             "min()",
                             "foo(1)",
                             "1 == 2",
                             "1 < 2 < 3",
                             "1 ** 2",
                             "1e999",
                             ".",
                             "..1",
                             "0x10",
                             "1,5",
                             "nan",
                             "inf",
                             "1e",
                             "\"text\"",
                             "1 + \xC3\xA4"})
        expectError(ErrorKind::badFormula, [&] { (void)Formula::parse(text); });
    expectError(ErrorKind::badFormula, [] { (void)Formula::parse(std::string_view("1\0", 2)); });
    const std::string sentence = expectError(ErrorKind::badFormula, [] { (void)Formula::parse("1 + * 2"); });
    EXPECT_NE(sentence.find("character 5"), std::string::npos) << sentence;
}

TEST(Formula, DeepNestingAndEndlessTextsAreRefusedAndNotFollowed) {
    const std::string open(5000, '(');
    expectError(ErrorKind::badFormula, [&] { (void)Formula::parse(open); });
    expectError(ErrorKind::badFormula, [] { (void)Formula::parse(std::string(longestFormula + 1, ' ')); });
    std::string signs(9000, '-');
    EXPECT_EQ(Formula::parse(signs + "1").evaluate({}), 1);
    std::string wide = "min(1";
    for (int i = 0; i < 100; ++i) wide += ", 2";
    EXPECT_EQ(valueOf((wide + ")").c_str()), 1) << "a stack larger than the small one";
}

}  // namespace
}  // namespace vtdn::store::test

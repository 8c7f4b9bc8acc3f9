#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/text/utf8.h"

namespace vtdn::client {
namespace {

TEST(Numbers, AreDecimalWithAPoint) {
    EXPECT_EQ(parseNumber("12"), 12);
    EXPECT_EQ(parseNumber("-0.5"), -0.5);
    EXPECT_EQ(parseNumber(".263"), 0.263);
    EXPECT_EQ(parseNumber("6.02e23"), 6.02e23);
    EXPECT_EQ(parseNumber("+7"), 7);
    EXPECT_EQ(parseNumber("5."), 5);
}

TEST(Numbers, AnythingElseIsNone) {
    for (const char* text :
         {"",    " 1", "1 ", "1,5", "1.234.567", "12 ppm", "0x10",  "inf",    "nan",        "-inf",
          "NaN", ".",  "-",  "+",   "+-1",       "--1",    "1e999", "-1e999", "2007-03-25", "e5"})
        EXPECT_EQ(parseNumber(text), std::nullopt) << text;
}

TEST(Numbers, WholeOnesFit32Bits) {
    EXPECT_EQ(parseInteger("2147483647"), 2147483647);
    EXPECT_EQ(parseInteger("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(parseInteger("+5"), 5);
    for (const char* text : {"", "+", "2147483648", "1.0", "1e3", " 1", "+-1"})
        EXPECT_EQ(parseInteger(text), std::nullopt) << text;
}

TEST(Numbers, TheShortestTextReadsBackAsTheSameNumber) {
    EXPECT_EQ(shortestText(5680.7), "5680.7");
    EXPECT_EQ(shortestText(0), "0");
    EXPECT_EQ(shortestText(1e6), "1000000");
    EXPECT_EQ(shortestText(1e30), "1e+30");
    EXPECT_EQ(shortestText(0.1), "0.1");
    for (const double value : {1.0 / 3, -2.5e-7, 1e14 + 0.5, std::numeric_limits<double>::max(), 5e-324})
        EXPECT_EQ(parseNumber(shortestText(value)), value);
}

TEST(Format, ShowsAValueAsTheParameterSays) {
    struct Row {
        double value;
        const char* format;
        const char* shown;
    };
    constexpr Row rows[] = {
        {5680.74, "0.0", "5680.7"},
        {0.26, "0.000", "0.260"},
        {0.26, "#.000", ".260"},
        {12, "0", "12"},
        {7, "#0.00", "7.00"},
        {7, "000", "007"},
        {7.5, "0.##", "7.5"},
        {7, "0.##", "7"},
        {1234567.891, "#,##0.00", "1,234,567.89"},
        {999, "#,##0", "999"},
        {0.1234, "0.0%", "12.3%"},
        {-3.14159, "0.00", "-3.14"},
        {-0.001, "0.00", "0.00"},
        {-5, "0.0;(0.0)", "(5.0)"},
        {0, "0.0;-0.0;\"none\"", "none"},
        {5, "0.0;(0.0)", "5.0"},
        {12.5, "0.0 \"ppm\"", "12.5 ppm"},
        {12.5, "\\#0.0", "#12.5"},
        {5680.7, "", "5680.7"},
        {5680.7, "General", "5680.7"},
        {1e20, "0", "100000000000000000000"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(formatNumber(row.value, row.format), row.shown) << row.value << " as " << row.format;
}

TEST(Format, SurvivesAnyPattern) {
    for (const char* format : {";", ";;", "\"", "\\", "%", "0.0.0", "#", ",", "0,", "0.", "\"0\"", ";;;;"})
        for (const double value : {0.0, -1.5, 1e300, std::numeric_limits<double>::infinity(), std::nan("")})
            EXPECT_FALSE(formatNumber(value, format).empty() && std::string(format) != "#")
                << format << " " << value;
    EXPECT_EQ(formatNumber(1, "0." + std::string(1000, '0')).size(), 62u);
}

TEST(Times, AreTypedInThreeForms) {
    const auto time = store::timeOf({2007, 1, 15, 13, 0, 0});
    EXPECT_EQ(parseTime("2007-01-15 13:00"), time);
    EXPECT_EQ(parseTime("2007-01-15T13:00"), time);
    EXPECT_EQ(parseTime("2007-01-15T13:00:30"), time + 30);
    EXPECT_EQ(parseTime("2007-01-15"), time - 13 * 3600);
    EXPECT_EQ(parseDay("2007-01-15"), time - 13 * 3600);
    EXPECT_EQ(parseMonth("2007-01"), store::timeOf({2007, 1, 1, 0, 0, 0}));
    EXPECT_EQ(parseTime("2008-02-29"), store::timeOf({2008, 2, 29, 0, 0, 0}));
    EXPECT_EQ(parseTime("9999-12-31 23:59:59"), store::latestTime);
}

TEST(Times, ThatAreNoneAreNotGuessed) {
    for (const char* text : {"",
                             "2007",
                             "2007-1-5",
                             "15.01.2007",
                             "01/15/2007",
                             "2007-02-29",
                             "2007-13-01",
                             "2007-00-01",
                             "2007-01-00",
                             "2007-01-32",
                             "2007-01-15 24:00",
                             "2007-01-15 13",
                             "2007-01-15 13:60",
                             "2007-01-15 13:00:60",
                             "2007-01-15  13:00",
                             "2007-01-15 13:00 ",
                             "1899-12-31",
                             "1900-02-29",
                             "2007-01-15 13:00:00.5",
                             "2007-01-15 13:00Z"})
        EXPECT_EQ(parseTime(text), std::nullopt) << text;
    EXPECT_EQ(parseMonth("2007-13"), std::nullopt);
    EXPECT_EQ(parseTimestamp("2007-01-15"), std::nullopt);
}

TEST(Utf8, WhatIsMalformedIsFound) {
    EXPECT_EQ(invalidUtf8("plain text, quite long"), std::string_view::npos);
    EXPECT_EQ(invalidUtf8("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::string_view::npos);
    EXPECT_EQ(invalidUtf8("caf\xE9"), 3u);
    EXPECT_EQ(invalidUtf8("\xC0\x80"), 0u);          // overlong
    EXPECT_EQ(invalidUtf8("a\xED\xA0\x80"), 1u);     // surrogate
    EXPECT_EQ(invalidUtf8("\xF4\x90\x80\x80"), 0u);  // beyond the last character
    EXPECT_EQ(invalidUtf8("12345678\xE2\x82"), 8u);  // cut off
}

TEST(Utf8, WidthIsInColumns) {
    EXPECT_EQ(displayWidth("NOx"), 3u);
    EXPECT_EQ(displayWidth("\xC2\xB5g/m\xC2\xB3"), 5u);  // µg/m³
    EXPECT_EQ(displayWidth("\xE6\xB8\xA9"), 2u);         // wide
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1u);            // combining
    EXPECT_EQ(displayWidth("\xFF"), 1u);
    EXPECT_EQ(characterCount("\xC2\xB5g"), 2u);
    EXPECT_EQ(oneLine("a\tb\nc"), "a b c");
}

}  // namespace
}  // namespace vtdn::client

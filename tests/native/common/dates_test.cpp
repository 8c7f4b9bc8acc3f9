#include "common/dates.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vtdn::common {
namespace {

constexpr double day20070131 = 39113.0;

TEST(SecondsOfDate, CountsForwardFromMidnightAlsoBeforeTheEpoch) {
    EXPECT_EQ(secondsOfDate(0.0), 0);
    EXPECT_EQ(secondsOfDate(1.5), 129600);
    EXPECT_EQ(secondsOfDate(-1.25), -86400 + 21600);  // 29 December 1899 06:00
    EXPECT_EQ(secondsOfDate(-0.25), 21600);           // the day is 0: still 06:00 of 30 December
}

TEST(DateOfSeconds, IsTheInverseOverTheWholeRange) {
    for (std::int64_t seconds = -657434LL * 86400; seconds < 2958466LL * 86400;
         seconds += 86400LL * 997 + 3661)
        EXPECT_EQ(secondsOfDate(dateOfSeconds(seconds)), seconds);
    EXPECT_EQ(dateOfSeconds(-64800), -1.25);
}

TEST(AddIntervals, RebuildsShortUnitsFromWholeSeconds) {
    double walked = day20070131;
    for (int i = 0; i < 86400; ++i) walked = *addIntervals(L"s", walked, 1);
    EXPECT_EQ(walked, day20070131 + 1);
    EXPECT_EQ(*addIntervals(L"n", day20070131, 90), day20070131 + 0.0625);
    EXPECT_EQ(*addIntervals(L"H", day20070131, -36), day20070131 - 1.5);
    EXPECT_EQ(secondsOfDate(*addIntervals(L"s", day20070131 + 1.0 / 3, -1)),
              secondsOfDate(day20070131 + 1.0 / 3) - 1);
}

TEST(AddIntervals, LeavesTheTimeOfLongUnitsAsItIs) {
    const double odd = day20070131 + 0.123456789;
    for (const wchar_t* unit : {L"d", L"y", L"w"}) EXPECT_EQ(*addIntervals(unit, odd, 3), odd + 3) << unit;
    EXPECT_EQ(*addIntervals(L"ww", odd, -2), odd - 14);
}

TEST(AddIntervals, EndsOnTheLastDayOfAMonthThatIsTooShort) {
    EXPECT_EQ(*addIntervals(L"m", day20070131, 1), day20070131 + 28);       // 28 February 2007
    EXPECT_EQ(*addIntervals(L"m", day20070131, 13), day20070131 + 394);     // 29 February 2008
    EXPECT_EQ(*addIntervals(L"q", day20070131, 1), day20070131 + 89);       // 30 April 2007
    EXPECT_EQ(*addIntervals(L"YYYY", day20070131, -1), day20070131 - 365);  // 31 January 2006
    EXPECT_EQ(*addIntervals(L"m", day20070131, -2), day20070131 - 62);      // 30 November 2006
}

TEST(AddIntervals, CrossesTheEpochForward) {
    EXPECT_EQ(*addIntervals(L"h", -0.75, 6), 1.0);   // 30 December 18:00 to 31 December
    EXPECT_EQ(*addIntervals(L"h", -1.25, 18), 0.0);  // 29 December 06:00 to 30 December
    EXPECT_EQ(*addIntervals(L"d", -1.25, 2), 1.25);
    EXPECT_EQ(*addIntervals(L"m", -1.25, 1), 30.25);
}

TEST(AddIntervals, RefusesUnknownUnitsAndYearsBeyondTheRange) {
    for (const wchar_t* unit : {L"", L"x", L"ss", L"yy", L"month"})
        EXPECT_FALSE(addIntervals(unit, 0, 1)) << unit;
    EXPECT_FALSE(addIntervals(L"yyyy", day20070131, 8000));
    EXPECT_FALSE(addIntervals(L"yyyy", day20070131, -2000));
    EXPECT_FALSE(addIntervals(L"d", 2958465, 1));
    EXPECT_TRUE(addIntervals(L"s", 2958465, 86399));
    EXPECT_FALSE(addIntervals(L"s", 2958465, 86400));
    EXPECT_FALSE(addIntervals(L"s", 1e300, 1));
    EXPECT_FALSE(addIntervals(L"s", std::nan(""), 1));
}

}  // namespace
}  // namespace vtdn::common

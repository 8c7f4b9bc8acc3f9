// Interval texts and lengths, where intervals begin, and what a run may be.

#include "store/interval.h"

#include <gtest/gtest.h>

#include <limits>

#include "expect_error.h"

namespace vtdn::store::test {
namespace {

TEST(Time, CountsSecondsFromThe30thOfDecember1899) {
    EXPECT_EQ(timeOf({1899, 12, 30, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({1899, 12, 29, 6, 0, 0}), -18 * 3600);
    EXPECT_EQ(timeOf({2007, 3, 25, 5, 4, 3}), 39166 * secondsPerDay + 5 * 3600 + 4 * 60 + 3);
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0}), earliestTime);
    EXPECT_EQ(timeOf({9999, 12, 31, 23, 59, 59}), latestTime);
}

TEST(Time, ComesBackFromItsCalendarDate) {
    for (const Time time :
         {earliestTime, Time{-1}, Time{0}, Time{1}, Time{86'399}, Time{3'383'942'400}, latestTime})
        EXPECT_EQ(timeOf(civilOf(time)), time);
    EXPECT_EQ(timeText(-1), "1899-12-29 23:59:59");
    EXPECT_EQ(timeText(0), "1899-12-30 00:00");
}

TEST(Time, RefusesDaysThatThereAreNot) {
    for (const Civil& civil :
         {Civil{2007, 2, 29, 0, 0, 0}, Civil{2007, 13, 1, 0, 0, 0}, Civil{2007, 0, 1, 0, 0, 0},
          Civil{2007, 1, 0, 0, 0, 0}, Civil{2007, 1, 1, 24, 0, 0}, Civil{2007, 1, 1, 0, 60, 0},
          Civil{2007, 1, 1, 0, 0, -1}, Civil{99, 12, 31, 0, 0, 0}, Civil{10'000, 1, 1, 0, 0, 0}})
        expectError(ErrorKind::outOfRange, [&] { (void)timeOf(civil); });
}

TEST(IntervalText, IsACountAndAUnitLetterInTheLargestUnit) {
    const std::pair<const char*, const char*> texts[] = {
        {"1s", "1s"},  {"90s", "90s"},  {"60s", "1m"}, {"3600s", "1h"}, {"15m", "15m"}, {"60m", "1h"},
        {"24h", "1d"}, {"1440m", "1d"}, {"1M", "1M"},  {" 3M ", "3M"},  {"12M", "12M"}, {"7d", "7d"}};
    for (const auto& [text, expected] : texts) EXPECT_EQ(Interval::parse(text).text(), expected) << text;
    EXPECT_EQ(Interval::parse("60m"), Interval::parse("1h"));
}

TEST(IntervalText, RefusesWhatItDoesNotKnow) {
    for (const char* text : {"",
                             " ",
                             "h",
                             "1",
                             "1H",
                             "1D",
                             "1S",
                             "1n",
                             "1 h",
                             "1hh",
                             "h1",
                             "-1h",
                             "+1h",
                             "1.5h",
                             "0h",
                             "00m",
                             "1v",
                             "7m",
                             "7s",
                             "25h",
                             "36h",
                             "100000000d",
                             "99999999999999999999s",
                             "1h\n"})
        expectError(ErrorKind::badInterval, [&] { (void)Interval::parse(text); });
    expectError(ErrorKind::badInterval, [] { (void)Interval::parse(std::string_view("1h\0", 3)); });
}

TEST(IntervalType, IsALetterOrAWord) {
    EXPECT_EQ(Interval::of("h", 1), Interval::parse("1h"));
    EXPECT_EQ(Interval::of("M", 3), Interval::parse("3M"));
    EXPECT_EQ(Interval::of("m", 3), Interval::parse("3m"));
    EXPECT_EQ(Interval::of("Hour", 2), Interval::parse("2h"));
    EXPECT_EQ(Interval::of("MINUTES", 15), Interval::parse("15m"));
    EXPECT_EQ(Interval::of("month", 1), Interval::parse("1M"));
    for (const char* type : {"", "H", "n", "x", "1h", "hou", "hr", "s ", "day\n"})
        expectError(ErrorKind::badInterval, [&] { (void)Interval::of(type, 1); });
    for (const std::int64_t length :
         {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()})
        expectError(ErrorKind::badInterval, [&] { (void)Interval::of("h", length); });
}

TEST(Interval, BeginsOnTheClockAndTheCalendar) {
    const Time midnight = timeOf({2008, 2, 29, 0, 0, 0});
    EXPECT_TRUE(Interval::parse("15m").beginsAt(midnight + 45 * 60));
    EXPECT_FALSE(Interval::parse("15m").beginsAt(midnight + 46 * 60));
    EXPECT_TRUE(Interval::parse("1d").beginsAt(midnight));
    EXPECT_TRUE(Interval::parse("7d").beginsAt(midnight));
    EXPECT_FALSE(Interval::parse("7d").beginsAt(midnight + 3600));
    EXPECT_FALSE(Interval::parse("1M").beginsAt(midnight));
    EXPECT_TRUE(Interval::parse("1M").beginsAt(midnight + secondsPerDay));
    EXPECT_TRUE(Interval::parse("1h").beginsAt(-3600)) << "before 1899 as well";
    EXPECT_FALSE(Interval::parse("1h").beginsAt(-1));
}

TEST(Interval, StepsOverMonthsOfDifferentLengths) {
    const Interval month = Interval::parse("1M");
    const Time january = timeOf({2008, 1, 1, 0, 0, 0});
    EXPECT_EQ(month.step(january, 2), timeOf({2008, 3, 1, 0, 0, 0}));
    EXPECT_EQ(month.step(january, -1), timeOf({2007, 12, 1, 0, 0, 0}));
    EXPECT_EQ(month.step(january, 13), timeOf({2009, 2, 1, 0, 0, 0}));
    EXPECT_EQ(Interval::parse("1d").between(january, month.step(january, 2)), 60);
}

TEST(Interval, NumbersStorableIntervalsWithoutGapsAlsoBefore1899) {
    for (const char* text : {"1s", "90s", "1m", "15m", "1h", "8h", "1d", "1M", "3M", "12M"}) {
        const Interval interval = Interval::parse(text);
        ASSERT_TRUE(interval.isStorable());
        for (std::int64_t i = -3; i < 4; ++i) {
            EXPECT_EQ(interval.index(interval.begin(i)), i) << text;
            EXPECT_EQ(interval.index(interval.begin(i + 1) - 1), i) << text;
            EXPECT_TRUE(interval.beginsAt(interval.begin(i))) << text;
        }
    }
    for (const char* text : {"2d", "7d", "5M", "24M"})
        EXPECT_FALSE(Interval::parse(text).isStorable()) << text;
}

TEST(Interval, IsFilledByShorterOnesThatDivideIt) {
    const auto fills = [](const char* longer, const char* shorter) {
        return Interval::parse(longer).isFilledBy(Interval::parse(shorter));
    };
    EXPECT_TRUE(fills("1h", "1m"));
    EXPECT_TRUE(fills("1M", "1h"));
    EXPECT_TRUE(fills("1M", "1d"));
    EXPECT_TRUE(fills("12M", "3M"));
    EXPECT_FALSE(fills("1h", "45m"));
    EXPECT_FALSE(fills("1m", "1h"));
    EXPECT_FALSE(fills("1d", "1M"));
    EXPECT_FALSE(fills("3M", "2M"));
    EXPECT_FALSE(fills("1M", "7d"));
}

TEST(Span, RefusesCountsOfZeroBelowZeroAndAbsurdlyLarge) {
    const Interval hour = Interval::parse("1h");
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{longestRun} + 1,
                                     std::int64_t{2'147'483'647}, std::int64_t{-2'147'483'648}})
        expectError(ErrorKind::outOfRange, [&] { (void)Span::define(0, count, hour); });
    EXPECT_EQ(Span::define(0, longestRun, hour).count, longestRun);
}

TEST(Span, RefusesABeginningThatIsNoneAndAnEndBehindTheYear9999) {
    const Interval hour = Interval::parse("1h");
    const std::string sentence = expectError(ErrorKind::offBoundary, [&] {
        (void)Span::define(timeOf({2007, 3, 18, 2, 30, 0}), 1, hour);
    });
    EXPECT_NE(sentence.find("2007-03-18 02:30"), std::string::npos);
    const Time lastHour = timeOf({9999, 12, 31, 23, 0, 0});
    EXPECT_EQ(Span::define(lastHour, 1, hour).end(), latestTime + 1);
    expectError(ErrorKind::outOfRange, [&] { (void)Span::define(lastHour, 2, hour); });
    const Interval month = Interval::parse("1M");
    const Time lastMonth = timeOf({9999, 12, 1, 0, 0, 0});
    EXPECT_EQ(Span::define(lastMonth, 1, month).count, 1);
    expectError(ErrorKind::outOfRange, [&] { (void)Span::define(lastMonth, 2, month); });
    expectError(ErrorKind::outOfRange,
                [&] { (void)Span::define(lastMonth, longestRun, Interval::parse("1000000M")); });
    expectError(ErrorKind::outOfRange,
                [&] { (void)Span::define(lastMonth, longestRun, Interval::parse("1000000d")); });
    expectError(ErrorKind::outOfRange, [&] { (void)Span::define(earliestTime - 3600, 1, hour); });
    expectError(ErrorKind::outOfRange,
                [&] { (void)Span::define(std::numeric_limits<Time>::max(), 1, hour); });
    EXPECT_EQ(Span::define(earliestTime, 1, hour).start, earliestTime);
}

}  // namespace
}  // namespace vtdn::store::test

// Functions over a span: their sums by hand, their edges, and a plain loop over random data.

#include "store/span_functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "demo_site.h"
#include "expect_error.h"
#include "items.h"

namespace vtdn::store::test {
namespace {

constexpr Pid timePid = 500030000;  // operating time of the unit, 1h
constexpr Time hour = 3600;

Time at(int h, int minute = 0, int second = 0) {
    return timeOf({2024, 3, 25, h, minute, second});
}

struct SpanSite : DemoSite {
    SpanSite() { load("h", {}); }
    void load(const char* units, const std::vector<SpecialValueEntry>& special, const char* interval = "1h") {
        std::vector<Parameter> all = demoParameters();
        all.push_back(stored(timePid, interval));
        all.back().units = units;
        Load l(site);
        l.replaceParameters(all);
        l.replaceSpecialValues(special);
        l.commit();
    }
};

TEST(SpanFunctions, SummarizeTheIntervalsThatBeginInTheSpan) {
    SpanSite demo;
    demo.site.write(hourPid, at(1), {{100.0, 1}});
    demo.site.write(hourPid, at(2), {{2.5F, 1}});
    demo.site.write(hourPid, at(3), {{std::int32_t{-4}, 1}});
    demo.site.write(hourPid, at(4), {{std::string("7"), 1}});
    demo.site.write(hourPid, at(5), {{Value(), 9}});
    demo.site.write(hourPid, at(6), {{2.5, 1}});
    demo.site.write(hourPid, at(7), {{100.0, 1}});
    for (const auto& [start, end] : {std::pair(at(2), at(7)), std::pair(at(1, 0, 1), at(6, 0, 1))}) {
        const SpanSummary s = summarize(demo.site, hourPid, start, end);
        EXPECT_EQ(s.intervals, 5);
        EXPECT_EQ(s.count, 3);
        EXPECT_EQ(s.sum(), Value(1.0));
        EXPECT_EQ(s.average(), Value(1.0 / 3));
        EXPECT_EQ(s.minimum, Value(std::int32_t{-4}));
        EXPECT_EQ(s.maximum, Value(2.5F)) << "the first of equal ones, of its own kind";
    }
}

TEST(SpanFunctions, OverNoIntervalOrNoNumberTheCountAndTheSumAreZeroAndTheRestIsNull) {
    SpanSite demo;
    demo.site.write(hourPid, at(4), {{std::string("x"), 1}});
    for (const auto& [start, end, intervals] :
         {std::tuple(at(4), at(4), 0), std::tuple(at(4, 1), at(4, 59), 0), std::tuple(at(4), at(6), 2)}) {
        const SpanSummary s = summarize(demo.site, hourPid, start, end);
        EXPECT_EQ(s.intervals, intervals);
        EXPECT_EQ(s.count, 0);
        EXPECT_EQ(s.sum(), Value(0.0));
        EXPECT_EQ(s.average(), Value());
        EXPECT_EQ(s.minimum, Value());
        EXPECT_EQ(s.maximum, Value());
    }
    EXPECT_EQ(availabilityPercent(demo.site, hourPid, at(4), at(4)), std::nullopt);
    EXPECT_EQ(operatingHours(demo.site, timePid, at(4), at(4)), 0);
    EXPECT_EQ(operatingHours(demo.site, timePid, at(4, 30), at(4, 30)), 0);
}

TEST(SpanFunctions, ASumBeyondADoubleIsNoValue) {
    SpanSite demo;
    demo.site.write(hourPid, at(1), {{1e308, 1}});
    demo.site.write(hourPid, at(2), {{1e308, 1}});
    const SpanSummary s = summarize(demo.site, hourPid, at(0), at(3));
    EXPECT_EQ(s.sum(), Value());
    EXPECT_EQ(s.average(), Value());
    EXPECT_EQ(s.maximum, Value(1e308));
}

TEST(SpanFunctions, TakeComputedAndMonthlyParametersAndTheEndsOfTime) {
    SpanSite demo;
    demo.site.write(minutePid, at(1, 0), {{1.0F, 1}});
    demo.site.write(minutePid, at(2, 5), {{3.0F, 1}});
    EXPECT_EQ(summarize(demo.site, averagePid, at(0), at(23)).average(), Value(2.0));
    demo.site.write(monthPid, timeOf({2024, 2, 1, 0, 0, 0}), {{5.0F, 1}});
    demo.site.write(monthPid, timeOf({2024, 3, 1, 0, 0, 0}), {{7.0F, 1}});
    EXPECT_EQ(summarize(demo.site, monthPid, timeOf({2024, 1, 15, 0, 0, 0}), at(0)).sum(), Value(12.0));
    EXPECT_EQ(summarize(demo.site, monthPid, earliestTime, latestTime + 1).intervals, 9900 * 12);
    EXPECT_EQ(summarize(demo.site, hourPid, latestTime - 1, latestTime + 1).intervals, 0);
}

TEST(SpanFunctions, RefuseSpansThatAreNone) {
    SpanSite demo;
    const auto refused = [&](ErrorKind kind, Pid pid, Time start, Time end) {
        expectError(kind, [&] { (void)summarize(demo.site, pid, start, end); });
        expectError(kind, [&] { (void)availabilityPercent(demo.site, pid, start, end); });
    };
    refused(ErrorKind::outOfRange, hourPid, at(2), at(2) - 1);
    refused(ErrorKind::outOfRange, hourPid, earliestTime - 1, at(2));
    refused(ErrorKind::outOfRange, hourPid, at(2), latestTime + 2);
    refused(ErrorKind::outOfRange, minutePid, at(0), at(0) + (std::int64_t{longestRun} + 1) * 60);
    refused(ErrorKind::unknownParameter, 123456789, at(0), at(1));
    refused(ErrorKind::badInterval, limitPid, at(0), at(1));
    expectError(ErrorKind::outOfRange, [&] { (void)operatingHours(demo.site, timePid, at(2), at(1)); });
    expectError(ErrorKind::unknownParameter,
                [&] { (void)operatingHours(demo.site, 123456789, at(0), at(1)); });
    EXPECT_EQ(summarize(demo.site, minutePid, at(0), at(0) + std::int64_t{60} * 1'000'000).intervals,
              1'000'000);
}

TEST(OperatingTime, CountsPartsOfTheFirstAndTheLastInterval) {
    SpanSite demo;
    demo.site.write(timePid, at(1), {{1.0F, 1}});
    demo.site.write(timePid, at(2), {{0.5F, 1}});
    demo.site.write(timePid, at(3), {{1.0F, 1}});
    const auto hours = [&](Time start, Time end) { return operatingHours(demo.site, timePid, start, end); };
    EXPECT_DOUBLE_EQ(hours(at(1), at(4)), 2.5);
    EXPECT_DOUBLE_EQ(hours(at(0), at(9)), 2.5) << "what was never written is no operation";
    EXPECT_DOUBLE_EQ(hours(at(1, 45), at(3, 30)), 0.25 + 0.5 + 0.5);
    EXPECT_DOUBLE_EQ(hours(at(2, 15), at(2, 45)), 0.25) << "both ends in one interval";
    EXPECT_DOUBLE_EQ(hours(at(1, 59, 59), at(2)), 1.0 / 3600);
}

TEST(OperatingTime, IsGivenInHoursMinutesOrSeconds) {
    for (const auto& [units, value] : std::vector<std::pair<const char*, double>>{{"h", 0.75},
                                                                                  {"Hours", 0.75},
                                                                                  {" hr ", 0.75},
                                                                                  {"min", 45.0},
                                                                                  {"MINUTES", 45.0},
                                                                                  {"s", 2700.0},
                                                                                  {"seconds", 2700.0},
                                                                                  {"secs", 2700.0}}) {
        SpanSite demo;
        demo.load(units, {});
        demo.site.write(timePid, at(1), {{value, 1}});
        demo.site.write(timePid, at(2), {{value, 1}});
        EXPECT_EQ(operatingHours(demo.site, timePid, at(0), at(23)), 1.5) << units;
    }
    for (const char* units : {"", "m", "ppm", "hh", "hs ago", "d", "ss s"})
        EXPECT_EQ(unitsPerHour(units), std::nullopt) << units;
}

TEST(OperatingTime, OfShorterAndOfCalendarIntervalsIsInProportionToTheirLength) {
    SpanSite demo;
    demo.load("min", {}, "15m");
    for (int i = 0; i < 4; ++i) demo.site.write(timePid, at(1, i * 15), {{15.0F, 1}});
    EXPECT_DOUBLE_EQ(operatingHours(demo.site, timePid, at(1, 5), at(1, 50)), 0.75);
    demo.load("h", {}, "1M");
    demo.site.write(timePid, timeOf({2024, 2, 1, 0, 0, 0}), {{290.0, 1}});
    EXPECT_DOUBLE_EQ(
        operatingHours(demo.site, timePid, timeOf({2024, 2, 11, 0, 0, 0}), timeOf({2024, 2, 13, 0, 0, 0})),
        20.0)
        << "two of the 29 days";
}

TEST(OperatingTime, ComesFromTheParameterThatTheSpecialValueNames) {
    SpanSite demo;
    demo.load("h", {{hourPid, special_value_id::operatingTime, timePid}});
    demo.site.write(timePid, at(1), {{0.5F, 1}});
    EXPECT_EQ(operatingTimeParameter(demo.site, hourPid), timePid);
    EXPECT_EQ(operatingTimeParameter(demo.site, timePid), timePid);
    EXPECT_EQ(operatingHours(demo.site, hourPid, at(0), at(9)), 0.5);
    const auto refused = [&](SpecialValue value) {
        demo.load("ppm", {{hourPid, special_value_id::operatingTime, std::move(value)}});
        return expectError(ErrorKind::badParameter,
                           [&] { (void)operatingHours(demo.site, hourPid, at(0), at(9)); });
    };
    refused(std::monostate());  // hourPid has no units of time itself
    refused(std::int32_t{123456789});
    refused(timePid);  // in ppm
    refused(std::string("500030000"));
    refused(static_cast<double>(timePid));
    const std::string sentence = refused(true);
    EXPECT_NE(sentence.find("1001"), std::string::npos) << sentence;
}

TEST(Availability, IsTheShareOfIntervalsWithANumberAndACodeThatCounts) {
    SpanSite demo;
    demo.site.write(hourPid, at(0), {{1.0F, 1}});
    demo.site.write(hourPid, at(1), {{2.0F, 12}});
    demo.site.write(hourPid, at(2), {{std::string("x"), 1}});
    demo.site.write(hourPid, at(3), {{Value(), 1}});
    demo.site.write(hourPid, at(4), {{1.0, -7}});
    const auto available = [&](SpecialValue codes) {
        demo.load("h", {{hourPid, special_value_id::availableCodes, std::move(codes)}});
        return availabilityPercent(demo.site, hourPid, at(0), at(8));
    };
    EXPECT_EQ(available(std::monostate()), 37.5);
    EXPECT_EQ(available(std::string()), 37.5);
    EXPECT_EQ(available(std::string("  ")), 37.5);
    EXPECT_EQ(available(std::string("1")), 12.5);
    EXPECT_EQ(available(std::string("1, 12 ,\t-7")), 37.5);
    EXPECT_EQ(available(std::string("99")), 0.0);
    for (const char* codes : {"1,", ",", "1;2", "one", "1 2", "2147483648", "+1", "0x1", "1.0"}) {
        const std::string sentence =
            expectError(ErrorKind::badParameter, [&] { (void)available(std::string(codes)); });
        EXPECT_NE(sentence.find("1002"), std::string::npos) << sentence;
    }
    expectError(ErrorKind::badParameter, [&] { (void)available(std::int32_t{1}); });
    expectError(ErrorKind::badParameter, [&] { (void)available(std::string("1\0", 2)); });
}

// Spans of all lengths over more than one piece of reading, against a loop over the stored items.
TEST(SpanFunctions, AgreeWithAPlainLoopOverRandomData) {
    SpanSite demo;
    demo.load("min",
              {{minutePid, special_value_id::availableCodes, std::string("0,2")},
               {minutePid, special_value_id::operatingTime, timePid}},
              "1m");
    std::mt19937 random(75'32);
    const int count = 250'000;
    std::vector<Item> items(static_cast<std::size_t>(count));
    for (Item& item : items) {
        item.code = static_cast<MonitorCode>(random() % 4);
        if (random() % 8 != 0) item.value = static_cast<float>(random() % 1000) / 1000;
        if (random() % 50 == 0) item.value = std::string("x");
    }
    const Time start = at(0);
    for (const Pid pid : {minutePid, timePid})
        demo.site.write(pid, Span::define(start, count, Interval::parse("1m")), runOf(items));
    for (int trial = 0; trial < 40; ++trial) {
        Time from = start + static_cast<Time>(random() % (count * 60U)) - hour;
        Time to = start + static_cast<Time>(random() % (count * 60U)) + hour;
        if (trial % 4 == 0) to = from + static_cast<Time>(random() % 300);
        if (to < from) std::swap(from, to);
        std::int64_t intervals = 0;
        std::int64_t numbers = 0;
        std::int64_t available = 0;
        double sum = 0;
        double minutes = 0;
        std::optional<double> least;
        std::optional<double> most;
        for (int i = -100; i < count + 100; ++i) {
            const Time begin = start + i * 60;
            const bool stored = i >= 0 && i < count;
            const Item item = stored ? items[static_cast<std::size_t>(i)] : Item{};
            const auto number = numberOf(item.value);
            const Time covered = std::min(begin + 60, to) - std::max(begin, from);
            if (number && covered > 0) minutes += *number * static_cast<double>(covered) / 60;
            if (begin < from || begin >= to) continue;
            ++intervals;
            if (!number) continue;
            ++numbers;
            sum += *number;
            if (item.code == 0 || item.code == 2) ++available;
            least = std::min(least.value_or(*number), *number);
            most = std::max(most.value_or(*number), *number);
        }
        const SpanSummary s = summarize(demo.site, minutePid, from, to);
        ASSERT_EQ(s.intervals, intervals) << from << " to " << to;
        ASSERT_EQ(s.count, numbers);
        ASSERT_EQ(s.sum(), Value(sum));
        ASSERT_EQ(numberOf(s.minimum), least);
        ASSERT_EQ(numberOf(s.maximum), most);
        ASSERT_NEAR(operatingHours(demo.site, minutePid, from, to), minutes / 60, 1e-9);
        const auto percent = availabilityPercent(demo.site, minutePid, from, to);
        ASSERT_EQ(percent.has_value(), intervals != 0);
        if (percent) {
            ASSERT_DOUBLE_EQ(*percent,
                             100.0 * static_cast<double>(available) / static_cast<double>(intervals));
        }
    }
}

TEST(SpanFunctions, DamageInTheSpanIsToldAndNotPassedOver) {
    SpanSite demo;
    demo.site.write(minutePid, at(1), {{1.0F, 1}});
    demo.site.database(DatabaseKind::dataShortTerm).execute("UPDATE chunk SET data = x'00'");
    expectError(ErrorKind::databaseDamaged, [&] { (void)summarize(demo.site, minutePid, at(0), at(2)); });
    EXPECT_NO_THROW(demo.site.write(hourPid, at(1), {{1.0F, 1}}))
        << "the transaction of the reading has ended";
    EXPECT_FALSE(demo.site.database(DatabaseKind::dataShortTerm).inTransaction());
}

}  // namespace
}  // namespace vtdn::store::test

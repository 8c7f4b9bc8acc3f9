// Data points: value, code and texts of an interval are listed together and written apart.

#include "store/data_points.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <limits>
#include <map>
#include <random>

#include "expect_error.h"
#include "items.h"
#include "point_site.h"

namespace vtdn::store::test {
namespace {

TEST(DataPoints, AreEveryIntervalWithAnythingStoredInOrderOfTime) {
    for (const bool short_term : {true, false}) {
        PointSite demo;
        const Pid pid = short_term ? minutePid : hourPid;
        const Interval& interval = short_term ? minute : hour;
        const Time start = timeOf({2007, 3, 1, 0, 0, 0});
        const auto place = [&](std::int64_t n) { return interval.step(start, n); };
        const auto write = [&](std::int64_t n, const WriteItem& item) {
            demo.site.write(pid, place(n), item);
        };
        // Both sides of a block's end, and blocks far apart.
        demo.writeOccurrence(pid, interval, place(-9000), excursionText("alone"));
        write(0, {{1.5F, 3}});
        write(1, {{Value(), 12}});
        demo.site.setExtra(pid, interval, place(2), strange, editor);
        write(3, {{std::int32_t{7}, 0}});
        demo.site.setExtra(pid, interval, place(3), "extra", editor);
        demo.writeOccurrence(pid, interval, place(3), excursionText(strange));
        write(1439, {{std::string("a\0b", 3), 1}});
        write(1440, {{0.25, -5}});
        demo.site.setExtra(pid, interval, place(9000), std::string(longestText, 'x'), editor);
        const Points expected{{place(-9000), {}, excursionText("alone"), ""},
                              {place(0), {1.5F, 3}, "", ""},
                              {place(1), {Value(), 12}, "", ""},
                              {place(2), {}, "", strange},
                              {place(3), {std::int32_t{7}, 0}, excursionText(strange), "extra"},
                              {place(1439), {std::string("a\0b", 3), 1}, "", ""},
                              {place(1440), {0.25, -5}, "", ""},
                              {place(9000), {}, "", std::string(longestText, 'x')}};
        EXPECT_EQ(demo.site.dataPoints(pid, interval, place(-9000), place(9000)), expected);
        EXPECT_EQ(demo.site.dataPoints(pid, interval, earliestTime, latestTime), expected);
        EXPECT_EQ(demo.reopen().dataPoints(pid, interval, earliestTime, latestTime), expected)
            << "after a restart";
        EXPECT_EQ(demo.site.database(short_term ? DatabaseKind::dataShortTerm : DatabaseKind::data)
                      .queryNumber("SELECT count(*) FROM data_point_text"),
                  4);
        EXPECT_TRUE(demo.site.check().empty());
    }
}

TEST(DataPoints, OfASpanAreThoseThatBeginInItWithBothEnds) {
    PointSite demo;
    for (const int n : {1, 2, 3}) demo.site.write(hourPid, at(n), {{std::int32_t{n}, n}});
    demo.site.setExtra(hourPid, hour, at(4), "text", editor);
    const auto hours = [&](Time first, Time last) {
        std::vector<Time> found;
        for (const DataPoint& point : demo.site.dataPoints(hourPid, hour, first, last))
            found.push_back((point.time - at(0)) / 3600);
        return found;
    };
    using Hours = std::vector<Time>;
    EXPECT_EQ(hours(at(1), at(4)), (Hours{1, 2, 3, 4}));
    EXPECT_EQ(hours(at(2), at(2)), (Hours{2}));
    EXPECT_EQ(hours(at(1) + 1, at(4) - 1), (Hours{2, 3})) << "times within an interval";
    EXPECT_EQ(hours(at(1) + 1, at(1) + 2), Hours()) << "no interval begins in it";
    EXPECT_EQ(hours(at(5), at(23)), Hours());
    EXPECT_EQ(hours(earliestTime, at(0)), Hours());
}

TEST(DataPoints, OfMonthsAreFoundByTheirFirstDay) {
    PointSite demo;
    const Time march = timeOf({2007, 3, 1, 0, 0, 0});
    const Time may = timeOf({2007, 5, 1, 0, 0, 0});
    demo.site.write(monthPid, march, {{1.5F, 3}});
    demo.site.setExtra(monthPid, month, may, "text", editor);
    EXPECT_EQ(demo.site.dataPoints(monthPid, month, march - 86'400, may + 86'400),
              (Points{{march, {1.5F, 3}, "", ""}, {may, {}, "", "text"}}));
    EXPECT_TRUE(demo.site.dataPoints(monthPid, month, march + 1, may - 1).empty());
}

TEST(DataPoints, OfNothingStoredAreNone) {
    PointSite demo;
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, earliestTime, latestTime).empty());
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.write(hourPid, at(1), {Item{}});
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, earliestTime, latestTime).empty())
        << "no value with code 0 is the same as never written";
}

TEST(DataPoints, TextsAndValuesAreWrittenApart) {
    PointSite demo;
    const std::string occurrence = excursionText("fan");
    const auto only = [&] { return demo.site.dataPoints(hourPid, hour, at(1), at(1)).at(0); };
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.writeOccurrence(hourPid, hour, at(1), occurrence);
    EXPECT_TRUE(demo.site.setExtra(hourPid, hour, at(1), "first", editor));
    EXPECT_TRUE(demo.site.setExtra(hourPid, hour, at(1), "second", editor));
    EXPECT_EQ(only(), (DataPoint{at(1), {1.5F, 3}, occurrence, "second"}));
    demo.site.write(hourPid, at(1), {{std::string("x"), 9}});
    EXPECT_EQ(only(), (DataPoint{at(1), {std::string("x"), 9}, occurrence, "second"}));
    demo.site.write(hourPid, at(1), {Item{}});
    EXPECT_EQ(only(), (DataPoint{at(1), {}, occurrence, "second"}));
    demo.site.setExtra(hourPid, hour, at(1), "", editor);
    EXPECT_EQ(only(), (DataPoint{at(1), {}, occurrence, ""}));
    {
        Load load(demo.site);
        load.append(hourPid, at(1), {2.5F, 1});
        load.commit();
    }
    EXPECT_EQ(only(), (DataPoint{at(1), {2.5F, 1}, occurrence, ""}));
}

TEST(DataPoints, AnExtraTextThatIsRemovedLeavesNothing) {
    PointSite demo;
    EXPECT_TRUE(demo.site.setExtra(hourPid, hour, at(1), "", editor)) << "what is not there can be removed";
    EXPECT_EQ(demo.site.database(DatabaseKind::data).queryNumber("SELECT count(*) FROM series"), 0);
    demo.site.setExtra(hourPid, hour, at(1), std::string("\0", 1), editor);
    EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(1), at(1)).size(), 1U) << "NUL is a text";
    demo.site.setExtra(hourPid, hour, at(1), "", editor);
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, at(1), at(1)).empty());
    EXPECT_EQ(demo.site.database(DatabaseKind::data).queryNumber("SELECT count(*) FROM data_point_text"), 0);
}

TEST(DataPoints, OccurrenceParametersHaveThemToo) {
    PointSite demo;
    demo.site.setExtra(occurrencePid, hour, at(1), "extra", editor);
    demo.writeOccurrence(occurrencePid, hour, at(2), excursionText("fan"));
    EXPECT_EQ(demo.site.dataPoints(occurrencePid, hour, at(0), at(3)),
              (Points{{at(1), {}, "", "extra"}, {at(2), {}, excursionText("fan"), ""}}));
}

TEST(DataPoints, ThatCannotBeAreRefused) {
    PointSite demo;
    const auto both = [&](ErrorKind kind, Pid pid, const Interval& interval) {
        const std::string listed =
            expectError(kind, [&] { (void)demo.site.dataPoints(pid, interval, at(1), at(2)); });
        const std::string written =
            expectError(kind, [&] { (void)demo.site.setExtra(pid, interval, at(1), "x", editor); });
        EXPECT_EQ(listed, written);
    };
    both(ErrorKind::unknownParameter, 123456789, hour);
    for (const Pid pid : {limitPid, averagePid, formulaPid}) both(ErrorKind::notWritable, pid, hour);
    both(ErrorKind::badInterval, bareOccurrencePid, hour);
    both(ErrorKind::badInterval, hourPid, minute);
    both(ErrorKind::badInterval, minutePid, hour);
    const auto span = [&](Time first, Time last) {
        return expectError(ErrorKind::outOfRange,
                           [&] { (void)demo.site.dataPoints(hourPid, hour, first, last); });
    };
    span(at(2), at(1));
    span(at(1) + 1, at(1));
    span(earliestTime - 1, at(1));
    span(at(1), latestTime + 1);
    span(std::numeric_limits<Time>::min(), std::numeric_limits<Time>::max());
    expectError(ErrorKind::offBoundary, [&] { demo.site.setExtra(hourPid, hour, at(1, 1), "x", editor); });
    for (const Time time : {earliestTime - 3600, latestTime + 1})
        expectError(ErrorKind::outOfRange, [&] { demo.site.setExtra(hourPid, hour, time, "x", editor); });
    expectError(ErrorKind::badValue,
                [&] { demo.site.setExtra(hourPid, hour, at(1), std::string(longestText + 1, 'x'), editor); });
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, earliestTime, latestTime).empty());
}

TEST(DataPoints, AgreeWithAMapAfterRandomWrites) {
    PointSite demo;
    demo.site.database(DatabaseKind::dataShortTerm).execute("PRAGMA synchronous = OFF");
    std::mt19937 random(42);
    std::map<Time, DataPoint> model;
    const auto text = [&] { return random() % 3 == 0 ? std::string() : std::to_string(random() % 100); };
    for (int i = 0; i < 1500; ++i) {
        const Time time = (static_cast<Time>(random() % 4000) - 2000) * 60;
        DataPoint& point = model[time];
        point.time = time;
        switch (random() % 3) {
            case 0:
                point.item = random() % 4 == 0 ? Item{} : Item{static_cast<float>(i), i % 5};
                demo.site.write(minutePid, time, {point.item});
                break;
            case 1:
                demo.site.setExtra(minutePid, minute, time, point.extra = text(), editor);
                break;
            default:
                demo.writeOccurrence(
                    minutePid, minute, time,
                    point.occurrence = random() % 3 == 0 ? std::string() : excursionText(text()));
        }
    }
    for (int trial = 0; trial < 100; ++trial) {
        const Time first =
            (static_cast<Time>(random() % 5000) - 2500) * 60 + static_cast<Time>(random() % 60);
        const Time last = first + static_cast<Time>(random() % 200'000);
        Points expected;
        for (const auto& [time, point] : model)
            if (time >= first && time <= last && point != DataPoint{time, {}, {}, {}})
                expected.push_back(point);
        ASSERT_EQ(demo.site.dataPoints(minutePid, minute, first, last), expected) << first << " to " << last;
    }
}

TEST(DataPoints, AHundredThousandAreListedWithoutAQueryForEach) {
    PointSite demo;
    constexpr std::int32_t count = 100'000;
    std::vector<Item> items(count);
    for (std::int32_t i = 0; i < count; ++i)
        items[static_cast<std::size_t>(i)] = {static_cast<float>(i), i % 7};
    demo.site.write(minutePid, Span::define(0, count, minute), runOf(items));
    Database& db = demo.site.database(DatabaseKind::dataShortTerm);
    {
        Transaction all(db);
        SeriesStore series(db);
        DataPointStore points(db, series);
        for (std::int32_t i = 0; i < count; i += 10)
            points.write({minutePid, minute}, Time{i} * 60, {.extra = std::to_string(i)}, editor);
        all.commit();
    }
    int statements = 0;
    const auto trace = [](unsigned, void* number, void*, void*) { return ++*static_cast<int*>(number), 0; };
    sqlite3_trace_v2(db.handle(), SQLITE_TRACE_STMT, trace, &statements);
    const Points points = demo.site.dataPoints(minutePid, minute, 0, Time{count - 1} * 60);
    sqlite3_trace_v2(db.handle(), 0, nullptr, nullptr);
    EXPECT_GT(statements, 0);
    EXPECT_LE(statements, 6) << "a snapshot, the number of the series, the values and the texts";
    ASSERT_EQ(points.size(), static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i)
        ASSERT_EQ(points[static_cast<std::size_t>(i)],
                  (DataPoint{Time{i} * 60, items[static_cast<std::size_t>(i)], "",
                             i % 10 == 0 ? std::to_string(i) : std::string()}));
}

}  // namespace
}  // namespace vtdn::store::test

// Listing occurrences: which parts pass, in which order, with what beside them.

#include "store/occurrences.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <random>

#include "expect_error.h"
#include "items.h"
#include "point_site.h"

namespace vtdn::store::test {
namespace {

/// A row with a text of its own.
struct Row {
    Pid pid;
    Interval interval;
    Time time;
    Item item;
    std::string text;

    friend bool operator==(const Row&, const Row&) = default;
};
using Rows = std::vector<Row>;

Row copyOf(const OccurrenceRow& row) {
    return {row.pid, row.interval, row.time, row.item, std::string(row.text)};
}
Rows copyOf(const OccurrenceList& list) {
    Rows rows;
    for (const OccurrenceRow& row : list.rows) rows.push_back(copyOf(row));
    return rows;
}

// Lists over the whole day unless told otherwise.
OccurrenceFilter day() {
    return {.first = at(0), .last = at(23)};
}

struct OccurrenceSite : PointSite {
    void put(Pid pid, const Interval& interval, Time time, const Occurrence& occurrence) {
        writeOccurrence(pid, interval, time, occurrenceText(occurrence));
    }
    Rows rows(const OccurrenceFilter& filter) {
        const OccurrenceList list = site.occurrences(filter);
        EXPECT_TRUE(list.damages.empty()) << list.damages[0];
        return copyOf(list);
    }
    std::vector<std::pair<Pid, Time>> places(const OccurrenceFilter& filter) {
        std::vector<std::pair<Pid, Time>> found;
        for (const Row& row : rows(filter)) found.emplace_back(row.pid, row.time);
        return found;
    }
};
using Places = std::vector<std::pair<Pid, Time>>;

TEST(Occurrences, AreDataPointsWithAPartAndTheirValues) {
    OccurrenceSite demo;
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.write(hourPid, at(2), {{2.5F, 4}});
    demo.site.setExtra(hourPid, hour, at(2), "extra", editor);
    demo.site.setExtra(hourPid, hour, at(3), "only an extra", editor);
    const Occurrence excursion = excursionOf(strange);
    demo.put(hourPid, hour, at(2), excursion);
    demo.put(hourPid, hour, at(4), both(excursion, downtimeOf("fan")));
    demo.put(minutePid, minute, at(2, 30), downtimeOf("cable"));
    const Rows expected{{hourPid, hour, at(2), {2.5F, 4}, occurrenceText(excursion)},
                        {minutePid, minute, at(2, 30), {}, occurrenceText(downtimeOf("cable"))},
                        {hourPid, hour, at(4), {}, occurrenceText(both(excursion, downtimeOf("fan")))}};
    EXPECT_EQ(demo.rows(day()), expected);
    EXPECT_EQ(copyOf(demo.reopen().occurrences(day())), expected) << "after a restart";
    EXPECT_TRUE(demo.site.check().empty());
    demo.writeOccurrence(hourPid, hour, at(2), "");
    EXPECT_EQ(demo.places(day()), (Places{{minutePid, at(2, 30)}, {hourPid, at(4)}}));
}

TEST(Occurrences, OfASpanAreThoseThatBeginInItWithBothEnds) {
    OccurrenceSite demo;
    for (const int n : {1, 2, 3}) demo.put(hourPid, hour, at(n), excursionOf("fan"));
    demo.put(monthPid, month, timeOf({2007, 3, 1, 0, 0, 0}), excursionOf("fan"));
    const auto hours = [&](Time first, Time last) {
        return demo.rows({.first = first, .last = last}).size();
    };
    EXPECT_EQ(hours(at(1), at(3)), 3U);
    EXPECT_EQ(hours(at(2), at(2)), 1U);
    EXPECT_EQ(hours(at(1) + 1, at(3) - 1), 1U);
    EXPECT_EQ(hours(at(4), latestTime), 0U);
    EXPECT_EQ(hours(earliestTime, latestTime), 4U);
}

TEST(Occurrences, ComeInOrderOfTimeOrOfTag) {
    OccurrenceSite demo;
    for (const Time time : {at(3), at(1), at(2)}) {
        demo.put(occurrencePid, hour, time, excursionOf("fan"));
        demo.put(hourPid, hour, time, excursionOf("fan"));
        demo.put(minutePid, minute, time, excursionOf("fan"));
    }
    EXPECT_EQ(demo.places(day()), (Places{{minutePid, at(1)},
                                          {hourPid, at(1)},
                                          {occurrencePid, at(1)},
                                          {minutePid, at(2)},
                                          {hourPid, at(2)},
                                          {occurrencePid, at(2)},
                                          {minutePid, at(3)},
                                          {hourPid, at(3)},
                                          {occurrencePid, at(3)}}));
    OccurrenceFilter by_tag = day();
    by_tag.by_tag = true;
    EXPECT_EQ(demo.places(by_tag), (Places{{minutePid, at(1)},
                                           {minutePid, at(2)},
                                           {minutePid, at(3)},
                                           {hourPid, at(1)},
                                           {hourPid, at(2)},
                                           {hourPid, at(3)},
                                           {occurrencePid, at(1)},
                                           {occurrencePid, at(2)},
                                           {occurrencePid, at(3)}}));
}

TEST(Occurrences, OfATagWithAnotherIntervalNowComeBehindTheShorterOnes) {
    OccurrenceSite demo;
    demo.put(hourPid, hour, at(1), excursionOf("fan"));
    std::vector<Parameter> all = demoParameters();
    all[1].interval = "1m";
    replaceParameters(demo.site.database(DatabaseKind::config), all);
    demo.site.flushCache();
    demo.put(hourPid, minute, at(1), downtimeOf("cable"));
    const Rows rows = demo.rows(day());
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].interval, minute);
    EXPECT_EQ(rows[1].interval, hour);
}

TEST(Occurrences, OfTagsThatTheSiteDoesNotKnowAnyMoreAreNotListed) {
    OccurrenceSite demo;
    demo.put(occurrencePid, hour, at(1), excursionOf("fan"));
    replaceParameters(demo.site.database(DatabaseKind::config), demoParameters());
    demo.site.flushCache();
    EXPECT_TRUE(demo.rows(day()).empty());
}

// Every combination of what is there and what is asked for.
TEST(Occurrences, AreListedWhenAPartIsWantedAndNotLeftOut) {
    OccurrenceSite demo;
    struct Point {
        int excursion;  // 0 none, 1 counted, 2 excludable
        int downtime;
    };
    std::map<Time, Point> points;
    for (int excursion = 0; excursion < 3; ++excursion)
        for (int downtime = 0; downtime < 3; ++downtime) {
            const Time time = at(excursion * 3 + downtime);
            points[time] = {excursion, downtime};
            Occurrence occurrence;
            if (excursion != 0) occurrence = excursionOf("e", occurrencePid, excursion == 2);
            if (downtime != 0)
                occurrence = both(occurrence, downtimeOf("d", bareOccurrencePid, downtime == 2));
            demo.put(hourPid, hour, time, occurrence);
        }
    for (const bool excursions : {false, true})
        for (const bool downtimes : {false, true})
            for (const auto exclude :
                 {ExcludeFilter::none, ExcludeFilter::excludable, ExcludeFilter::counted}) {
                Places expected;
                const auto passes = [&](int part) {
                    return part == 1   ? exclude != ExcludeFilter::counted
                           : part == 2 ? exclude != ExcludeFilter::excludable
                                       : false;
                };
                for (const auto& [time, point] : points)
                    if ((excursions && passes(point.excursion)) || (downtimes && passes(point.downtime)))
                        expected.emplace_back(hourPid, time);
                OccurrenceFilter filter = day();
                filter.excursions = excursions;
                filter.downtimes = downtimes;
                filter.exclude = exclude;
                EXPECT_EQ(demo.places(filter), expected)
                    << excursions << downtimes << static_cast<int>(exclude);
            }
}

TEST(Occurrences, AreChosenByUnitTagAndThePidOfAPart) {
    OccurrenceSite demo;
    constexpr Pid otherUnit = 1904030000;
    std::vector<Parameter> all = demoParameters();
    all.push_back(stored(otherUnit, "1h"));
    for (const Pid pid : {occurrencePid, bareOccurrencePid}) {
        all.push_back(stored(pid, ""));
        all.back().io_type = io_type::occurrence;
    }
    replaceParameters(demo.site.database(DatabaseKind::config), all);
    demo.site.flushCache();
    demo.put(hourPid, hour, at(1), excursionOf("fan"));
    demo.put(minutePid, minute, at(2), downtimeOf("cable"));
    demo.put(otherUnit, hour, at(3), both(excursionOf("fan"), downtimeOf("cable")));
    const auto chosen = [&](std::optional<std::vector<std::int32_t>> numbers) {
        OccurrenceFilter filter = day();
        filter.units_or_tags = std::move(numbers);
        std::vector<Time> times;
        for (const auto& [pid, time] : demo.places(filter)) times.push_back((time - at(0)) / 3600);
        return times;
    };
    using Hours = std::vector<Time>;
    using Numbers = std::vector<std::int32_t>;
    EXPECT_EQ(chosen(std::nullopt), (Hours{1, 2, 3}));
    EXPECT_EQ(chosen(Numbers{}), Hours{});
    EXPECT_EQ(chosen(Numbers{5}), (Hours{1, 2}));
    EXPECT_EQ(chosen(Numbers{19}), Hours{3});
    EXPECT_EQ(chosen(Numbers{0, 1, 18}), Hours{});
    EXPECT_EQ(chosen(Numbers{19, 5, 19}), (Hours{1, 2, 3}));
    EXPECT_EQ(chosen(Numbers{hourPid}), Hours{1});
    EXPECT_EQ(chosen(Numbers{otherUnit, minutePid}), (Hours{2, 3}));
    EXPECT_EQ(chosen(Numbers{occurrencePid}), (Hours{1, 3})) << "the PID of an excursion";
    EXPECT_EQ(chosen(Numbers{bareOccurrencePid}), (Hours{2, 3})) << "the PID of a downtime";
    EXPECT_EQ(chosen(Numbers{monthPid}), Hours{});
    for (const std::int32_t unknown : {-1, 20, 123456789})
        expectError(ErrorKind::unknownParameter, [&] { (void)chosen(Numbers{5, unknown}); });
    OccurrenceFilter downtimes = day();
    downtimes.excursions = false;
    downtimes.units_or_tags = Numbers{occurrencePid};
    EXPECT_TRUE(demo.rows(downtimes).empty()) << "the part of that PID does not pass";
}

TEST(Occurrences, OfASpanThatCannotBeAreRefused) {
    OccurrenceSite demo;
    const auto refused = [&](Time first, Time last) {
        expectError(ErrorKind::outOfRange, [&] { (void)demo.rows({.first = first, .last = last}); });
    };
    refused(at(2), at(1));
    refused(earliestTime - 1, at(1));
    refused(at(1), latestTime + 1);
    EXPECT_TRUE(demo.rows({.first = at(1), .last = at(1)}).empty());
    EXPECT_TRUE(demo.rows({.first = earliestTime, .last = latestTime}).empty());
}

TEST(Occurrences, AHundredThousandAreListedWithoutAQueryForEach) {
    OccurrenceSite demo;
    constexpr std::int32_t count = 100'000;
    std::vector<Item> items(count);
    for (std::int32_t i = 0; i < count; ++i)
        items[static_cast<std::size_t>(i)] = {static_cast<float>(i), i % 7};
    demo.site.write(minutePid, Span::define(0, count, minute), runOf(items));
    {
        Load load(demo.site);
        for (std::int32_t i = 0; i < count; ++i)
            load.writeOccurrence(minutePid, Time{i} * 60, downtimeOf(std::to_string(i)), editor);
        load.commit();
    }
    int statements = 0;
    const auto trace = [](unsigned, void* number, void*, void*) { return ++*static_cast<int*>(number), 0; };
    sqlite3* db = demo.site.database(DatabaseKind::dataShortTerm).handle();
    sqlite3_trace_v2(db, SQLITE_TRACE_STMT, trace, &statements);
    const OccurrenceList list = demo.site.occurrences({.first = 0, .last = Time{count} * 60});
    sqlite3_trace_v2(db, 0, nullptr, nullptr);
    EXPECT_LE(statements, 5 + count / slotsPerChunk + 1)
        << "a snapshot, the series, its number, the texts; one for each block of values";
    EXPECT_TRUE(list.damages.empty());
    ASSERT_EQ(list.rows.size(), static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i)
        ASSERT_EQ(copyOf(list.rows[static_cast<std::size_t>(i)]),
                  (Row{minutePid, minute, Time{i} * 60, items[static_cast<std::size_t>(i)],
                       occurrenceText(downtimeOf(std::to_string(i)))}));
}

TEST(Occurrences, AgreeWithAMapAfterRandomWrites) {
    OccurrenceSite demo;
    for (const DatabaseKind kind : {DatabaseKind::data, DatabaseKind::dataShortTerm})
        demo.site.database(kind).execute("PRAGMA synchronous = OFF");
    std::mt19937 random(41);
    std::map<std::pair<Time, Pid>, std::pair<Item, Occurrence>> model;
    const std::vector<std::pair<Pid, Interval>> tags{{minutePid, minute}, {hourPid, hour}, {monthPid, month}};
    for (int i = 0; i < 1200; ++i) {
        const auto& [pid, interval] = tags[random() % tags.size()];
        const Time time = interval.begin(interval.index(at(0)) + static_cast<std::int64_t>(random() % 3000));
        auto& [item, occurrence] = model[{time, pid}];
        if (random() % 3 == 0) {
            item = random() % 4 == 0 ? Item{} : Item{static_cast<float>(i), i % 5};
            demo.site.write(pid, time, {item});
            continue;
        }
        occurrence = {};
        if (random() % 2 == 0) occurrence = excursionOf(std::to_string(i), occurrencePid, random() % 2 == 0);
        if (random() % 2 == 0)
            occurrence = both(occurrence, downtimeOf("d", bareOccurrencePid, random() % 2 == 0));
        demo.put(pid, interval, time, occurrence);
    }
    for (int trial = 0; trial < 60; ++trial) {
        OccurrenceFilter filter;
        filter.first = at(0) + static_cast<Time>(random() % 3'000'000) - 100'000;
        filter.last = filter.first + static_cast<Time>(random() % 20'000'000);
        filter.excursions = random() % 3 != 0;
        filter.downtimes = random() % 3 != 0;
        filter.exclude = static_cast<ExcludeFilter>(random() % 3);
        filter.by_tag = random() % 2 == 0;
        const auto passes = [&](const std::optional<OccurrencePart>& part) {
            return part && (filter.exclude == ExcludeFilter::none ||
                            part->excludable == (filter.exclude == ExcludeFilter::counted));
        };
        Rows expected;
        for (const auto& [pid, interval] : tags)
            for (const auto& [place, point] : model) {
                const auto& [time, tag] = place;
                const auto& [item, occurrence] = point;
                if (tag != pid || time < filter.first || time > filter.last) continue;
                if ((filter.excursions && passes(occurrence.excursion)) ||
                    (filter.downtimes && passes(occurrence.downtime)))
                    expected.push_back({pid, interval, time, item, occurrenceText(occurrence)});
            }
        if (!filter.by_tag)
            std::stable_sort(expected.begin(), expected.end(),
                             [](const Row& a, const Row& b) { return a.time < b.time; });
        ASSERT_EQ(demo.rows(filter), expected);
    }
}

}  // namespace
}  // namespace vtdn::store::test

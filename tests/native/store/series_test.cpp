// Stored series: single intervals, runs, masks and loads, compared with a plain array of what should be
// there.

#include "store/series.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>

#include "demo_site.h"
#include "expect_error.h"
#include "items.h"

namespace vtdn::store::test {
namespace {

struct Stored {
    TempFolder folder;
    Database db = createDatabase(DatabaseKind::data, folder.file("data.db"), "S");
    SeriesStore series{db};
};

const SeriesKey minutes{minutePid, Interval::parse("1m")};
constexpr Time day = 39'000 * secondsPerDay;

std::vector<Item> readItems(SeriesStore& series, const SeriesKey& key, Time start, std::int32_t count) {
    store::Run run;
    series.read(key, start, count, run);
    EXPECT_EQ(run.count(), count);
    return itemsOf(run);
}

TEST(Series, WhatWasNeverWrittenIsNoValueWithCodeZero) {
    Stored s;
    EXPECT_EQ(s.series.read(minutes, day), Item{});
    EXPECT_EQ(readItems(s.series, minutes, day, 3), std::vector<Item>(3));
    s.series.write(minutes, day + 600, {{1.5F, 2}});
    EXPECT_EQ(s.series.read(minutes, day), Item{});
    EXPECT_EQ(s.series.read(minutes, day + 600), (Item{1.5F, 2}));
}

TEST(Series, AMaskWritesTheValueTheCodeBothOrNothing) {
    Stored s;
    s.series.write(minutes, day, {{1.5F, 2}});
    s.series.write(minutes, day, {{Value(2.5F), 9}, true, false});
    EXPECT_EQ(s.series.read(minutes, day), (Item{2.5F, 2}));
    s.series.write(minutes, day, {{Value(), 5}, false, true});
    EXPECT_EQ(s.series.read(minutes, day), (Item{2.5F, 5}));
    s.series.write(minutes, day, {{Value(9.5F), 9}, false, false});
    EXPECT_EQ(s.series.read(minutes, day), (Item{2.5F, 5}));
    s.series.write(minutes, day, {{Value(), 0}});
    EXPECT_EQ(s.series.read(minutes, day), Item{});
}

TEST(Series, TakesUpNoSpaceAgainWhenEmptied) {
    Stored s;
    s.series.write(minutes, day, {{1.5F, 2}});
    s.series.write(minutes, day, {Item{}});
    EXPECT_EQ(s.db.queryNumber("SELECT count(*) FROM chunk"), 0);
}

TEST(Series, AreKeptApartByParameterAndInterval) {
    Stored s;
    const SeriesKey hours{minutePid, Interval::parse("1h")};
    const SeriesKey others{hourPid, Interval::parse("1m")};
    s.series.write(minutes, day, {{1, 1}});
    s.series.write(hours, day, {{2, 2}});
    s.series.write(others, day, {{3, 3}});
    EXPECT_EQ(s.series.read(minutes, day), (Item{1, 1}));
    EXPECT_EQ(s.series.read(hours, day), (Item{2, 2}));
    EXPECT_EQ(s.series.read(others, day), (Item{3, 3}));
}

TEST(Series, EveryIntervalLengthWorksFromTheFirstDayToTheLast) {
    Stored s;
    for (const char* text : {"1s", "90s", "1m", "15m", "1h", "8h", "1d", "1M", "3M", "12M"}) {
        const SeriesKey key{minutePid, Interval::parse(text)};
        const Time first = key.interval.begin(key.interval.index(earliestTime));
        const Time last = key.interval.begin(key.interval.index(latestTime));
        for (const Time time : {first, Time{-9'999 * secondsPerDay}, Time{0}, last}) {
            const Time begin = key.interval.begin(key.interval.index(time));
            s.series.write(key, begin, {{static_cast<double>(time), 3}});
            EXPECT_EQ(s.series.read(key, begin), (Item{static_cast<double>(time), 3})) << text;
        }
    }
    EXPECT_TRUE(s.series.check().empty());
}

TEST(Series, TimesOffTheIntervalAreRefused) {
    Stored s;
    store::Run run;
    expectError(ErrorKind::offBoundary, [&] { (void)s.series.read(minutes, day + 1); });
    expectError(ErrorKind::offBoundary, [&] { s.series.read(minutes, day + 59, 2, run); });
    expectError(ErrorKind::offBoundary, [&] { s.series.write(minutes, day + 1, {{1.0F, 1}}); });
    const SeriesKey quarters{minutePid, Interval::parse("3M")};
    expectError(ErrorKind::offBoundary, [&] {
        (void)s.series.read(quarters, timeOf({2007, 2, 1, 0, 0, 0}));
    });
    EXPECT_EQ(s.db.queryNumber("SELECT count(*) FROM chunk"), 0);
}

// Random writes of all forms against a map, then random reads of both forms.
TEST(Series, AgreesWithAPlainMapAfterAThousandRandomWrites) {
    Stored s;
    s.db.execute("PRAGMA synchronous = OFF");  // a thousand commits, and no crash in this test
    std::map<std::int64_t, Item> model;
    std::mt19937 random(20070325);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto randomItem = [&]() -> Item {
        switch (pick(6)) {
            case 0:
                return {std::monostate(), pick(3)};
            case 1:
                return {std::int32_t{pick(1000)}, pick(3)};
            case 2:
                return {static_cast<double>(pick(1000)) / 3, pick(3)};
            case 3:
                return {std::string(static_cast<std::size_t>(pick(9)), 'x'), pick(3)};
            default:
                return {static_cast<float>(pick(1000)) / 3, pick(3)};
        }
    };
    const int span = 5 * slotsPerChunk;
    for (int trial = 0; trial < 1000; ++trial) {
        const int first = pick(span) - span / 2;
        const std::size_t count =
            pick(4) == 0 ? 1 + static_cast<std::size_t>(pick(3000)) : 1 + static_cast<std::size_t>(pick(5));
        std::vector<WriteItem> items(count);
        for (WriteItem& item : items) item = {randomItem(), pick(4) != 0, pick(4) != 0};
        if (count == 1)
            s.series.write(minutes, Time{first} * 60, items[0]);
        else
            writeItems(s.series, minutes, Time{first} * 60, items);
        for (std::size_t i = 0; i < count; ++i) {
            Item& item = model[first + static_cast<std::int64_t>(i)];
            if (items[i].value) item.value = items[i].item.value;
            if (items[i].code) item.code = items[i].item.code;
        }
    }
    for (int trial = 0; trial < 100; ++trial) {
        const int first = pick(2 * span) - span;
        const int count = 1 + pick(2 * span);
        const std::vector<Item> items = readItems(s.series, minutes, Time{first} * 60, count);
        for (int i = 0; i < count; ++i) {
            const auto found = model.find(first + i);
            ASSERT_EQ(items[static_cast<std::size_t>(i)], found == model.end() ? Item{} : found->second)
                << first + i;
        }
    }
    EXPECT_TRUE(s.series.check().empty());
}

TEST(Series, AYearOfSinglesIsOneSegmentAndTakesUnderNineBytesAValue) {
    Stored s;
    const std::size_t count = 525'600;
    std::vector<float> values(count);
    std::vector<MonitorCode> codes(count, 1);
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = static_cast<float>(i % 977) / 10;
        if (i % 3000 > 2900) codes[i] = 12;
    }
    store::Run run;
    const auto n = static_cast<std::int32_t>(count);
    std::memcpy(run.appendNumbers(ValueKind::single, n), values.data(), count * sizeof(float));
    std::memcpy(run.appendCodes(n), codes.data(), count * sizeof(MonitorCode));
    run.finish(n);
    s.series.write(minutes, day, run);
    s.series.read(minutes, day, static_cast<std::int32_t>(count), run);
    ASSERT_EQ(run.values().size(), 1U);
    EXPECT_TRUE(std::equal(values.begin(), values.end(), run.singles(run.values()[0]).begin()));
    for (std::size_t i = 0; i < count; i += 50) ASSERT_EQ(run.code(static_cast<std::int32_t>(i)), codes[i]);
    s.db.execute("PRAGMA wal_checkpoint(TRUNCATE)");
    const auto bytes = std::filesystem::file_size(s.folder.file("data.db"));
    EXPECT_LT(static_cast<double>(bytes) / static_cast<double>(count), 9.0);
}

TEST(Series, AnAppenderMergesWithWhatIsThereAndRefusesTimesThatGoBack) {
    Stored s;
    s.series.write(minutes, day + 120, {{7, 7}});
    {
        Transaction transaction(s.db);
        SeriesStore::Appender appender(s.series, minutes);
        appender.append(day, {1, 1});
        appender.append(day + 60, {2, 2});
        appender.append(day + secondsPerDay, {3, 3});
        expectError(ErrorKind::outOfRange, [&] { appender.append(day + secondsPerDay, {4, 4}); });
        expectError(ErrorKind::outOfRange, [&] { appender.append(day, {4, 4}); });
        expectError(ErrorKind::offBoundary, [&] { appender.append(day + secondsPerDay + 90, {4, 4}); });
        appender.finish();
        transaction.commit();
    }
    EXPECT_EQ(readItems(s.series, minutes, day, 3), (std::vector<Item>{{1, 1}, {2, 2}, {7, 7}}));
    EXPECT_EQ(s.series.read(minutes, day + secondsPerDay), (Item{3, 3}));
}

TEST(Series, AnAppenderThatGivesAWholeChunkMendsADamagedOne) {
    Stored s;
    s.series.write(minutes, day, {{1.5F, 1}});
    s.db.execute("UPDATE chunk SET data = x'00'");
    Transaction transaction(s.db);
    SeriesStore::Appender part(s.series, minutes);
    part.append(day, {2.5F, 2});
    expectError(ErrorKind::databaseDamaged, [&] { part.finish(); });
    SeriesStore::Appender whole(s.series, minutes);
    for (int i = 0; i < slotsPerChunk; ++i) whole.append(day + i * 60, {2.5F, 2});
    whole.finish();
    transaction.commit();
    EXPECT_TRUE(s.series.check().empty());
    EXPECT_EQ(s.series.read(minutes, day), (Item{2.5F, 2}));
}

TEST(Series, DamageIsReportedWithParameterAndPeriodAndLeavesTheRestReadable) {
    Stored s;
    for (int i = 0; i < 3; ++i) s.series.write(minutes, day + i * secondsPerDay, {{1.5F, i + 1}});
    s.db.execute(
        "UPDATE chunk SET data = CAST(substr(data, 1, 8) || x'ff' || substr(data, 10) AS BLOB) "
        "WHERE id = (SELECT id FROM chunk ORDER BY id LIMIT 1 OFFSET 1)");
    const std::string sentence =
        expectError(ErrorKind::databaseDamaged, [&] { (void)s.series.read(minutes, day + secondsPerDay); });
    EXPECT_NE(sentence.find("5-040-1-00-00"), std::string::npos) << sentence;
    EXPECT_NE(sentence.find(timeText(day + secondsPerDay)), std::string::npos) << sentence;
    EXPECT_EQ(s.series.read(minutes, day), (Item{1.5F, 1}));
    EXPECT_EQ(s.series.read(minutes, day + 2 * secondsPerDay), (Item{1.5F, 3}));
    EXPECT_EQ(s.series.check(), (std::vector<std::string>{sentence}));
    expectError(ErrorKind::databaseDamaged, [&] {
        s.series.write(minutes, day + secondsPerDay + 60, {{2.0F, 1}});
    });
    const std::vector<Item> whole(static_cast<std::size_t>(slotsPerChunk), Item{2.0F, 1});
    s.series.write(minutes, day + secondsPerDay, runOf(whole));
    EXPECT_TRUE(s.series.check().empty()) << "what is all written anew needs nothing of what was there";
}

}  // namespace
}  // namespace vtdn::store::test

// A whole site: values of every kind come back, from this connection and from another one.

#include "store/site.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "demo_site.h"
#include "expect_error.h"
#include "items.h"
#include "store/time.h"

namespace vtdn::store::test {
namespace {

Time at(int hour, int minute = 0) {
    return timeOf({2007, 3, 25, hour, minute, 0});
}

TEST(Site, KeepsTheKindOfEveryValue) {
    DemoSite demo;
    const std::vector<Value> values{std::monostate(),
                                    std::int32_t{40000},
                                    0.1F,
                                    0.1,
                                    std::string("N/A"),
                                    std::string("a\0b", 3),
                                    std::string("\xF0\x9F\x8F\xAD")};
    int hour = 0;
    for (const Value& value : values) demo.site.write(hourPid, at(hour++), {{value, 7}});
    Site other = demo.reopen();
    hour = 0;
    for (const Value& value : values) EXPECT_EQ(other.read(hourPid, at(hour++)), (Item{value, 7}));
}

TEST(Site, AWriteByOneConnectionIsSeenByTheNextReadOfAnother) {
    DemoSite demo;
    Site other = demo.reopen();
    EXPECT_EQ(other.read(minutePid, at(1)), Item{});
    demo.site.write(minutePid, at(1), {{1.5F, 3}});
    EXPECT_EQ(other.read(minutePid, at(1)), (Item{1.5F, 3}));
}

TEST(Site, ShortIntervalsAreInTheShortTermDatabase) {
    DemoSite demo;
    demo.site.write(minutePid, at(1), {{1.5F, 3}});
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.write(monthPid, timeOf({2007, 3, 1, 0, 0, 0}), {{1.5F, 3}});
    EXPECT_EQ(demo.site.database(DatabaseKind::dataShortTerm).queryNumber("SELECT count(*) FROM chunk"), 1);
    EXPECT_EQ(demo.site.database(DatabaseKind::data).queryNumber("SELECT count(*) FROM chunk"), 2);
}

TEST(Site, OnlyDatabaseParametersAreWritten) {
    DemoSite demo;
    for (const Pid pid : {limitPid, averagePid, formulaPid})
        expectError(ErrorKind::notWritable, [&] { demo.site.write(pid, at(1), {{1.0F, 1}}); });
    expectError(ErrorKind::unknownParameter, [&] { demo.site.write(123456789, at(1), {{1.0F, 1}}); });
    const Span minutes = Span::define(at(1), 2, Interval::parse("1m"));
    const store::Run two = runOf(std::vector<Item>(2));
    expectError(ErrorKind::badInterval, [&] { demo.site.write(hourPid, minutes, two); });
    expectError(ErrorKind::outOfRange, [&] { demo.site.write(minutePid, minutes, runOf({})); });
    const std::vector<WriteParts> three(3, WriteParts::both);
    expectError(ErrorKind::outOfRange, [&] { demo.site.write(minutePid, minutes, two, three); });
}

TEST(Site, NumbersThatAreNoneAndEndlessTextsAreNotStored) {
    DemoSite demo;
    const double infinite = std::numeric_limits<double>::infinity();
    for (const Value& value : {Value(infinite), Value(-infinite), Value(std::nan("")), Value(std::nanf("")),
                               Value(static_cast<float>(infinite)), Value(std::string(longestText + 1, 'x'))})
        expectError(ErrorKind::badValue, [&] { demo.site.write(minutePid, at(1), {{value, 1}}); });
    const Span two = Span::define(at(1), 2, Interval::parse("1m"));
    std::vector<WriteItem> items{{{1.0F, 1}}, {{infinite, 1}}};
    expectError(ErrorKind::badValue, [&] { writeItems(demo.site, minutePid, two, items); });
    EXPECT_EQ(demo.site.read(minutePid, at(1)), Item{}) << "nothing of a refused run is stored";
    items[1].value = false;
    writeItems(demo.site, minutePid, two, items);
    EXPECT_EQ(demo.site.read(minutePid, at(1)), (Item{1.0F, 1}))
        << "what the mask leaves out is not looked at";
}

TEST(Site, AConstantHasItsValueAtEveryTimeAndInterval) {
    DemoSite demo;
    EXPECT_EQ(demo.site.read(limitPid, at(1, 1) + 1), (Item{0.2F, 0}));
    store::Run run;
    demo.site.read(limitPid, Span::define(at(0), 1000, Interval::parse("7d")), run);
    ASSERT_EQ(run.values().size(), 1U);
    EXPECT_EQ(run.item(999), (Item{0.2F, 0}));
}

TEST(Site, AnAverageIsOfTheNumbersInItsInterval) {
    DemoSite demo;
    demo.site.write(minutePid, at(1, 0), {{1.0F, 1}});
    demo.site.write(minutePid, at(1, 1), {{std::int32_t{2}, 1}});
    demo.site.write(minutePid, at(1, 2), {{std::string("5"), 1}});  // a text is no number
    demo.site.write(minutePid, at(1, 3), {{Value(), 12}});
    demo.site.write(minutePid, at(1, 59), {{6.0, 3}});
    demo.site.write(minutePid, at(2, 0), {{100.0, 3}});
    EXPECT_EQ(demo.site.read(averagePid, at(1)), (Item{3.0, 12}));
    EXPECT_EQ(demo.site.read(averagePid, at(0)), Item{});
    EXPECT_EQ(demo.site.read(averagePid, at(2)), (Item{100.0, 3}));
    expectError(ErrorKind::offBoundary, [&] { (void)demo.site.read(averagePid, at(1, 1)); });
}

TEST(Site, AnExtremeIsTheValueItself) {
    DemoSite demo;
    demo.site.write(hourPid, at(1), {{0.1F, 1}});
    demo.site.write(hourPid, at(2), {{0.3F, 1}});
    demo.site.write(hourPid, at(23), {{-0.5, 1}});
    EXPECT_EQ(demo.site.read(dayMaximumPid, at(0)), (Item{0.3F, 1}));
}

TEST(Site, AFormulaTakesConstantsAndComputedParameters) {
    DemoSite demo;
    demo.site.write(hourPid, at(1), {{std::int32_t{10}, 4}});
    demo.site.write(minutePid, at(1, 5), {{1.5F, 9}});
    const Item item = demo.site.read(formulaPid, at(1));
    EXPECT_EQ(item, (Item{10.0 * static_cast<double>(0.2F) + 1.5, 9}));
    demo.site.write(minutePid, at(1, 5), {{std::string("off"), 9}});
    EXPECT_EQ(demo.site.read(formulaPid, at(1)), (Item{Value(), 9}));
}

TEST(Site, TheCodeOfAComputedValueIsTheOneOfTheHighestRank) {
    DemoSite demo;
    replaceMonitorCodes(
        demo.site.database(DatabaseKind::config),
        std::vector<MonitorCodeName>{{1, "OK", "", 1}, {5, "BAD", "", 900}, {12, "SUB", "", 2}});
    demo.site.flushCache();
    demo.site.write(minutePid, at(1, 0), {{1.0F, 12}});
    EXPECT_EQ(demo.site.read(averagePid, at(1)).code, 12);
    demo.site.write(minutePid, at(1, 1), {{1.0F, 5}});
    demo.site.write(minutePid, at(1, 2), {{1.0F, 12}});
    EXPECT_EQ(demo.site.read(averagePid, at(1)).code, 5);
}

TEST(Site, ALongerIntervalFollowsTheRollUpRuleOrIsRefused) {
    DemoSite demo;
    for (int hour = 0; hour < 24; ++hour) demo.site.write(hourPid, at(hour), {{std::int32_t{hour}, 1}});
    store::Run run;
    demo.site.read(hourPid, Span::define(at(0), 2, Interval::parse("1d")), run);
    EXPECT_EQ(run.item(0), (Item{276.0, 1}));
    EXPECT_EQ(run.item(1), Item{});
    demo.site.read(hourPid, Span::define(timeOf({2007, 1, 1, 0, 0, 0}), 12, Interval::parse("1M")), run);
    EXPECT_EQ(run.item(2), (Item{276.0, 1}));
    EXPECT_EQ(run.item(11), Item{});
    for (const char* text : {"1m", "90s"})
        expectError(ErrorKind::badInterval,
                    [&] { demo.site.read(hourPid, Span::define(at(0), 2, Interval::parse(text)), run); });
    const std::string sentence = expectError(ErrorKind::badInterval, [&] {
        demo.site.read(minutePid, Span::define(at(0), 2, Interval::parse("1h")), run);
    });
    EXPECT_NE(sentence.find("Ask for 1m"), std::string::npos) << sentence;
    demo.site.read(hourPid, Span::define(at(0) - 6 * secondsPerDay, 1, Interval::parse("7d")), run);
    EXPECT_EQ(run.item(0), (Item{276.0, 1})) << "weeks may begin at any midnight";
}

TEST(Site, RunsOverManyBlocksAreTheSameAsSingleReads) {
    DemoSite demo;
    const std::int32_t minutes = 300 * 1440;
    std::vector<Item> items(static_cast<std::size_t>(minutes));
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i] = {static_cast<float>(i % 1000), static_cast<MonitorCode>(i % 7)};
    const Time start = timeOf({2007, 1, 1, 0, 0, 0});
    demo.site.write(minutePid, Span::define(start, minutes, Interval::parse("1m")), runOf(items));
    store::Run run;
    demo.site.read(averagePid, Span::define(start, minutes / 60, Interval::parse("1h")), run);
    for (const std::int32_t i : {0, 1, 3332, 3333, 3334, 6666, 7199})
        EXPECT_EQ(run.item(i), demo.site.read(averagePid, start + i * 3600)) << i;
}

TEST(Site, ALentRunMayOutliveTheSite) {
    std::shared_ptr<store::Run> run;
    {
        DemoSite demo;
        demo.site.write(minutePid, at(1), {{1.5F, 3}});
        const store::Run* first = demo.site.borrowRun().get();
        run = demo.site.borrowRun();
        EXPECT_EQ(run.get(), first) << "what was given back is lent again";
        demo.site.read(minutePid, Span::define(at(1), 1, Interval::parse("1m")), *run);
    }
    EXPECT_EQ(run->item(0), (Item{1.5F, 3}));
}

TEST(Load, IsThereWholeOrNotAtAll) {
    DemoSite demo;
    Site other = demo.reopen();
    {
        Load load(demo.site);
        std::vector<Parameter> all = demoParameters();
        all.push_back(stored(777030000, "1h"));
        load.replaceParameters(all);
        load.append(777030000, at(1), {1.5F, 1});
        load.append(minutePid, at(1), {1.5F, 1});
        EXPECT_EQ(other.read(minutePid, at(1)), Item{}) << "not before the commit";
    }
    EXPECT_FALSE(demo.site.parameters().contains(777030000));
    EXPECT_EQ(demo.site.read(minutePid, at(1)), Item{});
    {
        Load load(demo.site);
        load.replaceMonitorCodes(std::vector<MonitorCodeName>{{1, "OK", "Measured", 1}});
        for (int minute = 0; minute < 60; ++minute) {
            load.append(minutePid, at(1, minute), {1.5F, 1});
            load.append(hourPid, at(0) + minute * 3600, {std::int32_t{minute}, 1});
        }
        expectError(ErrorKind::outOfRange, [&] { load.append(minutePid, at(1), {1.5F, 1}); });
        expectError(ErrorKind::notWritable, [&] { load.append(limitPid, at(1), {1.5F, 1}); });
        expectError(ErrorKind::unknownParameter, [&] { load.append(123456789, at(1), {1.5F, 1}); });
        load.commit();
    }
    EXPECT_EQ(other.read(minutePid, at(1, 59)), (Item{1.5F, 1}));
    EXPECT_EQ(other.read(hourPid, at(0) + 59 * 3600), (Item{std::int32_t{59}, 1}));
    other.flushCache();
    EXPECT_TRUE(other.monitorCodes().contains(1));
}

TEST(Site, ChecksItself) {
    DemoSite demo;
    demo.site.write(minutePid, at(1), {{1.5F, 3}});
    EXPECT_TRUE(demo.site.check().empty());
    demo.site.database(DatabaseKind::dataShortTerm).execute("UPDATE chunk SET data = x'01'");
    EXPECT_EQ(demo.site.check().size(), 1U);
}

}  // namespace
}  // namespace vtdn::store::test

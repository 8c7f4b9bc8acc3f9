// Reading: single intervals, data arrays, and their block access.
#include <cmath>

#include "data_interface/value.h"
#include "foreign_data_array.h"
#include "items.h"
#include "on_engine.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

class EngineData : public OnEngine {
  protected:
    /// Stores values of every kind, one an hour from midnight, with codes 0, 1, 2, ...
    std::vector<store::Value> storeEveryKind() {
        std::vector<store::Value> values{
            std::monostate(), 40000, -1, 0.1F, 0.2F, 0.1, 1e300, "N/A"s, "a\0b"s, ""s, "\xF0\x9F\x8F\xAD"s,
            std::monostate(), 7};
        store::Site site(connections(), "DEMO");
        for (std::size_t i = 0; i < values.size(); ++i)
            site.write(hourPid, store::timeOf({2007, 3, 25, static_cast<int>(i), 0, 0}),
                       {{values[i], static_cast<store::MonitorCode>(i)}});
        return values;
    }
};

store::Item itemOf(const engine::DataItem& item) {
    com::Variant value;
    item.value(value);
    return {fromVariant(value.get()), item.mc()};
}

/// The items of a filled array as block access gives them; items without a block are asked one by one.
std::vector<store::Item> byRuns(const engine::DataArray& data, LONG count) {
    std::vector<store::Item> all;
    const engine::DataRuns runs = data.runs();
    DIDataRun run{};
    for (LONG index = 1; index <= count; index += run.count) {
        if (!runs.next(index, run)) throw std::runtime_error("no run");
        for (LONG i = 0; i < run.count; ++i) {
            store::Item item{{}, run.mcs ? run.mcs[i] : run.mc};
            switch (run.type) {
                case VT_NULL:
                    break;
                case VT_I4:
                    item.value = std::int32_t{static_cast<const LONG*>(run.values)[i]};
                    break;
                case VT_R4:
                    item.value = static_cast<const float*>(run.values)[i];
                    break;
                case VT_R8:
                    item.value = static_cast<const double*>(run.values)[i];
                    break;
                default:
                    item.value = itemOf(data.item(index + i)).value;
            }
            all.push_back(item);
        }
    }
    return all;
}

std::vector<store::Item> byItems(const engine::DataArray& data, LONG count) {
    std::vector<store::Item> all;
    for (LONG i = 1; i <= count; ++i) all.push_back(itemOf(data.item(i)));
    return all;
}

}  // namespace

TEST_F(EngineData, AParameterTellsWhatItIs) {
    {
        store::Site site(connections(), "DEMO");
        auto all = store::test::demoParameters();
        all[0].name = "NOx \xE2\x80\x93 stack";
        all[0].units = "ppm";
        all[0].format = "0.0";
        store::replaceParameters(site.database(store::DatabaseKind::config), all);
    }
    const engine::Param stored = param(minutePid);
    EXPECT_EQ(stored.text(&DIParam::get_Name).view(), L"NOx \u2013 stack");
    EXPECT_EQ(stored.text(&DIParam::get_MeasUnits).view(), L"ppm");
    EXPECT_EQ(stored.text(&DIParam::get_Fmt).view(), L"0.0");
    EXPECT_EQ(stored.text(&DIParam::get_IntervalType).view(), L"1m");
    EXPECT_EQ(stored.text(&DIParam::get_UsedPIDs).view(), L"");
    EXPECT_EQ(stored.ioType(), 38);
    EXPECT_EQ(param(limitPid).ioType(), 4);
    EXPECT_EQ(param(formulaPid).text(&DIParam::get_UsedPIDs).view(), L"504030000,590500000,504030200");
}

TEST_F(EngineData, AnUnknownPidIsNoItem) {
    EXPECT_FALSE(engine.params().exists(1));
    const Failure failure = failureOf([&] { static_cast<void>(param(100100100)); });
    EXPECT_EQ(failure.number, 9);
    EXPECT_NE(failure.description.find(L"1-001-0-01-00"), std::wstring::npos) << failure.description;
    EXPECT_EQ(heard.take(), std::vector{failure.description});
    for (const LONG pid : {0L, -1L, LONG_MIN, LONG_MAX})
        EXPECT_EQ(failureOf([&] { static_cast<void>(param(pid)); }).number, 9) << pid;
}

TEST_F(EngineData, KnownMonitorCodesAreThoseOfTheSite) {
    {
        store::Site site(connections(), "DEMO");
        const std::vector<store::MonitorCodeName> codes{{1, "OK", "", 1}};
        store::replaceMonitorCodes(site.database(store::DatabaseKind::config), codes);
    }
    EXPECT_TRUE(engine.utils().isKnownMc(0));
    EXPECT_TRUE(engine.utils().isKnownMc(1));
    EXPECT_FALSE(engine.utils().isKnownMc(99));
    EXPECT_FALSE(engine.utils().isKnownMc(-1));
}

TEST_F(EngineData, EveryKindOfValueComesBackFromItsItem) {
    const auto values = storeEveryKind();
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(itemOf(param(hourPid).dataItem(hour(static_cast<double>(i)))),
                  (store::Item{values[i], static_cast<store::MonitorCode>(i)}));
}

TEST_F(EngineData, ADataArrayGivesTheSameByItemsAndByRuns) {
    const auto values = storeEveryKind();
    const LONG count = 48;
    const auto data = readRun(hourPid, hour(0), count, L"h", 1);
    const auto items = byItems(data, count);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        EXPECT_EQ(items[i], (i < values.size() ? store::Item{values[i], static_cast<store::MonitorCode>(i)}
                                               : store::Item{}))
            << i;
    EXPECT_EQ(byRuns(data, count), items);
}

TEST_F(EngineData, ARunBeginsAtAnyItem) {
    {
        store::Site site(connections(), "DEMO");
        const std::vector<store::Item> items{{1.5F, 1}, {2.5F, 1}, {3.5F, 2}, {4.5F, 3}};
        site.write(hourPid,
                   store::Span::define(store::timeOf({2007, 3, 25, 0, 0, 0}), 4, store::Interval::of("h", 1)),
                   store::test::runOf(items));
    }
    const auto data = readRun(hourPid, hour(0), 4, L"h", 1);
    const auto items = byItems(data, 4);
    DIDataRun run{};
    for (LONG first = 1; first <= 4; ++first) {
        ASSERT_TRUE(data.runs().next(first, run));
        EXPECT_EQ(run.type, VT_R4);
        EXPECT_EQ(store::Value(static_cast<const float*>(run.values)[0]),
                  items[static_cast<std::size_t>(first - 1)].value);
        EXPECT_EQ(run.mcs ? run.mcs[0] : run.mc, items[static_cast<std::size_t>(first - 1)].code);
    }
    for (const LONG outside : {0L, -1L, 5L, LONG_MAX, LONG_MIN})
        EXPECT_FALSE(data.runs().next(outside, run)) << outside;
}

TEST_F(EngineData, ConstantsAndCalculatedParametersAreRead) {
    {
        store::Site site(connections(), "DEMO");
        site.write(minutePid, store::timeOf({2007, 3, 25, 1, 0, 0}), {{10.0F, 1}});
        site.write(minutePid, store::timeOf({2007, 3, 25, 1, 30, 0}), {{20.0F, 1}});
        site.write(hourPid, store::timeOf({2007, 3, 25, 1, 0, 0}), {{100, 1}});
    }
    const com::Variant limit = read(limitPid, hour(1));
    ASSERT_EQ(limit.type(), VT_R4);
    EXPECT_EQ(limit.get().fltVal, 0.2F);
    const com::Variant average = read(averagePid, hour(1));
    ASSERT_EQ(average.type(), VT_R8);
    EXPECT_DOUBLE_EQ(average.get().dblVal, 15.0);
    const com::Variant formula = read(formulaPid, hour(1));
    ASSERT_EQ(formula.type(), VT_R8);
    EXPECT_NEAR(formula.get().dblVal, 35.0, 1e-6);
    EXPECT_EQ(read(formulaPid, hour(2)).type(), VT_NULL);
}

TEST_F(EngineData, ALongerIntervalRollsUpWhereTheParameterSaysHow) {
    {
        store::Site site(connections(), "DEMO");
        for (int h = 0; h < 24; ++h) site.write(hourPid, store::timeOf({2007, 3, 25, h, 0, 0}), {{h, 1}});
    }
    const auto data = readRun(hourPid, hour(0), 1, L"d", 1);
    com::Variant sum;
    data.item(1).value(sum);
    EXPECT_DOUBLE_EQ(sum.get().dblVal, 276.0);
}

TEST_F(EngineData, MonthsAreReadFromTheirFirstDay) {
    {
        store::Site site(connections(), "DEMO");
        site.write(monthPid, store::timeOf({2007, 3, 1, 0, 0, 0}), {{3, 1}});
        site.write(monthPid, store::timeOf({2007, 4, 1, 0, 0, 0}), {{4, 1}});
    }
    const auto items = byItems(readRun(monthPid, 39142.0, 2, L"M", 1), 2);
    EXPECT_EQ(items, (std::vector<store::Item>{{3, 1}, {4, 1}}));
}

TEST_F(EngineData, ATimeThatIsNoBeginningOfAnIntervalIsRefused) {
    const Failure failure = failureOf([&] { static_cast<void>(param(hourPid).dataItem(hour(1.5))); });
    EXPECT_EQ(failure.number, 5);
    EXPECT_NE(failure.description.find(L"2007-03-25 01:30"), std::wstring::npos) << failure.description;
    EXPECT_EQ(heard.take(), std::vector{failure.description});
}

TEST_F(EngineData, TimesAreRoundedToTheSecond) {
    {
        store::Site site(connections(), "DEMO");
        site.write(hourPid, store::timeOf({2007, 3, 25, 7, 0, 0}), {{7, 1}});
    }
    EXPECT_EQ(read(hourPid, hour(7) + 1e-6).get().lVal, 7);
    EXPECT_EQ(read(hourPid, hour(7) - 1e-6).get().lVal, 7);
}

TEST_F(EngineData, DatesThatAreNoneAreRefused) {
    for (const double date : {1e300, -1e300, 2958466.0, -657435.0, std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(failureOf([&] { static_cast<void>(param(hourPid).dataItem(date)); }).number, 6) << date;
}

TEST_F(EngineData, DatesBefore1899AreDatesLikeOthers) {
    write(hourPid, -1.25, com::Variant::of(LONG{6}), 1);
    EXPECT_EQ(read(hourPid, -1.25).get().lVal, 6);
    const auto data = readRun(hourPid, -1.0, 24, L"h", 1);
    EXPECT_EQ(itemOf(data.item(7)), (store::Item{6, 1}));
}

TEST_F(EngineData, DefineRefusesWhatIsNoRun) {
    struct Case {
        DATE start;
        LONG count;
        const wchar_t* type;
        LONG length;
        LONG number;
    };
    const std::vector<Case> cases{
        {hour(0), -1, L"h", 1, 6},
        {hour(0), LONG_MAX, L"h", 1, 6},
        {hour(0), LONG_MIN, L"h", 1, 6},
        {hour(0), 1, L"", 1, 5},
        {hour(0), 1, L"x", 1, 5},
        {hour(0), 1,
         L"h\0"
         L"ours",
         0, 5},
        {hour(0), 1, L"h", 0, 5},
        {hour(0), 1, L"h", -1, 5},
        {hour(0), 1, L"h", LONG_MAX, 5},
        {hour(0), 1, L"m", 7, 5},
        {hour(0.5), 1, L"h", 1, 5},
        {hour(1), 1, L"d", 1, 5},
        {hour(0), 1, L"M", 1, 5},
        {1e300, 1, L"h", 1, 6},
        {2958465.0, 25, L"h", 1, 6},
    };
    const auto data = engine::DataArray::create();
    for (const Case& c : cases) {
        const Failure failure =
            failureOf([&] { data.define(c.start, c.count, com::Bstr(c.type), c.length); });
        EXPECT_EQ(failure.number, c.number)
            << c.type << " " << c.count << " " << c.length << ": " << failure.description;
        EXPECT_GT(failure.description.size(), 20U) << failure.description;
    }
}

TEST_F(EngineData, ARefusedDefineLeavesTheArrayAsItWas) {
    storeEveryKind();
    const auto data = readRun(hourPid, hour(0), 3, L"h", 1);
    const auto before = byItems(data, 3);
    EXPECT_NE(failureOf([&] { data.define(hour(0), -1, com::Bstr(L"h"), 1); }).number, 0);
    EXPECT_EQ(byItems(data, 3), before);
}

TEST_F(EngineData, DefinedAnewAnArrayIsEmptyUntilItIsFilled) {
    storeEveryKind();
    const auto data = readRun(hourPid, hour(0), 3, L"h", 1);
    data.define(hour(0), 2, com::Bstr(L"hours"), 1);
    EXPECT_EQ(byItems(data, 2), std::vector<store::Item>(2));
    EXPECT_EQ(byRuns(data, 2), std::vector<store::Item>(2));
    EXPECT_EQ(failureOf([&] { static_cast<void>(data.item(3)); }).number, 9);
}

TEST_F(EngineData, ItemsAreNumberedFromOneToTheCount) {
    const auto data = readRun(hourPid, hour(0), 3, L"h", 1);
    for (const LONG outside : {0L, -1L, 4L, LONG_MAX, LONG_MIN}) {
        const Failure failure = failureOf([&] { static_cast<void>(data.item(outside)); });
        EXPECT_EQ(failure.number, 9);
        EXPECT_NE(failure.description.find(L"from 1 to 3"), std::wstring::npos) << failure.description;
    }
}

TEST_F(EngineData, AnArrayWithoutAPlaceIsRefused) {
    const auto data = engine::DataArray::create();
    EXPECT_EQ(failureOf([&] { static_cast<void>(data.item(1)); }).number, 91);
    EXPECT_EQ(failureOf([&] { param(hourPid).readDataArray(data); }).number, 91);
    DIDataRun run{};
    EXPECT_FALSE(data.runs().next(1, run));
}

TEST_F(EngineData, AnItemOfAnArrayIsACopy) {
    storeEveryKind();
    const auto data = readRun(hourPid, hour(0), 3, L"h", 1);
    const auto item = data.item(2);
    item.putValue(com::Variant::of(LONG{5}));
    item.putMc(99);
    EXPECT_EQ(itemOf(data.item(2)), (store::Item{40000, 1}));
    data.define(hour(0), 1, com::Bstr(L"h"), 1);
    EXPECT_EQ(itemOf(item), (store::Item{5, 99}));
}

TEST_F(EngineData, ARefusedReadLeavesAnEmptyArrayAndAMessage) {
    storeEveryKind();
    const auto data = readRun(hourPid, hour(0), 3, L"h", 1);
    const Failure failure = failureOf([&] { param(monthPid).readDataArray(data); });
    EXPECT_EQ(failure.number, 5);
    EXPECT_EQ(heard.take(), std::vector{failure.description});
    EXPECT_EQ(byItems(data, 3), std::vector<store::Item>(3));
}

TEST_F(EngineData, OnlyADataArrayOfThisEngineIsFilled) {
    ForeignDataArray foreign;
    const Failure failure = failureOf([&] { com::check(param(hourPid).get()->ReadDataArray(&foreign)); });
    EXPECT_EQ(failure.number, 13);
    EXPECT_EQ(heard.take(), std::vector{failure.description});
    EXPECT_EQ(failureOf([&] { com::check(param(hourPid).get()->ReadDataArray(nullptr)); }).number, 91);
}

TEST_F(EngineData, OneArrayServesManyReads) {
    storeEveryKind();
    const auto data = engine::DataArray::create();
    for (const LONG count : {48, 3, 24}) {
        data.define(hour(0), count, com::Bstr(L"h"), 1);
        param(hourPid).readDataArray(data);
        EXPECT_EQ(byRuns(data, count), byItems(data, count));
    }
}

TEST_F(EngineData, NullPointersAreRefused) {
    EXPECT_EQ(engine.get()->get_Params(nullptr), E_POINTER);
    EXPECT_EQ(engine.get()->SetupByDahsID(1, nullptr), E_POINTER);
    EXPECT_EQ(engine.params().get()->Exists(1, nullptr), E_POINTER);
    EXPECT_EQ(engine.params().get()->Item(hourPid, -1, nullptr), E_POINTER);
    EXPECT_EQ(param(hourPid).get()->get_Name(nullptr), E_POINTER);
    EXPECT_EQ(param(hourPid).get()->GetDataItem(hour(0), 0, nullptr), E_POINTER);
    EXPECT_EQ(param(hourPid).get()->SpecialFunction(6, nullptr, nullptr), E_POINTER);
    const auto data = readRun(hourPid, hour(0), 1, L"h", 1);
    EXPECT_EQ(data.get()->Item(1, nullptr), E_POINTER);
    EXPECT_EQ(data.item(1).get()->get_Value(nullptr), E_POINTER);
    EXPECT_EQ(engine.selectedDahs().get()->get_SiteID(nullptr), E_POINTER);
    EXPECT_EQ(engine.utils().get()->IsKnownMC(0, nullptr), E_POINTER);
}

}  // namespace vtdn::embedded::test

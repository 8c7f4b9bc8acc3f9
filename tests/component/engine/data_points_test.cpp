// Lists of data points, and their extra values written.
#include <oaidl.h>

#include <cmath>
#include <optional>

#include "data_interface/value.h"
#include "data_point_call.h"

namespace vtdn::embedded::test {
namespace {

using enum Manager;

class EngineDataPoints : public OnSpecialFunctions {
  protected:
    [[nodiscard]] engine::Collection<engine::DataPoint> list(const Tag& tag = {}, DATE first = hour(0),
                                                             DATE last = hour(23),
                                                             Manager manager = longTerm) const {
        return managers.list(manager, tag, first, last);
    }
    void update(DATE at, std::wstring_view text, const Tag& tag = {}, Manager manager = longTerm) {
        EXPECT_TRUE(managers.update(manager, tag, at, text));
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
    }
    /// The times of the points of the day.
    [[nodiscard]] std::vector<DATE> times(DATE first = hour(0), DATE last = hour(23)) const {
        std::vector<DATE> all;
        const auto points = list({}, first, last);
        for (LONG i = 1; points && i <= points.count(); ++i) all.push_back(timeOf(points.item(i)));
        return all;
    }
    /// A list and a write that must be refused alike; the sentence must hold all of the words.
    LONG refusedBoth(const Tag& tag, Manager manager, const std::vector<std::wstring>& words = {}) {
        const Failure listed = refusedCall([&] { static_cast<void>(list(tag, hour(0), hour(1), manager)); });
        const Failure written =
            refusedCall([&] { static_cast<void>(managers.update(manager, tag, hour(0), L"x")); });
        EXPECT_EQ(listed.description, written.description);
        EXPECT_EQ(listed.number, written.number);
        for (const std::wstring& word : words)
            EXPECT_NE(listed.description.find(word), std::wstring::npos) << listed.description;
        return listed.number;
    }

    DataPointManagers managers{engine};
};

}  // namespace

TEST_F(EngineDataPoints, AnHourIsAPointWithAllThatIsStoredOfIt) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    update(hour(1), anyText);
    const auto points = list();
    ASSERT_TRUE(points);
    ASSERT_EQ(points.count(), 1);
    const auto point = points.item(1);
    EXPECT_EQ(timeOf(point), hour(1));
    EXPECT_EQ(valueOf(point).type(), VT_R4);
    EXPECT_EQ(valueOf(point).get().fltVal, 2.5F);
    EXPECT_EQ(codeOf(point).type(), VT_I4);
    EXPECT_EQ(codeOf(point).get().lVal, 7);
    EXPECT_EQ(extraOf(point), anyText);
    EXPECT_EQ(occurrenceOf(point), L"");
}

TEST_F(EngineDataPoints, ValuesKeepTheirKind) {
    const std::vector<com::Variant> values{com::Variant::of(LONG{2}), com::Variant::of(0.1),
                                           com::Variant::of(std::wstring_view(anyText)),
                                           com::Variant::of(1.5F)};
    for (std::size_t i = 0; i < values.size(); ++i)
        write(hourPid, hour(static_cast<double>(i)), values[i], static_cast<LONG>(i));
    const auto points = list();
    ASSERT_EQ(points.count(), 4);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto point = points.item(static_cast<LONG>(i) + 1);
        EXPECT_EQ(valueOf(point).type(), values[i].type());
        EXPECT_EQ(fromVariant(valueOf(point).get()), fromVariant(values[i].get()));
        EXPECT_EQ(codeOf(point).get().lVal, static_cast<LONG>(i));
    }
}

TEST_F(EngineDataPoints, PointsComeInTheOrderOfTimeBothEndsIncluded) {
    for (const double h : {5, 1, 3, 4}) write(hourPid, hour(h), com::Variant::of(h), 1);
    EXPECT_EQ(times(hour(1), hour(4)), (std::vector{hour(1), hour(3), hour(4)}));
    EXPECT_EQ(times(hour(1.5), hour(4.99)), (std::vector{hour(3), hour(4)})) << "Any times will do";
    EXPECT_EQ(times(hour(3), hour(3)), std::vector{hour(3)});
}

TEST_F(EngineDataPoints, AnIntervalWithACodeOrATextOnlyIsAPoint) {
    write(hourPid, hour(1), com::Variant::null(), 5);
    update(hour(2), L"text");
    ASSERT_EQ(times(), (std::vector{hour(1), hour(2)}));
    const auto points = list();
    EXPECT_TRUE(valueOf(points.item(1)).isNull());
    EXPECT_EQ(codeOf(points.item(1)).get().lVal, 5);
    EXPECT_TRUE(valueOf(points.item(2)).isNull());
    EXPECT_EQ(codeOf(points.item(2)).get().lVal, 0) << "What is stored has a code";
    EXPECT_EQ(extraOf(points.item(2)), L"text");
}

TEST_F(EngineDataPoints, WithoutPointsThereIsNoCollection) {
    EXPECT_FALSE(list());
    EXPECT_FALSE(list(minutes, hour(0), hour(1), shortTerm));
    write(hourPid, hour(1), com::Variant::of(1.5F), 1);
    EXPECT_FALSE(list({}, hour(2), hour(3)));
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineDataPoints, MinutesAreShortTermAndMonthsAreLongTerm) {
    write(minutePid, hour(0.25), com::Variant::of(1.5F), 1);
    update(hour(0.25), L"minute", minutes, shortTerm);
    const auto found = list(minutes, hour(0), hour(1), shortTerm);
    ASSERT_EQ(found.count(), 1);
    EXPECT_EQ(timeOf(found.item(1)), hour(0.25));
    EXPECT_EQ(extraOf(found.item(1)), L"minute");

    const DATE march = 39142;  // 1 March 2007
    write(monthPid, march, com::Variant::of(LONG{3}), 1);
    update(march, L"month", {monthPid, L"1M"});
    const auto months = list({monthPid, L"1M"}, march - 90, march + 90);
    ASSERT_EQ(months.count(), 1);
    EXPECT_EQ(timeOf(months.item(1)), march);
    EXPECT_EQ(extraOf(months.item(1)), L"month");
}

TEST_F(EngineDataPoints, ParametersThatHoldOccurrencesHaveDataPoints) {
    configure([](store::Load& load) {
        auto all = store::test::demoParameters();
        all[1].io_type = store::io_type::occurrence;
        all[1].roll_up = store::Aggregation::none;
        std::erase_if(all, [](const store::Parameter& parameter) { return !parameter.uses.empty(); });
        load.replaceParameters(all);
    });
    update(hour(1), L"text");
    EXPECT_EQ(times(), std::vector{hour(1)});
}

TEST_F(EngineDataPoints, AnIntervalMayBeSaidInAnyFormOfItsLength) {
    write(hourPid, hour(1), com::Variant::of(1.5F), 1);
    for (const wchar_t* interval : {L"1h", L"60m", L"3600s", L" 1h "})
        EXPECT_EQ(list({hourPid, interval}).count(), 1) << interval;
}

TEST_F(EngineDataPoints, OtherIntervalTextsAreRefused) {
    using namespace std::string_literals;
    for (const std::wstring& interval :
         {L""s, L"h"s, L"1"s, L"1H"s, L"1x"s, L"0h"s, L"-1h"s, L"7h"s, L"1 h"s, L"hour"s, L"1h\0"s})
        EXPECT_EQ(refusedBoth({hourPid, interval}, longTerm), 5) << interval;
    EXPECT_FALSE(list());
}

TEST_F(EngineDataPoints, TheOtherManagersIntervalsAreRefused) {
    EXPECT_EQ(refusedBoth(minutes, longTerm, {L"1m", L"short-term"}), 5);
    EXPECT_EQ(refusedBoth({}, shortTerm, {L"1h", L"long-term"}), 5);
    EXPECT_EQ(refusedBoth({monthPid, L"1M"}, shortTerm, {L"1M", L"long-term"}), 5);
    EXPECT_EQ(refusedBoth({hourPid, L"59m"}, longTerm), 5) << "No interval at all";
    EXPECT_EQ(refusedBoth({hourPid, L"30m"}, longTerm, {L"30m", L"short-term"}), 5);
}

TEST_F(EngineDataPoints, AnotherIntervalThanTheParametersOwnIsRefused) {
    EXPECT_EQ(refusedBoth({hourPid, L"1d"}, longTerm, {L"1h", L"1d"}), 5);
    EXPECT_EQ(refusedBoth({minutePid, L"15m"}, shortTerm, {L"1m", L"15m"}), 5);
}

TEST_F(EngineDataPoints, AnUnknownTagIsRefused) {
    for (const LONG nobodys : {599'930'000L, 0L, -1L, LONG_MAX})
        EXPECT_EQ(refusedBoth({nobodys}, longTerm), 9) << nobodys;
}

TEST_F(EngineDataPoints, WhatIsNotStoredHasNoDataPoints) {
    for (const LONG pid : {limitPid, averagePid, formulaPid})
        EXPECT_EQ(refusedBoth({pid}, longTerm, {L"stored"}), 70) << pid;
}

TEST_F(EngineDataPoints, TheSiteIdIsTheOpenSitesOrEmpty) {
    update(hour(1), L"text", {hourPid, L"1h", L""});
    EXPECT_EQ(list({hourPid, L"1h", L""}).count(), 1);
    VARIANT_BOOL done = VARIANT_FALSE;
    const com::Bstr interval(L"1h");
    EXPECT_EQ(
        engine.longTermData().get()->UpdateXValue(nullptr, hourPid, interval.get(), hour(2), nullptr, &done),
        S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(refusedBoth({hourPid, L"1h", L"OTHER"}, longTerm, {L"OTHER", L"DEMO"}), 5);
    EXPECT_EQ(refusedBoth({minutePid, L"1m", L"demo"}, shortTerm, {L"demo", L"DEMO"}), 5) << "To the letter";
}

TEST_F(EngineDataPoints, ASpanThatEndsBeforeItStartsIsRefused) {
    const Failure failure = refusedCall([&] { static_cast<void>(list({}, hour(2), hour(1))); });
    EXPECT_EQ(failure.number, 6);
    EXPECT_NE(failure.description.find(L"2007-03-25 02:00"), std::wstring::npos) << failure.description;
    EXPECT_NE(failure.description.find(L"2007-03-25 01:00"), std::wstring::npos) << failure.description;
}

TEST_F(EngineDataPoints, DatesThatAreNoneAreRefused) {
    for (const double none : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(refusedCall([&] { static_cast<void>(list({}, none, hour(1))); }).number, 6);
        EXPECT_EQ(refusedCall([&] { static_cast<void>(list({}, hour(1), none)); }).number, 6);
        EXPECT_EQ(refusedCall([&] { static_cast<void>(managers.update(longTerm, {}, none, L"x")); }).number,
                  6);
    }
}

TEST_F(EngineDataPoints, AnExtraValueOffTheBoundaryIsRefused) {
    const Failure failure =
        refusedCall([&] { static_cast<void>(managers.update(longTerm, {}, hour(1.5), L"x")); });
    EXPECT_EQ(failure.number, 5);
    EXPECT_NE(failure.description.find(L"2007-03-25 01:30"), std::wstring::npos) << failure.description;
    EXPECT_FALSE(list());
}

TEST_F(EngineDataPoints, TextsThatCannotBeKeptAreRefusedAndLeaveTheOldOne) {
    update(hour(1), L"old");
    for (const std::wstring& text : {std::wstring(L"\xD83C!"), std::wstring(65'536, L'x')})
        EXPECT_EQ(
            refusedCall([&] { static_cast<void>(managers.update(longTerm, {}, hour(1), text)); }).number, 5);
    EXPECT_EQ(extraOf(list().item(1)), L"old");
    update(hour(1), std::wstring(65'535, L'x'));
    EXPECT_EQ(extraOf(list().item(1)).size(), 65'535U);
}

TEST_F(EngineDataPoints, ValueAndExtraValueAreWrittenApart) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    update(hour(1), L"extra");
    EXPECT_EQ(read(hourPid, hour(1)).get().fltVal, 2.5F);
    EXPECT_EQ(param(hourPid).dataItem(hour(1)).mc(), 7);
    write(hourPid, hour(1), com::Variant::null(), 0);
    EXPECT_EQ(extraOf(list().item(1)), L"extra");
}

TEST_F(EngineDataPoints, AnEmptyTextRemovesTheExtraValue) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    for (const double h : {1.0, 2.0}) update(hour(h), L"extra");
    for (const double h : {1.0, 2.0, 3.0}) update(hour(h), L"");
    EXPECT_EQ(times(), std::vector{hour(1)});
    EXPECT_EQ(extraOf(list().item(1)), L"");
}

TEST_F(EngineDataPoints, APointIsARecordOfItsOwn) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    const auto points = list();
    const auto point = points.item(1);
    const com::Bstr text(L"changed");
    point.put(&DIDataPoint::put_NValue, com::Variant::of(9.0));
    point.put(&DIDataPoint::put_MC, com::Variant::null());
    point.put(&DIDataPoint::put_XValueXML, text.get());
    point.put(&DIDataPoint::put_OccDataXML, text.get());
    point.initialise(hour(5));
    const std::vector untouched{points.item(1), list().item(1)};
    for (const auto& other : untouched) {
        EXPECT_EQ(timeOf(other), hour(1));
        EXPECT_EQ(valueOf(other).get().fltVal, 2.5F);
        EXPECT_EQ(codeOf(other).get().lVal, 7);
        EXPECT_EQ(extraOf(other) + occurrenceOf(other), L"");
    }
}

TEST_F(EngineDataPoints, AListShowsWhatThereWasWhenItWasMade) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    const auto before = list();
    write(hourPid, hour(1), com::Variant::of(3.5F), 8);
    write(hourPid, hour(2), com::Variant::of(4.5F), 9);
    update(hour(1), L"later");
    ASSERT_EQ(before.count(), 1);
    EXPECT_EQ(valueOf(before.item(1)).get().fltVal, 2.5F);
    EXPECT_EQ(extraOf(before.item(1)), L"");
    EXPECT_EQ(list().count(), 2);
}

TEST_F(EngineDataPoints, AListIsNumberedFromOneAndEnumerated) {
    for (const double h : {1, 2, 3}) write(hourPid, hour(h), com::Variant::of(h), 1);
    const auto points = list();
    for (const LONG outside : {0L, -1L, 4L})
        EXPECT_EQ(refusedCall([&] { static_cast<void>(points.item(outside)); }).number, 9) << outside;
    com::Ptr<IUnknown> made;
    com::check(points.get()->get__NewEnum(made.receive()));
    const auto all = made.as<IEnumVARIANT>();
    for (const double h : {1, 2, 3}) {
        com::Variant element;
        ASSERT_EQ(all->Next(1, element.receive(), nullptr), S_OK);
        const auto point = com::Ptr<IDispatch>(element.get().pdispVal).as<DIDataPoint>();
        ASSERT_TRUE(point);
        EXPECT_EQ(timeOf(engine::DataPoint(point)), hour(h));
    }
}

TEST_F(EngineDataPoints, AnEngineThatIsNotSetUpHasNoDataPoints) {
    engine.close();
    EXPECT_EQ(refusedBoth({}, longTerm, {L"SetupByDahsID"}), 91);
    EXPECT_EQ(refusedBoth(minutes, shortTerm, {L"SetupByDahsID"}), 91);
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    update(hour(1), L"The managers serve the site that is open");
    EXPECT_EQ(times(), std::vector{hour(1)});
}

TEST_F(EngineDataPoints, ManagersAndListsOutliveTheirEngine) {
    std::optional<DataPointManagers> left;
    std::optional<engine::Collection<engine::DataPoint>> points;
    std::optional<engine::DataPoint> point;
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    write(hourPid, hour(2), com::Variant::of(3.5F), 7);
    {
        const auto other = engine::Engine::create();
        ASSERT_TRUE(other.setupByDahsId(dahsId));
        left.emplace(other);
        points = left->list(longTerm, {}, hour(0), hour(5));
        point = points->item(1);
    }
    EXPECT_EQ(valueOf(*point).get().fltVal, 2.5F);
    EXPECT_EQ(valueOf(points->item(2)).get().fltVal, 3.5F);
    EXPECT_EQ(failureOf([&] { static_cast<void>(points->item(3)); }).number, 9);
    EXPECT_TRUE(left->update(longTerm, {}, hour(2), L"left"));
    EXPECT_EQ(failureOf([&] { static_cast<void>(left->update(longTerm, {}, hour(2.5), L"x")); }).number, 5);
    left.reset();
    EXPECT_EQ(extraOf(list().item(2)), L"left");
}

TEST_F(EngineDataPoints, NullPointersAreRefused) {
    const com::Bstr interval(L"1h");
    EXPECT_EQ(engine.get()->get_LongTermData(nullptr), E_POINTER);
    EXPECT_EQ(engine.get()->get_ShortTermData(nullptr), E_POINTER);
    EXPECT_EQ(engine.longTermData().get()->GetLongTermDataPoints(nullptr, hourPid, interval.get(), hour(0),
                                                                 hour(1), nullptr),
              E_POINTER);
    EXPECT_EQ(engine.shortTermData().get()->GetShortTermDataPoints(nullptr, minutePid, interval.get(),
                                                                   hour(0), hour(1), nullptr),
              E_POINTER);
    EXPECT_EQ(engine.longTermData().get()->UpdateXValue(nullptr, hourPid, interval.get(), hour(0), nullptr,
                                                        nullptr),
              E_POINTER);
    EXPECT_EQ(engine.shortTermData().get()->UpdateXValue(nullptr, minutePid, interval.get(), hour(0), nullptr,
                                                         nullptr),
              E_POINTER);
    EXPECT_FALSE(list());
}

TEST_F(EngineDataPoints, AFailedCallLeavesNoObject) {
    DICollection* none = reinterpret_cast<DICollection*>(1);
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_TRUE(FAILED(engine.longTermData().get()->GetLongTermDataPoints(nullptr, hourPid, nullptr, hour(0),
                                                                          hour(1), &none)));
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE(FAILED(
        engine.longTermData().get()->UpdateXValue(nullptr, hourPid, nullptr, hour(0), nullptr, &done)));
    EXPECT_EQ(done, VARIANT_FALSE);
}

}  // namespace vtdn::embedded::test

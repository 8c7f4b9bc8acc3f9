// Special functions over a span of time: operating time, availability, and what many values come to.
#include <cmath>

#include "special_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

constexpr LONG operatingPid = 504070000;     // stored, 1h, in hours
constexpr LONG dayOperatingPid = 504080200;  // its sum of a day

class EngineSpans : public OnSpecialFunctions {
  protected:
    EngineSpans() {
        configure([](store::Load& load) {
            auto all = store::test::demoParameters();
            all.push_back(store::test::stored(operatingPid, "1h"));
            all.back().units = "hr";
            all.push_back(
                store::test::aggregate(dayOperatingPid, "1d", store::Aggregation::sum, operatingPid));
            all.back().units = "Hours";
            load.replaceParameters(all);
        });
    }
    /// Values of consecutive hours of 25 March 2007, each with its code.
    void hours(LONG pid, const std::vector<store::Item>& items) const {
        store::Site site(connections(), "DEMO");
        for (std::size_t i = 0; i < items.size(); ++i)
            site.write(pid, store::timeOf({2007, 3, 25, static_cast<int>(i), 0, 0}), {items[i]});
    }
    [[nodiscard]] bool isNull(LONG pid, LONG id, Arguments arguments) {
        return result(pid, id, std::move(arguments)).isNull();
    }
};

}  // namespace

TEST_F(EngineSpans, OperatingTimeIsTheSumOfItsHours) {
    hours(operatingPid, {{1.0F, 0}, {0.5F, 0}, {0.25, 0}, {1, 0}, {}, {"N/A"s, 0}, {1.0F, 0}});
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(0), hour(7))), 3.75);
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(0), hour(2))), 1.5);
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(4), hour(6))), 0);
}

TEST_F(EngineSpans, IntervalsThatAreInTheSpanInPartCountInProportion) {
    hours(operatingPid, {{1.0F, 0}, {0.5F, 0}, {1.0F, 0}});
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(0.5), hour(1))), 0.5);
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(0.5), hour(2.25))), 0.5 + 0.5 + 0.25);
    EXPECT_DOUBLE_EQ(number(operatingPid, 32, span(hour(1.25), hour(1.75))), 0.25);
    EXPECT_DOUBLE_EQ(number(dayOperatingPid, 32, span(hour(0), hour(12))), 1.25) << "Half of the day's 2.5";
}

TEST_F(EngineSpans, AnEmptySpanHasNoOperatingTime) {
    hours(operatingPid, {{1.0F, 0}});
    EXPECT_EQ(number(operatingPid, 32, span(hour(0), hour(0))), 0);
    EXPECT_EQ(number(operatingPid, 32, span(hour(0.5), hour(0.5))), 0);
}

TEST_F(EngineSpans, ASpecialValueNamesTheOperatingTimeOfAnotherParameter) {
    hours(operatingPid, {{1.0F, 0}, {0.5F, 0}});
    giveSpecialValues(
        {{hourPid, 1001, std::int32_t{operatingPid}}, {minutePid, 1001, std::int32_t{operatingPid}}});
    EXPECT_DOUBLE_EQ(number(hourPid, 32, span(hour(0), hour(24))), 1.5);
    EXPECT_DOUBLE_EQ(number(minutePid, 32, span(hour(0), hour(24))), 1.5);
}

TEST_F(EngineSpans, AParameterWithoutOperatingTimeIsRefused) {
    const Failure failure = refused(hourPid, 32, span(hour(0), hour(1)));
    EXPECT_EQ(failure.number, 5);
    EXPECT_NE(failure.description.find(L"5-040-3-00-00"), std::wstring::npos) << failure.description;
    EXPECT_NE(failure.description.find(L"1001"), std::wstring::npos) << failure.description;
}

TEST_F(EngineSpans, AnOperatingTimeParameterThatIsNoneIsRefused) {
    giveSpecialValues({{hourPid, 1001, std::int32_t{minutePid}}});
    EXPECT_EQ(refused(hourPid, 32, span(hour(0), hour(1))).number, 5) << "Not in hours";
    giveSpecialValues({{hourPid, 1001, std::int32_t{100100100}}});
    EXPECT_EQ(refused(hourPid, 32, span(hour(0), hour(1))).number, 5) << "Unknown";
    giveSpecialValues({{hourPid, 1001, "504070000"s}});
    EXPECT_EQ(refused(hourPid, 32, span(hour(0), hour(1))).number, 5) << "A text";
    giveSpecialValues({{hourPid, 1001, true}});
    EXPECT_EQ(refused(hourPid, 32, span(hour(0), hour(1))).number, 5) << "A boolean";
}

TEST_F(EngineSpans, MinutesAndSecondsOfOperationBecomeHours) {
    hours(hourPid, {{45, 0}, {30.0F, 0}});
    giveUnits(hourPid, "min");
    EXPECT_DOUBLE_EQ(number(hourPid, 32, span(hour(0), hour(2))), 1.25);
    giveUnits(hourPid, "seconds");
    EXPECT_DOUBLE_EQ(number(hourPid, 32, span(hour(0), hour(2))), 75.0 / 3600);
    for (const char* units : {"", "lb/hr", "day", "h r"}) {
        giveUnits(hourPid, units);
        EXPECT_EQ(refused(hourPid, 32, span(hour(0), hour(2))).number, 5) << units;
    }
}

TEST_F(EngineSpans, AverageSumAndCountAreOverTheNumbers) {
    hours(hourPid, {{1.5F, 1}, {2, 1}, {}, {"7"s, 1}, {0.5, 1}, {100, 1}});
    EXPECT_DOUBLE_EQ(number(hourPid, 102, span(hour(0), hour(5))), 4.0 / 3);
    EXPECT_DOUBLE_EQ(number(hourPid, 103, span(hour(0), hour(5))), 4.0);
    const com::Variant counted = result(hourPid, 106, span(hour(0), hour(5)));
    ASSERT_EQ(counted.type(), VT_I4);
    EXPECT_EQ(counted.get().lVal, 3);
}

TEST_F(EngineSpans, MinimumAndMaximumAreTheValuesThemselves) {
    hours(hourPid, {{1.5F, 1}, {2, 1}, {}, {"-9"s, 1}, {0.1F, 1}, {-100, 1}});
    const com::Variant least = result(hourPid, 104, span(hour(0), hour(5)));
    ASSERT_EQ(least.type(), VT_R4);
    EXPECT_EQ(least.get().fltVal, 0.1F);
    const com::Variant most = result(hourPid, 105, span(hour(0), hour(5)));
    ASSERT_EQ(most.type(), VT_I4);
    EXPECT_EQ(most.get().lVal, 2);
}

TEST_F(EngineSpans, OverNoNumberTheSumIsZeroAndTheRestIsNull) {
    hours(hourPid, {{}, {"N/A"s, 1}});
    for (const auto& times : {span(hour(0), hour(2)), span(hour(0), hour(0))}) {
        for (const LONG id : {102L, 104L, 105L}) EXPECT_TRUE(isNull(hourPid, id, times)) << id;
        EXPECT_EQ(number(hourPid, 103, times), 0);
        EXPECT_EQ(result(hourPid, 106, times).get().lVal, 0);
    }
    EXPECT_TRUE(isNull(hourPid, 101, span(hour(0), hour(0))));
}

TEST_F(EngineSpans, ASumBeyondADoubleIsNull) {
    hours(hourPid, {{1.7e308, 1}, {1.7e308, 1}});
    EXPECT_TRUE(isNull(hourPid, 103, span(hour(0), hour(2))));
    EXPECT_TRUE(isNull(hourPid, 102, span(hour(0), hour(2))));
}

TEST_F(EngineSpans, TheIntervalsThatBeginInTheSpanCount) {
    hours(hourPid, {{1, 1}, {2, 1}, {4, 1}, {8, 1}});
    EXPECT_EQ(number(hourPid, 103, span(hour(0), hour(4))), 15);
    EXPECT_EQ(number(hourPid, 103, span(hour(1), hour(3))), 6) << "The end is not part of it";
    EXPECT_EQ(number(hourPid, 103, span(hour(0.5), hour(2.5))), 6);
    EXPECT_EQ(number(hourPid, 103, span(hour(0.25), hour(0.75))), 0);
}

TEST_F(EngineSpans, CalculatedParametersAndConstantsCountAsTheyAreRead) {
    {
        store::Site site(connections(), "DEMO");
        site.write(minutePid, store::timeOf({2007, 3, 25, 0, 0, 0}), {{10.0F, 1}});
        site.write(minutePid, store::timeOf({2007, 3, 25, 1, 0, 0}), {{20.0F, 1}});
    }
    EXPECT_DOUBLE_EQ(number(averagePid, 102, span(hour(0), hour(24))), 15);
    EXPECT_EQ(refused(limitPid, 102, span(hour(0), hour(24))).number, 5) << "It has no interval";
}

TEST_F(EngineSpans, MonthsCountByTheirFirstDay) {
    {
        store::Site site(connections(), "DEMO");
        for (int month = 1; month <= 12; ++month)
            site.write(monthPid, store::timeOf({2007, month, 1, 0, 0, 0}), {{month, 1}});
    }
    EXPECT_EQ(number(monthPid, 103, span(39083.0, 39448.0)), 78);
    EXPECT_EQ(number(monthPid, 103, span(39083.5, 39142.5)), 2 + 3);
}

TEST_F(EngineSpans, AvailabilityIsThePercentageOfIntervalsWithANumber) {
    hours(hourPid, {{1.0F, 1}, {2.0F, 8}, {}, {"N/A"s, 1}});
    EXPECT_DOUBLE_EQ(number(hourPid, 101, span(hour(0), hour(4))), 50);
    EXPECT_DOUBLE_EQ(number(hourPid, 101, span(hour(0), hour(2))), 100);
    EXPECT_DOUBLE_EQ(number(hourPid, 101, span(hour(2), hour(4))), 0);
}

TEST_F(EngineSpans, OnlyListedCodesAreAvailable) {
    hours(hourPid, {{1.0F, 1}, {2.0F, 8}, {3.0F, 17}, {4.0F, 0}});
    giveSpecialValues({{hourPid, 1002, " 1, 17 "s}});
    EXPECT_DOUBLE_EQ(number(hourPid, 101, span(hour(0), hour(4))), 50);
    giveSpecialValues({{hourPid, 1002, ""s}});
    EXPECT_DOUBLE_EQ(number(hourPid, 101, span(hour(0), hour(4))), 100);
}

TEST_F(EngineSpans, AListOfCodesThatIsNoneIsRefused) {
    for (const store::SpecialValue& list :
         std::vector<store::SpecialValue>{8, "1,"s, "1;2"s, "x"s, "1.5"s, "99999999999"s, true, 2.0}) {
        giveSpecialValues({{hourPid, 1002, list}});
        const Failure failure = refused(hourPid, 101, span(hour(0), hour(4)));
        EXPECT_EQ(failure.number, 5);
        EXPECT_NE(failure.description.find(L"1002"), std::wstring::npos) << failure.description;
    }
}

TEST_F(EngineSpans, TheSpanMayBeNestedAndItsDatesSerialNumbers) {
    hours(hourPid, {{1, 1}, {2, 1}});
    EXPECT_EQ(number(hourPid, 103, nested(span(hour(0), hour(2)))), 3);
    EXPECT_EQ(number(hourPid, 103, {com::Variant::of(hour(0)), com::Variant::of(hour(2))}), 3);
    for (const LONG lower : {-3L, 1L}) {
        com::SafeArray array = variantsOf(nested(span(hour(0), hour(2))), lower);
        EXPECT_EQ(param(hourPid).specialFunction(103, array).get().dblVal, 3);
    }
}

TEST_F(EngineSpans, ANestedArrayMayComeByReference) {
    hours(hourPid, {{1, 1}, {2, 1}});
    com::SafeArray inner = variantsOf(span(hour(0), hour(2)));
    com::SafeArray byArray = com::SafeArray::of<VARIANT>(1);
    com::SafeArray byVariant = com::SafeArray::of<VARIANT>(1);
    com::Variant variable = com::Variant::of(inner.get());
    {
        const com::ArrayView<VARIANT> first(byArray.get());
        first[0].vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
        first[0].pparray = inner.inOut();
        const com::ArrayView<VARIANT> second(byVariant.get());
        second[0].vt = VT_BYREF | VT_VARIANT;
        second[0].pvarVal = variable.inOut();
    }
    EXPECT_EQ(param(hourPid).specialFunction(103, byArray).get().dblVal, 3);
    EXPECT_EQ(param(hourPid).specialFunction(103, byVariant).get().dblVal, 3);
}

TEST_F(EngineSpans, OtherArgumentsAreRefused) {
    const auto date = com::Variant::ofDate(hour(0));
    for (const LONG id : {32L, 101L, 102L, 103L, 104L, 105L, 106L}) {
        EXPECT_EQ(refused(operatingPid, id, Arguments{}).number, 450);
        EXPECT_EQ(refused(operatingPid, id, Arguments{date}).number, 450);
        EXPECT_EQ(refused(operatingPid, id, Arguments{date, date, date}).number, 450);
        EXPECT_EQ(refused(operatingPid, id, nested({date})).number, 450);
        EXPECT_EQ(refused(operatingPid, id, nested(nested({date, date}))).number, 450);
        EXPECT_EQ(refused(operatingPid, id, Arguments{date, com::Variant::null()}).number, 13);
        EXPECT_EQ(refused(operatingPid, id, Arguments{com::Variant(), date}).number, 13);
        EXPECT_EQ(refused(operatingPid, id, Arguments{com::Variant::missing(), date}).number, 13);
        EXPECT_EQ(
            refused(operatingPid, id, Arguments{com::Variant::of(std::wstring_view(L"2007")), date}).number,
            13);
        EXPECT_EQ(refused(operatingPid, id, Arguments{com::Variant::of(engine.get()), date}).number, 13);
        EXPECT_EQ(refused(operatingPid, id, com::SafeArray()).number, 13);
        EXPECT_EQ(refused(operatingPid, id, com::SafeArray::of<LONG>(2)).number, 13);
    }
}

TEST_F(EngineSpans, NestedArraysOfOtherShapesAreRefused) {
    com::SafeArray nothing = com::SafeArray::of<VARIANT>(1);
    {
        const com::ArrayView<VARIANT> view(nothing.get());
        view[0].vt = VT_ARRAY | VT_VARIANT;
        view[0].parray = nullptr;
    }
    EXPECT_EQ(refused(hourPid, 103, std::move(nothing)).number, 13);
    SAFEARRAYBOUND bounds[]{{2, 0}, {2, 0}};
    com::SafeArray square = com::SafeArray::of<VARIANT>(1);
    {
        const com::ArrayView<VARIANT> view(square.get());
        view[0].vt = VT_ARRAY | VT_VARIANT;
        view[0].parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
    }
    EXPECT_EQ(refused(hourPid, 103, std::move(square)).number, 13);
    com::SafeArray dates = com::SafeArray::of<VARIANT>(1);
    {
        const com::ArrayView<VARIANT> view(dates.get());
        view[0].vt = VT_ARRAY | VT_DATE;
        view[0].parray = SafeArrayCreateVector(VT_DATE, 0, 2);
    }
    EXPECT_EQ(refused(hourPid, 103, std::move(dates)).number, 450)
        << "One argument, which is no list of them";
}

TEST_F(EngineSpans, SpansThatAreNoneAreRefused) {
    for (const LONG id : {32L, 101L, 102L, 103L, 104L, 105L, 106L}) {
        EXPECT_EQ(refused(operatingPid, id, span(hour(2), hour(1))).number, 6);
        for (const double date : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL}) {
            EXPECT_EQ(refused(operatingPid, id, span(date, hour(1))).number, 6) << date;
            EXPECT_EQ(refused(operatingPid, id, span(hour(1), date)).number, 6) << date;
        }
    }
}

TEST_F(EngineSpans, LongSpansAreGoneThroughUpToAsManyIntervalsAsARunMayHave) {
    hours(operatingPid, {{1.0F, 0}});
    EXPECT_EQ(number(operatingPid, 32, span(-36000.0, 109000.0)), 1) << "Nearly 400 years of hours";
    const Failure failure = refused(operatingPid, 32, span(-657434.0, 2958465.0));
    EXPECT_EQ(failure.number, 6);
    EXPECT_NE(failure.description.find(L"32000000"), std::wstring::npos) << failure.description;
}

TEST_F(EngineSpans, TheyNeedASiteAndAKnownParameter) {
    const engine::Param hours = param(hourPid);
    engine.close();
    for (const LONG id : {32L, 101L, 102L, 103L, 104L, 105L, 106L}) {
        com::SafeArray array = variantsOf(span(hour(0), hour(1)));
        const Failure failure = failureOf([&] { static_cast<void>(hours.specialFunction(id, array)); });
        EXPECT_EQ(failure.number, 91);
        EXPECT_EQ(heard.take(), std::vector{failure.description});
    }
}

}  // namespace vtdn::embedded::test

// What becomes of the engine's answers to the special-value and special-function operations.
#include "fake_engine/lenient.h"
#include "operations/special_operations.h"

namespace vtdn::test {
namespace {

using com::Variant;

class SpecialResults : public SpecialsOnStrictEngine {};

Variant noObject() {
    return Variant::of(static_cast<IDispatch*>(nullptr));
}
Variant currency(double value) {
    Variant v;
    VarCyFromR8(value, &v.inOut()->cyVal);
    v.inOut()->vt = VT_CY;
    return v;
}

TEST_F(SpecialResults, AsWholeNumbersRoundHalvesToEven) {
    setUpClient();
    for (const Special& special : {operatingTime, valueInt32, functionInt32, functionReal32}) {
        for (const auto& [value, result] : {std::pair{0.5, L"0"},
                                            {1.5, L"2"},
                                            {2.5, L"2"},
                                            {3.5, L"4"},
                                            {3.7, L"4"},
                                            {-0.5, L"0"},
                                            {-1.5, L"-2"},
                                            {-2.5, L"-2"},
                                            {-3.7, L"-4"},
                                            {1e6, L"1000000"},
                                            {0.0, L"0"}}) {
            expectGood(special, Variant::of(value), result);
            expectGood(special, Variant::of(static_cast<float>(value)), result);
            expectGood(special, currency(value), result);
            expectGood(special, Variant::of(std::to_wstring(value)), result);
        }
        expectGood(special, Variant::of(LONG{-7}), L"-7");
        expectGood(special, Variant::ofBool(true), L"-1");
        expectGood(special, Variant::ofBool(false), L"0");
        expectGood(special, Variant::of(L" 1,234 "), L"1234");
        expectGood(special, Variant(), L"0");
    }
}

TEST_F(SpecialResults, ASingleOnTheWayKeepsTwentyFourBits) {
    setUpClient();
    // The first whole number that a single does not hold, and one half that it rounds away.
    expectGood(functionInt32, Variant::of(LONG{16777217}), L"16777217");
    expectGood(functionReal32, Variant::of(LONG{16777217}), L"16777216");
    expectGood(functionInt32, Variant::of(8388609.5000001), L"8388610");
    expectGood(functionReal32, Variant::of(2.50000001), L"2");
    expectGood(functionInt32, Variant::of(2.50000001), L"3");
    expectGood(functionReal32, Variant::of(L"2.5"), L"2");
    expectGood(functionReal32, Variant::of(-2147483648.0), L"-2147483648");
    expectGood(functionReal32, Variant::of(2147483520.0), L"2147483520");
    // 2147483647 becomes 2147483648 as a single.
    expectBad(functionReal32, Variant::of(LONG{0x7FFFFFFF}), L"6, Overflow");
    expectBad(functionReal32, Variant::of(1e39), L"6, Overflow");
    expectBad(functionReal32, Variant::of(L"1e39"), L"6, Overflow");
}

TEST_F(SpecialResults, ThatAreOutOfRangeAreNoWholeNumbers) {
    setUpClient();
    for (const Special& special : {operatingTime, valueInt32, functionInt32, functionReal32}) {
        for (const Variant& large :
             {Variant::of(2147483648.0), Variant::of(-2147483904.0), Variant::of(1e300), Variant::of(3e9F),
              Variant::of(L"99999999999"), currency(3e9)})
            expectBad(special, large, L"6, Overflow");
    }
    for (const Special& special : {operatingTime, valueInt32, functionInt32}) {
        expectBad(special, Variant::of(2147483647.5), L"6, Overflow");
        expectGood(special, Variant::of(2147483647.4), L"2147483647");
        expectGood(special, Variant::of(-2147483648.5), L"-2147483648");
    }
}

TEST_F(SpecialResults, ThatAreNoNumbersAreZeroForTheTwoThatAskFirstAndALineForTheOthers) {
    setUpClient();
    for (const Special& special : {operatingTime, valueInt32, functionInt32, functionReal32}) {
        expectBad(special, Variant::null(), L"94, Invalid use of Null");
        expectBad(special, Variant::of(L"abc"), L"13, Type mismatch");
        expectBad(special, Variant::of(L""), L"13, Type mismatch");
        expectBad(special, Variant::of(L"True"), L"13, Type mismatch");
        expectBad(special, Variant::missing(), L"13, Type mismatch");
        expectBad(special, arrayVariant(), L"13, Type mismatch");
        expectBad(special, noObject(), L"91, Object variable or With block variable not set");
    }
    // A date is not numeric, and yet it converts.
    for (const Special& asking : {operatingTime, valueInt32})
        expectGood(asking, Variant::ofDate(39448), L"0");
    for (const Special& converting : {functionInt32, functionReal32})
        expectGood(converting, Variant::ofDate(39448), L"39448");
}

TEST_F(SpecialResults, AsBooleansTakeAnyNonzeroNumberAndTheTwoWords) {
    setUpClient();
    for (const Special& special : {valueBoolean, functionBoolean}) {
        for (const Variant& yes : {Variant::ofBool(true), Variant::of(LONG{2}), Variant::of(-0.25),
                                   Variant::of(1e300), Variant::of(L"True"), Variant::of(L"tRUE"),
                                   Variant::of(L"0.1"), Variant::ofDate(1), currency(1)})
            expectGood(special, yes, L"True");
        for (const Variant& no : {Variant::ofBool(false), Variant::of(LONG{0}), Variant::of(0.0),
                                  Variant::of(L"False"), Variant::of(L"FALSE"), Variant::of(L"0"), Variant()})
            expectGood(special, no, L"False");
        expectBad(special, Variant::null(), L"94, Invalid use of Null");
        for (const wchar_t* text : {L"", L" ", L"yes", L"abc"})
            expectBad(special, Variant::of(text), L"13, Type mismatch");
        expectBad(special, Variant::missing(), L"13, Type mismatch");
        expectBad(special, arrayVariant(), L"13, Type mismatch");
        expectBad(special, noObject(), L"91, Object variable or With block variable not set");
    }
}

TEST_F(SpecialResults, AsTextsAreTheUsersTextsOrEmptyWithoutALine) {
    using namespace std::string_literals;
    setUpClient();
    for (const Special& special : {valueString, functionString}) {
        for (const std::wstring& text : {L"ORIS 123"s, L""s, L" a\0b "s, L"\xD83D\xDE00"s})
            expectGood(special, Variant::of(std::wstring_view(text)), L"'" + text + L"'");
        expectGood(special, Variant::of(LONG{-5}), L"'-5'");
        expectGood(special, Variant::of(0.5), L"'0.5'");
        expectGood(special, Variant::of(0.1F), L"'0.1'");
        expectGood(special, Variant::ofBool(true), L"'True'");
        expectGood(special, Variant::ofBool(false), L"'False'");
        expectGood(special, Variant(), L"''");
        for (const Variant& none : {Variant::null(), Variant::missing(), arrayVariant(), noObject()})
            expectBad(special, none, L"");
    }
}

TEST_F(SpecialResults, AnObjectOfTheEngineIsReleasedAndIsNoResult) {
    setUpClient();
    fake::Site site;
    const com::Ptr<IDispatch> object = fake::makeDataItem(site).as<IDispatch>();
    for (const Special& special : {operatingTime, valueInt32, valueBoolean, valueString, functionBoolean,
                                   functionInt32, functionReal32, functionString}) {
        EXPECT_EQ(callWith(special, Variant::of(object.get())), special.nothing) << special.name;
        const auto problems = client.problemTexts();
        EXPECT_EQ(problems.size(), special.conversionFailed ? 1U : 0U) << special.name;
        if (!problems.empty()) {
            EXPECT_TRUE(problems[0].ends_with(std::wstring(L" ") + special.conversionFailed));
        }
    }
    object->AddRef();
    EXPECT_EQ(object->Release(), 1U);
}

}  // namespace
}  // namespace vtdn::test

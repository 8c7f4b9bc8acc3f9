#include "data_interface/value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "com/error.h"

using vtdn::com::Variant;
using vtdn::embedded::fromVariant;
using vtdn::embedded::toVariant;
using vtdn::store::Value;
using namespace std::string_literals;

namespace {

VARIANT raw(VARTYPE type) {
    VARIANT value{};
    value.vt = type;
    return value;
}

VARIANT currency(std::int64_t tenThousandths) {
    VARIANT value = raw(VT_CY);
    value.cyVal.int64 = tenThousandths;
    return value;
}

VARIANT decimal(std::uint64_t digits, BYTE scale, bool negative = false) {
    VARIANT value{};
    value.decVal.Lo64 = digits;
    value.decVal.scale = scale;
    value.decVal.sign = negative ? DECIMAL_NEG : 0;
    value.vt = VT_DECIMAL;
    return value;
}

// The error number and description with which a value is refused.
std::pair<LONG, std::wstring> refusal(const VARIANT& value) {
    try {
        fromVariant(value);
    } catch (const vtdn::com::Error& error) {
        return {error.number(), error.description()};
    }
    return {0, L"(accepted)"};
}

}  // namespace

TEST(EngineValue, NullAndEmptyAreNoValue) {
    EXPECT_EQ(fromVariant(raw(VT_NULL)), Value());
    EXPECT_EQ(fromVariant(raw(VT_EMPTY)), Value());
    EXPECT_EQ(toVariant(Value()).type(), VT_NULL);
}

TEST(EngineValue, EveryWholeNumberTypeIsKeptAsAnInteger) {
    VARIANT value = raw(VT_I1);
    value.cVal = -5;
    EXPECT_EQ(fromVariant(value), Value(-5));
    value = raw(VT_I2);
    value.iVal = -32768;
    EXPECT_EQ(fromVariant(value), Value(-32768));
    value = raw(VT_I4);
    value.lVal = INT32_MIN;
    EXPECT_EQ(fromVariant(value), Value(INT32_MIN));
    value = raw(VT_INT);
    value.intVal = INT32_MAX;
    EXPECT_EQ(fromVariant(value), Value(INT32_MAX));
    value = raw(VT_UI1);
    value.bVal = 255;
    EXPECT_EQ(fromVariant(value), Value(255));
    value = raw(VT_UI2);
    value.uiVal = 65535;
    EXPECT_EQ(fromVariant(value), Value(65535));
    value = raw(VT_UI4);
    value.ulVal = 7;
    EXPECT_EQ(fromVariant(value), Value(7));
    value = raw(VT_UINT);
    value.uintVal = 8;
    EXPECT_EQ(fromVariant(value), Value(8));
    value = raw(VT_I8);
    value.llVal = -9;
    EXPECT_EQ(fromVariant(value), Value(-9));
    value = raw(VT_UI8);
    value.ullVal = 10;
    EXPECT_EQ(fromVariant(value), Value(10));
}

TEST(EngineValue, LargerWholeNumbersAreDoublesWhereADoubleHoldsThem) {
    VARIANT value = raw(VT_UI4);
    value.ulVal = 4294967295U;
    EXPECT_EQ(fromVariant(value), Value(4294967295.0));
    value = raw(VT_I8);
    value.llVal = -9007199254740992;
    EXPECT_EQ(fromVariant(value), Value(-9007199254740992.0));
    value.llVal = 9007199254740993;
    EXPECT_EQ(refusal(value).first, 6);
    EXPECT_NE(refusal(value).second.find(L"9007199254740993"), std::wstring::npos);
    value = raw(VT_UI8);
    value.ullVal = UINT64_MAX;
    EXPECT_EQ(refusal(value).first, 6);
}

TEST(EngineValue, BooleansAreMinusOneAndZero) {
    VARIANT value = raw(VT_BOOL);
    EXPECT_EQ(fromVariant(value), Value(0));
    value.boolVal = VARIANT_TRUE;
    EXPECT_EQ(fromVariant(value), Value(-1));
    value.boolVal = 1;
    EXPECT_EQ(fromVariant(value), Value(-1));
}

TEST(EngineValue, SinglesAndDoublesKeepTheirKindBitByBit) {
    const float single = 0.1F;
    EXPECT_EQ(fromVariant(Variant::of(single).get()), Value(single));
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(fromVariant(Variant::of(tiny).get()), Value(tiny));
    const Variant back = toVariant(Value(single));
    EXPECT_EQ(back.type(), VT_R4);
    EXPECT_EQ(back.get().fltVal, single);
    EXPECT_EQ(toVariant(Value(tiny)).get().dblVal, tiny);
    EXPECT_EQ(toVariant(Value(7)).type(), VT_I4);
}

TEST(EngineValue, InfinitiesAndWhatIsNoNumberAreRefused) {
    EXPECT_EQ(refusal(Variant::of(std::numeric_limits<float>::infinity()).get()).first, 6);
    EXPECT_EQ(refusal(Variant::of(-std::numeric_limits<double>::infinity()).get()).second,
              L"The number -infinity cannot be kept. Write Null for no value.");
    EXPECT_EQ(refusal(Variant::of(std::numeric_limits<double>::quiet_NaN()).get()).second,
              L"The number NaN cannot be kept. Write Null for no value.");
}

TEST(EngineValue, DatesAreTheirSerialNumbers) {
    EXPECT_EQ(fromVariant(Variant::ofDate(45000.25).get()), Value(45000.25));
}

TEST(EngineValue, CurrencyAndDecimalAreDoublesUnlessDigitsWouldBeLost) {
    EXPECT_EQ(fromVariant(currency(123456)), Value(12.3456));
    EXPECT_EQ(fromVariant(currency(-1)), Value(-0.0001));
    EXPECT_EQ(refusal(currency(INT64_MAX)).first, 6);
    EXPECT_EQ(fromVariant(decimal(1, 1)), Value(0.1));
    EXPECT_EQ(fromVariant(decimal(25, 1, true)), Value(-2.5));
    EXPECT_EQ(refusal(decimal(1234567890123456789, 0)).first, 6);
    EXPECT_NE(refusal(decimal(1234567890123456789, 0)).second.find(L"1234567890123456789"),
              std::wstring::npos);
}

TEST(EngineValue, TextsKeepEveryCharacter) {
    const std::wstring given = L"a\0b \u00e9\u4e2d\U0001F3ED"s;
    const Variant value = Variant::of(given);
    const Variant back = toVariant(fromVariant(value.get()));
    ASSERT_EQ(back.type(), VT_BSTR);
    EXPECT_EQ(vtdn::com::view(back.get().bstrVal), given);
}

TEST(EngineValue, ANullStringIsAnEmptyText) {
    EXPECT_EQ(fromVariant(raw(VT_BSTR)), Value(""s));
}

TEST(EngineValue, HalfASurrogatePairIsRefused) {
    for (const std::wstring& text : {L"\xD83C"s, L"\xDFED"s, L"\xD83Cx"s, L"\xDFED\xD83C"s}) {
        EXPECT_EQ(refusal(Variant::of(text).get()).first, 5);
    }
}

TEST(EngineValue, ATextThatIsTooLongIsRefusedByItsBytes) {
    EXPECT_EQ(fromVariant(Variant::of(std::wstring(65535, L'x')).get()), Value(std::string(65535, 'x')));
    EXPECT_EQ(refusal(Variant::of(std::wstring(65536, L'x')).get()).first, 5);
    EXPECT_EQ(refusal(Variant::of(std::wstring(32768, L'\u00e9')).get()).first, 5);
}

TEST(EngineValue, ByReferenceVariantsAreFollowed) {
    LONG number = 42;
    VARIANT inner = raw(VT_BYREF | VT_I4);
    inner.plVal = &number;
    EXPECT_EQ(fromVariant(inner), Value(42));
    VARIANT direct = Variant::of(LONG{43}).get();
    VARIANT outer = raw(VT_BYREF | VT_VARIANT);
    outer.pvarVal = &direct;
    EXPECT_EQ(fromVariant(outer), Value(43));
}

TEST(EngineValue, WhatIsNoValueAtAllIsATypeMismatch) {
    EXPECT_EQ(refusal(raw(VT_DISPATCH)).first, 13);
    EXPECT_EQ(refusal(raw(VT_UNKNOWN)).first, 13);
    EXPECT_EQ(refusal(raw(VT_ARRAY | VT_I4)).first, 13);
    EXPECT_EQ(refusal(raw(VT_RECORD)).first, 13);
    EXPECT_EQ(refusal(Variant::missing().get()).second,
              L"The value was left out. It is a number, a text, or Null for no value.");
}

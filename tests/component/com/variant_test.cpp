// Conversions and the numeric test, in the user's locale by the platform's rules.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/variant.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr HRESULT mismatch = DISP_E_TYPEMISMATCH;
constexpr HRESULT overflow = DISP_E_OVERFLOW;

Variant currency(double value) {
    Variant v;
    v.inOut()->vt = VT_CY;
    VarCyFromR8(value, &v.inOut()->cyVal);
    return v;
}
Variant decimal(double value) {
    Variant v;
    DECIMAL d;
    VarDecFromR8(value, &d);
    v.inOut()->decVal = d;
    v.inOut()->vt = VT_DECIMAL;
    return v;
}
Variant ofByte(unsigned char value) {
    Variant v;
    v.inOut()->vt = VT_UI1;
    v.inOut()->bVal = value;
    return v;
}
Variant reference(VARTYPE type, void* variable) {
    Variant v;
    v.inOut()->vt = static_cast<VARTYPE>(VT_BYREF | type);
    v.inOut()->byref = variable;
    return v;
}
Variant nothing() {
    return Variant::of(static_cast<IDispatch*>(nullptr));
}

template <class T>
struct Outcome {
    HRESULT result;
    T value;
    bool operator==(const Outcome&) const = default;
};
Outcome<int> int16(const Variant& v) {
    std::int16_t out = 77;
    const HRESULT result = com::toInt16(v.get(), out);
    return {result, out};
}
Outcome<LONG> int32(const Variant& v) {
    LONG out = 77;
    const HRESULT result = com::toInt32(v.get(), out);
    return {result, out};
}
Outcome<float> single(const Variant& v) {
    float out = 77;
    const HRESULT result = com::toSingle(v.get(), out);
    return {result, out};
}
Outcome<bool> boolean(const Variant& v, bool before = false) {
    bool out = before;
    const HRESULT result = com::toBool(v.get(), out);
    return {result, out};
}
Outcome<std::wstring> text(const Variant& v) {
    com::Bstr out(L"77");
    const HRESULT result = com::toText(v.get(), out);
    return {result, std::wstring(out.view())};
}
template <class T>
Outcome<T> good(T value) {
    return {S_OK, value};
}

TEST(ToInt16, RoundsHalfToEven) {
    for (const auto& [from, to] :
         {std::pair{2.5, 2}, {3.5, 4}, {-2.5, -2}, {-3.5, -4}, {0.5, 0}, {-0.5, 0}, {1.4999, 1}}) {
        EXPECT_EQ(int16(Variant::of(from)), good(to)) << from;
        EXPECT_EQ(int16(Variant::of(static_cast<float>(from))), good(to)) << from;
        EXPECT_EQ(int16(Variant::of(std::to_wstring(from))), good(to)) << from;
        EXPECT_EQ(int16(currency(from)), good(to)) << from;
        EXPECT_EQ(int16(decimal(from)), good(to)) << from;
    }
}

TEST(ToInt16, EndsAtItsRange) {
    for (const auto& [from, to] :
         {std::pair{32767.0, 32767}, {32767.49, 32767}, {-32768.0, -32768}, {-32768.5, -32768}}) {
        EXPECT_EQ(int16(Variant::of(from)), good(to)) << from;
        EXPECT_EQ(int16(Variant::of(std::to_wstring(from))), good(to)) << from;
    }
    for (const double from : {32767.5, 40000.0, -32768.51, -40000.0, 1e300, static_cast<double>(INFINITY),
                              static_cast<double>(NAN)})
        EXPECT_EQ(int16(Variant::of(from)).result, overflow) << from;
    EXPECT_EQ(int16(Variant::of(LONG{32767})), good(32767));
    EXPECT_EQ(int16(Variant::of(LONG{-32768})), good(-32768));
    EXPECT_EQ(int16(Variant::of(LONG{32768})), (Outcome<int>{overflow, 77}));
    EXPECT_EQ(int16(Variant::of(LONG{-32769})).result, overflow);
    EXPECT_EQ(int16(Variant::of(L"40000")), (Outcome<int>{overflow, 77}));
}

TEST(ToInt16, TheShortWayGivesWhatThePlatformGives) {
    // Every half and its neighbours over more than the range, and singles as well.
    for (double half = -33000; half <= 33000; half += 0.5) {
        for (const double from : {half, std::nextafter(half, -1e9), std::nextafter(half, 1e9)}) {
            SHORT expected = 77;
            const HRESULT result = VarI2FromR8(from, &expected);
            const Outcome<int> platform{result, expected};
            ASSERT_EQ(int16(Variant::of(from)), platform) << from;
        }
        SHORT expected = 77;
        const HRESULT result = VarI2FromR4(static_cast<float>(half), &expected);
        const Outcome<int> platform{result, expected};
        ASSERT_EQ(int16(Variant::of(static_cast<float>(half))), platform) << half;
    }
}

TEST(ToInt32, RoundsAndEndsAtItsRange) {
    EXPECT_EQ(int32(Variant::of(2.5)), good(LONG{2}));
    EXPECT_EQ(int32(Variant::of(2147483647.4)), good(LONG{2147483647}));
    EXPECT_EQ(int32(Variant::of(2147483647.5)).result, overflow);
    EXPECT_EQ(int32(Variant::of(-2147483648.5)), good(std::numeric_limits<LONG>::min()));
    EXPECT_EQ(int32(Variant::of(-2147483649.0)).result, overflow);
    EXPECT_EQ(int32(Variant::of(2147483648.0F)).result, overflow);
    EXPECT_EQ(int32(Variant::of(L"99999999999")).result, overflow);
    EXPECT_EQ(int32(Variant::of(L" 1,234 ")), good(LONG{1234}));
}

TEST(ToInt32, AnUnsignedNumberThatDoesNotFitIsAnOverflow) {
    for (const VARTYPE type : {VT_UI4, VT_UINT}) {
        Variant v;
        v.inOut()->vt = type;
        v.inOut()->ulVal = 0x7FFFFFFFU;
        EXPECT_EQ(int32(v), good(LONG{0x7FFFFFFF}));
        EXPECT_EQ(int16(v).result, overflow);
        v.inOut()->ulVal = 0x80000000U;
        EXPECT_EQ(int32(v).result, overflow);
        v.inOut()->ulVal = 32767;
        EXPECT_EQ(int16(v), good(32767));
    }
}

TEST(ToSingle, CopiesNarrowsAndOverflows) {
    EXPECT_EQ(single(Variant::of(0.1F)), good(0.1F));
    EXPECT_EQ(single(Variant::of(0.1)), good(0.1F));
    EXPECT_EQ(single(Variant::of(LONG{40000})), good(40000.0F));
    EXPECT_EQ(single(Variant::of(1e39)), (Outcome<float>{overflow, 77}));
    EXPECT_EQ(single(Variant::of(-1e39)).result, overflow);
    EXPECT_EQ(single(Variant::of(static_cast<double>(FLT_MAX))), good(FLT_MAX));
    EXPECT_EQ(single(Variant::of(L"1E39")).result, overflow);
    EXPECT_EQ(single(Variant::of(L"1.5")), good(1.5F));
    EXPECT_EQ(single(currency(2.5)), good(2.5F));
    EXPECT_TRUE(std::isnan(single(Variant::of(static_cast<double>(NAN))).value));
    EXPECT_EQ(single(Variant::of(INFINITY)), good(INFINITY));
}

TEST(ToBool, AnyNonzeroNumberIsTrue) {
    VARIANT_BOOL odd = 4;
    for (const Variant& v :
         {Variant::of(LONG{2}), Variant::of(0.001), Variant::of(-1.0F), currency(0.5), decimal(3), ofByte(1),
          Variant::of(L"0.4"), Variant::of(L"-1"), Variant::of(L"True"), Variant::of(L"tRUE"),
          Variant::ofDate(1), Variant::ofBool(true), reference(VT_BOOL, &odd)})
        EXPECT_EQ(boolean(v), good(true)) << v.type();
    for (const Variant& v :
         {Variant::of(LONG{0}), Variant::of(0.0), Variant(), Variant::of(L"0"), Variant::of(L"False"),
          Variant::of(L"FALSE"), Variant::of(L"0.00"), Variant::ofBool(false)})
        EXPECT_EQ(boolean(v, true), good(false)) << v.type();
    for (const wchar_t* wrong : {L"", L" ", L"yes", L"T", L"Truely"})
        EXPECT_EQ(boolean(Variant::of(wrong)).result, mismatch) << wrong;
}

TEST(ToText, IsThatOfTheUsersLocale) {
    EXPECT_EQ(text(Variant::ofBool(true)), good(std::wstring(L"True")));
    EXPECT_EQ(text(Variant::ofBool(false)), good(std::wstring(L"False")));
    EXPECT_EQ(text(Variant::of(LONG{-5})), good(std::wstring(L"-5")));
    EXPECT_EQ(text(Variant::of(0.1)), good(std::wstring(L"0.1")));
    EXPECT_EQ(text(Variant()), good(std::wstring()));
    const std::wstring raw(L"a\0\xD83D\xDE00z", 5);
    EXPECT_EQ(text(Variant::of(raw)), good(raw));
}

TEST(ToText, OfASingleHasSevenDigits) {
    for (const auto& [from, to] : {std::pair{0.1F, L"0.1"},
                                   {1.0F / 3, L"0.3333333"},
                                   {123456.789F, L"123456.8"},
                                   {1e10F, L"1E+10"},
                                   {-2.5F, L"-2.5"},
                                   {16777216.0F, L"1.677722E+07"}})
        EXPECT_EQ(text(Variant::of(from)), good(std::wstring(to)));
}

TEST(ToText, OfADateIsTheShortDate) {
    wchar_t expected[80] = L"";
    const SYSTEMTIME day{2023, 3, 0, 15, 0, 0, 0, 0};
    ASSERT_NE(GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &day, nullptr, expected, 80), 0);
    EXPECT_EQ(text(Variant::ofDate(45000)), good(std::wstring(expected)));
    // Before the zero day the fraction still counts forward: six in the morning.
    EXPECT_NE(text(Variant::ofDate(-1.25)).value.find(L"6:00"), std::wstring::npos);
}

TEST(Conversions, OfNullEmptyMissingAndNothingDiffer) {
    for (const HRESULT result :
         {int16(Variant::null()).result, int32(Variant::null()).result, single(Variant::null()).result,
          boolean(Variant::null()).result, text(Variant::null()).result}) {
        EXPECT_EQ(result, com::invalidUseOfNull);
        EXPECT_EQ(com::errorNumber(result), 94);
    }
    EXPECT_EQ(int16(Variant::missing()).result, mismatch);
    EXPECT_EQ(single(Variant::missing()).result, mismatch);
    EXPECT_EQ(boolean(Variant::missing()).result, mismatch);
    EXPECT_EQ(text(Variant::missing()), (Outcome<std::wstring>{mismatch, L"77"}));
    EXPECT_EQ(int32(nothing()).result, com::unsetObject);
    EXPECT_EQ(text(nothing()).result, com::unsetObject);
    EXPECT_EQ(int16(Variant()), good(0));
    EXPECT_EQ(single(Variant()), good(0.0F));
}

TEST(Conversions, OfTextsThatAreNoNumbersAreMismatches) {
    for (const wchar_t* wrong : {L"", L" ", L"N/A", L"1.2.3", L"12 apples", L"--5", L"1E", L"True"}) {
        EXPECT_EQ(int16(Variant::of(wrong)), (Outcome<int>{mismatch, 77})) << wrong;
        EXPECT_EQ(int32(Variant::of(wrong)).result, mismatch) << wrong;
        EXPECT_EQ(single(Variant::of(wrong)).result, mismatch) << wrong;
    }
    Variant none;
    none.inOut()->vt = VT_BSTR;
    none.inOut()->bstrVal = nullptr;
    EXPECT_EQ(int16(none).result, mismatch);
    EXPECT_EQ(text(none), good(std::wstring()));
}

TEST(Conversions, FollowReferences) {
    LONG number = 12;
    Variant inner = Variant::of(L"3.5");
    Variant outer = reference(VT_VARIANT, inner.inOut());
    EXPECT_EQ(int16(reference(VT_I4, &number)), good(12));
    EXPECT_EQ(single(outer), good(3.5F));
    EXPECT_EQ(text(reference(VT_VARIANT, outer.inOut())), good(std::wstring(L"3.5")));
    EXPECT_EQ(int16(reference(VT_I4, nullptr)).result, mismatch);
    EXPECT_EQ(int16(reference(VT_VARIANT, nullptr)).result, mismatch);
    Variant none = Variant::null();
    EXPECT_EQ(boolean(reference(VT_VARIANT, none.inOut())).result, com::invalidUseOfNull);
    outer.inOut()->vt = VT_EMPTY;
}

TEST(Conversions, OfArraysAreMismatches) {
    Variant array;
    array.inOut()->vt = VT_ARRAY | VT_I4;
    array.inOut()->parray = nullptr;
    array.inOut()->parray = com::SafeArray::of<LONG>(1).detach();
    EXPECT_EQ(int16(array).result, mismatch);
    EXPECT_EQ(single(array).result, mismatch);
    EXPECT_EQ(text(array).result, mismatch);
}

TEST(Numeric, AreNumbersBooleansAndTextsThatReadAsNumbers) {
    LONG number = 1;
    for (const Variant& v : {Variant::of(LONG{1}), Variant::of(1.5F), Variant::of(1.5), currency(1),
                             decimal(1), ofByte(0), Variant::ofBool(true), reference(VT_I4, &number)})
        EXPECT_TRUE(com::isNumeric(v.get())) << v.type();
    for (const wchar_t* yes :
         {L"12", L" 12 ", L"-1.5", L"+3", L"1,234.5", L"$5", L"1e3", L"1E-5", L"(5)", L"5-", L".5", L"5."})
        EXPECT_TRUE(com::isNumeric(Variant::of(yes).get())) << yes;
    Variant inner = Variant::of(L"7");
    EXPECT_TRUE(com::isNumeric(reference(VT_VARIANT, inner.inOut()).get()));
}

TEST(Numeric, AreNotNullEmptyDatesErrorsObjectsAndArrays) {
    Variant array;
    array.inOut()->vt = VT_ARRAY | VT_I4;
    array.inOut()->parray = nullptr;
    Variant noText;
    noText.inOut()->vt = VT_BSTR;
    noText.inOut()->bstrVal = nullptr;
    for (const Variant& v : {Variant::null(), Variant(), Variant::ofDate(1), Variant::missing(), nothing(),
                             noText, reference(VT_I4, nullptr)})
        EXPECT_FALSE(com::isNumeric(v.get())) << v.type();
    EXPECT_FALSE(com::isNumeric(array.get()));
    for (const wchar_t* no : {L"", L" ", L"N/A", L"True", L"1 2", L"1e400", L"12a", L"0x10", L"1.2.3"})
        EXPECT_FALSE(com::isNumeric(Variant::of(no).get())) << no;
}

TEST(Variant, TheFourKindsOfNothingAreMeantLiterally) {
    EXPECT_EQ(Variant().type(), VT_EMPTY);
    EXPECT_EQ(Variant::null().type(), VT_NULL);
    EXPECT_TRUE(Variant::null().isNull());
    EXPECT_EQ(Variant::missing().type(), VT_ERROR);
    EXPECT_EQ(Variant::missing().get().scode, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(nothing().type(), VT_DISPATCH);
    EXPECT_EQ(nothing().get().pdispVal, nullptr);
}

TEST(Variant, BooleansAreZeroOrMinusOne) {
    EXPECT_EQ(Variant::ofBool(true).get().boolVal, -1);
    EXPECT_EQ(Variant::ofBool(false).get().boolVal, 0);
    EXPECT_EQ(com::variantBool(true), -1);
}

TEST(Variant, CopiesAndMovesOwnWhatTheyHold) {
    Variant first = Variant::of(L"text");
    const Variant copy = first;
    EXPECT_NE(copy.get().bstrVal, first.get().bstrVal);
    Variant moved = std::move(first);
    EXPECT_EQ(com::view(moved.get().bstrVal), L"text");
    VARIANT out;
    moved.detachTo(&out);
    EXPECT_EQ(moved.type(), VT_EMPTY);
    EXPECT_EQ(out.vt, VT_BSTR);
    VariantClear(&out);
    LONG number = 4;
    EXPECT_EQ(Variant::copyOf(reference(VT_I4, &number).get()).type(), VT_I4);
}

TEST(Variant, OfAnArrayIsACopyOfItWithItsBounds) {
    SAFEARRAYBOUND bound{2, -1};
    const com::SafeArray array(SafeArrayCreate(VT_VARIANT, 1, &bound));
    {
        const com::ArrayView<VARIANT> elements(array.get());
        Variant::of(L"text").detachTo(&elements[0]);
        Variant::of(LONG{7}).detachTo(&elements[1]);
    }
    const Variant copy = Variant::of(array.get());
    ASSERT_EQ(copy.type(), VT_ARRAY | VT_VARIANT);
    EXPECT_NE(copy.get().parray, array.get());
    EXPECT_EQ(com::bounds(copy.get().parray), (com::Bounds{-1, 0}));
    const com::ArrayView<VARIANT> elements(copy.get().parray);
    const com::ArrayView<VARIANT> original(array.get());
    EXPECT_EQ(com::view(elements[0].bstrVal), L"text");
    EXPECT_NE(elements[0].bstrVal, original[0].bstrVal);
    EXPECT_EQ(elements[1].lVal, 7);
}

TEST(Variant, OfNoArrayIsAnArrayWithoutAny) {
    const Variant none = Variant::of(static_cast<SAFEARRAY*>(nullptr));
    EXPECT_EQ(none.type(), VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(none.get().parray, nullptr);
    Variant copy;
    copy = none;
    EXPECT_EQ(copy.type(), VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(copy.get().parray, nullptr);
}

TEST(Variant, OfAnArrayOfAnotherElementTypeIsError13) {
    for (const VARTYPE type : {VT_I4, VT_BSTR, VT_R8}) {
        const com::SafeArray array(SafeArrayCreateVector(type, 0, 2));
        try {
            static_cast<void>(Variant::of(array.get()));
            ADD_FAILURE() << type;
        } catch (const com::Error& error) {
            EXPECT_EQ(error.result(), mismatch) << type;
        }
    }
}

}  // namespace
}  // namespace vtdn::test

// A data point on its own: what is put into it and read back. It needs no engine.
#include <cmath>
#include <limits>
#include <optional>

#include "data_interface/value.h"
#include "data_point_call.h"

namespace vtdn::embedded::test {
namespace {

class EngineDataPoint : public testing::Test {
  protected:
    /// Puts a value into the data point, and into a data item to compare with.
    [[nodiscard]] Failure putValue(const com::Variant& value) const {
        Failure failure = failureOf([&] { point.put(&DIDataPoint::put_NValue, value); });
        EXPECT_EQ(failureOf([&] { item.putValue(value); }).description, failure.description);
        return failure;
    }
    [[nodiscard]] com::Variant itemsValue() const {
        com::Variant value;
        item.value(value);
        return value;
    }
    [[nodiscard]] Failure putCode(const com::Variant& code) const {
        return failureOf([&] { point.put(&DIDataPoint::put_MC, code); });
    }
    /// The code in it; none for Null.
    [[nodiscard]] std::optional<LONG> code() const {
        const com::Variant read = codeOf(point);
        if (read.isNull()) return std::nullopt;
        EXPECT_EQ(read.type(), VT_I4);
        return read.get().lVal;
    }
    void expectBlank() const {
        EXPECT_TRUE(valueOf(point).isNull());
        EXPECT_TRUE(codeOf(point).isNull());
        EXPECT_EQ(extraOf(point), L"");
        EXPECT_EQ(occurrenceOf(point), L"");
    }
    void fill() const {
        point.put(&DIDataPoint::put_NValue, com::Variant::of(2.5F));
        point.put(&DIDataPoint::put_MC, com::Variant::of(LONG{7}));
        const com::Bstr extra(L"extra");
        const com::Bstr occurrence(L"occurrence");
        point.put(&DIDataPoint::put_XValueXML, extra.get());
        point.put(&DIDataPoint::put_OccDataXML, occurrence.get());
    }

    EngineLibrary library;
    engine::DataPoint point = engine::DataPoint::create();
    engine::DataItem item = engine::DataItem::create();
};

com::Variant unsignedOf(ULONG number) {
    com::Variant value;
    value.inOut()->vt = VT_UI4;
    value.inOut()->ulVal = number;
    return value;
}

com::Variant longOf(LONGLONG number) {
    com::Variant value;
    value.inOut()->vt = VT_I8;
    value.inOut()->llVal = number;
    return value;
}

com::Variant textOf(std::wstring_view text) {
    return com::Variant::of(text);
}

}  // namespace

TEST_F(EngineDataPoint, ANewOneIsBlank) {
    EXPECT_EQ(timeOf(point), 0.0);
    expectBlank();
}

TEST_F(EngineDataPoint, InitialisingMakesItBlankAtATime) {
    point.initialise(hour(1.5));
    EXPECT_EQ(timeOf(point), hour(1.5));
    expectBlank();
    fill();
    point.initialise(-1.25);
    EXPECT_EQ(timeOf(point), -1.25);
    expectBlank();
}

TEST_F(EngineDataPoint, TimesAreRoundedToTheSecond) {
    point.initialise(hour(1) + 0.4 / 86400);
    EXPECT_EQ(timeOf(point), hour(1));
}

TEST_F(EngineDataPoint, DatesThatAreNoneAreRefusedAndChangeNothing) {
    point.initialise(hour(2));
    fill();
    for (const double none : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL}) {
        const Failure failure = failureOf([&] { point.initialise(none); });
        EXPECT_EQ(failure.number, 6) << none;
        EXPECT_NE(failure.description.find(L"outside the years 100 to 9999"), std::wstring::npos);
    }
    EXPECT_EQ(timeOf(point), hour(2));
    EXPECT_EQ(extraOf(point), L"extra");
}

TEST_F(EngineDataPoint, ValuesAreKeptAsADataItemKeepsThem) {
    for (const auto& value :
         {com::Variant::of(LONG{-5}), com::Variant::of(2.5F), com::Variant::of(0.1), com::Variant::null(),
          com::Variant(), com::Variant::ofBool(true), com::Variant::ofDate(hour(1)), textOf(L""),
          textOf(anyText), textOf(L"12.5"), unsignedOf(4'000'000'000U)}) {
        EXPECT_EQ(putValue(value).number, 0);
        const com::Variant kept = valueOf(point);
        EXPECT_EQ(kept.type(), itemsValue().type());
        EXPECT_EQ(fromVariant(kept.get()), fromVariant(itemsValue().get())) << value.type();
    }
}

TEST_F(EngineDataPoint, ValuesThatADataItemRefusesAreRefusedAlikeAndChangeNothing) {
    EXPECT_EQ(putValue(com::Variant::of(2.5F)).number, 0);
    EXPECT_EQ(putValue(com::Variant::of(std::numeric_limits<double>::infinity())).number, 6);
    EXPECT_EQ(putValue(com::Variant::of(std::nan(""))).number, 6);
    EXPECT_EQ(putValue(textOf(std::wstring(65'536, L'x'))).number, 5);
    EXPECT_EQ(putValue(textOf(L"\xD83C")).number, 5);
    EXPECT_EQ(putValue(com::Variant::missing()).number, 13);
    EXPECT_EQ(putValue(com::Variant::of(point.get())).number, 13);
    EXPECT_EQ(putValue(com::Variant::of(variantsOf({com::Variant::of(LONG{1})}).get())).number, 13);
    EXPECT_EQ(valueOf(point).get().fltVal, 2.5F);
}

TEST_F(EngineDataPoint, ACodeIsAWholeNumberOrNull) {
    const std::vector<std::pair<com::Variant, std::optional<LONG>>> cases{
        {com::Variant::of(LONG_MAX), LONG_MAX},
        {com::Variant::of(LONG_MIN), LONG_MIN},
        {com::Variant::null(), std::nullopt},
        {com::Variant::of(LONG{0}), 0},
        {com::Variant(), std::nullopt},
        {textOf(L" 12 "), 12},
        {com::Variant::of(2.5), 2},
        {com::Variant::of(-3.5F), -4},
        {com::Variant::ofBool(true), -1},
        {unsignedOf(2'147'483'647U), LONG_MAX},
    };
    for (const auto& [given, kept] : cases) {
        EXPECT_EQ(putCode(given).number, 0) << given.type();
        EXPECT_EQ(code(), kept) << given.type();
    }
}

TEST_F(EngineDataPoint, OtherCodesAreRefusedAndChangeNothing) {
    ASSERT_EQ(putCode(com::Variant::of(LONG{5})).number, 0);
    for (const auto& beyond :
         {com::Variant::of(2147483648.0), com::Variant::of(-2147483649.0), com::Variant::of(std::nan("")),
          com::Variant::of(HUGE_VAL), unsignedOf(2'147'483'648U), longOf(2'147'483'648), longOf(1LL << 32),
          textOf(L"3000000000")}) {
        const Failure failure = putCode(beyond);
        EXPECT_EQ(failure.number, 6) << beyond.type();
        EXPECT_NE(failure.description.find(L"2147483647"), std::wstring::npos) << failure.description;
    }
    for (const auto& other :
         {textOf(L"abc"), textOf(L""), com::Variant::missing(), com::Variant::ofDate(hour(1)),
          com::Variant::of(point.get()), com::Variant::of(static_cast<IDispatch*>(nullptr)),
          com::Variant::of(variantsOf({com::Variant::of(LONG{1})}).get())}) {
        const Failure failure = putCode(other);
        EXPECT_EQ(failure.number, 13) << other.type();
        EXPECT_NE(failure.description.find(L"monitor code"), std::wstring::npos) << failure.description;
    }
    EXPECT_EQ(code(), 5);
}

TEST_F(EngineDataPoint, CodesAndValuesMayBeGivenByReference) {
    com::Variant inner = com::Variant::of(LONG{9});
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = inner.inOut();
    EXPECT_EQ(point.get()->put_MC(reference), S_OK);
    EXPECT_EQ(point.get()->put_NValue(reference), S_OK);
    EXPECT_EQ(code(), 9);
    EXPECT_EQ(valueOf(point).get().lVal, 9);
    *inner.inOut() = com::Variant::null().get();
    EXPECT_EQ(point.get()->put_MC(reference), S_OK);
    EXPECT_EQ(code(), std::nullopt);
    VARIANT nowhere{};
    nowhere.vt = VT_BYREF | VT_I4;
    EXPECT_EQ(failureOf([&] { com::check(point.get()->put_MC(nowhere)); }).number, 13);
    EXPECT_EQ(failureOf([&] { com::check(point.get()->put_NValue(nowhere)); }).number, 13);
}

TEST_F(EngineDataPoint, TextsKeepEveryCharacter) {
    const com::Bstr extra(anyText);
    const com::Bstr occurrence(anyText + L"!");
    point.put(&DIDataPoint::put_XValueXML, extra.get());
    point.put(&DIDataPoint::put_OccDataXML, occurrence.get());
    EXPECT_EQ(extraOf(point), anyText);
    EXPECT_EQ(occurrenceOf(point), anyText + L"!");
    EXPECT_EQ(point.get()->put_XValueXML(nullptr), S_OK);
    EXPECT_EQ(extraOf(point), L"");
    EXPECT_EQ(occurrenceOf(point), anyText + L"!");
}

TEST_F(EngineDataPoint, TextsThatCannotBeKeptAreRefusedAndChangeNothing) {
    fill();
    for (const std::wstring& text : {std::wstring(L"\xDFED"), std::wstring(65'536, L'x')}) {
        const com::Bstr given(text);
        EXPECT_EQ(failureOf([&] { point.put(&DIDataPoint::put_XValueXML, given.get()); }).number, 5);
        EXPECT_EQ(failureOf([&] { point.put(&DIDataPoint::put_OccDataXML, given.get()); }).number, 5);
    }
    EXPECT_EQ(extraOf(point), L"extra");
    EXPECT_EQ(occurrenceOf(point), L"occurrence");
}

TEST_F(EngineDataPoint, NullPointersAreRefused) {
    EXPECT_EQ(point.get()->get_TStamp(nullptr), E_POINTER);
    EXPECT_EQ(point.get()->get_NValue(nullptr), E_POINTER);
    EXPECT_EQ(point.get()->get_MC(nullptr), E_POINTER);
    EXPECT_EQ(point.get()->get_XValueXML(nullptr), E_POINTER);
    EXPECT_EQ(point.get()->get_OccDataXML(nullptr), E_POINTER);
}

}  // namespace vtdn::embedded::test

// Param_GetDataArray_Integer, _Single and _String: the calls of the engine, the conversions, the array
// arguments.
#include <algorithm>
#include <limits>
#include <type_traits>

#include "operations/on_strict_engine.h"
#include "support/array.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 530001;
constexpr DATE start = 39448.0;

/// The three operations by the type of their values.
struct Integer {
    using Element = LONG;
    static constexpr auto member = &_DIWrapper::Param_GetDataArray_Integer;
    static constexpr const wchar_t* unknown = L"PID 0-005-3-00-01 does not exist (WDN-001)";
    static constexpr VARTYPE converted = VT_I2;
};
struct Single {
    using Element = float;
    static constexpr auto member = &_DIWrapper::Param_GetDataArray_Single;
    static constexpr const wchar_t* unknown = L"PID 0-005-3-00-01 does not exist (WDN-002)";
    static constexpr VARTYPE converted = VT_R4;
};
struct Text {
    using Element = BSTR;
    static constexpr auto member = &_DIWrapper::Param_GetDataArray_String;
    static constexpr const wchar_t* unknown = L"PID 0-005-3-00-01 does not exist (WDN-003)";
    static constexpr VARTYPE converted = VT_BSTR;
};

/// The array arguments of one call; the flags are not an argument of the text operation.
template <class Operation>
struct Arrays {
    explicit Arrays(ULONG count, LONG lower = 0)
        : values(lower, count), mcs(lower, count), flags(lower, count) {}
    Array<typename Operation::Element> values;
    Array<LONG> mcs;
    Array<VARIANT_BOOL> flags;
};

template <class Operation>
class ReadArrays : public OnStrictEngine {
  protected:
    static constexpr bool hasFlags = !std::is_same_v<Operation, Text>;
    using Value = typename Array<typename Operation::Element>::Value;

    bool read(Arrays<Operation>& arrays, LONG count) {
        return withArguments(
            arrays, count, [this](auto... arguments) { return client.yes(Operation::member, arguments...); });
    }
    Failure fail(Arrays<Operation>& arrays, LONG count) {
        return withArguments(arrays, count, [this](auto... arguments) {
            return client.failure(Operation::member, arguments...);
        });
    }
    /// The calls in front of the first item.
    void expectFilled(LONG count) {
        expectExists(pid, true);
        engine.expect({{"new DIDataArray"},
                       {"Array.Define(39448, " + std::to_string(count) + ", '60s', 3, 0)"},
                       {"Params.Item(530001, -1)"},
                       {param(pid, "ReadDataArray(Array)")}});
    }
    /// The calls of one item; `again` when its value is read a second time.
    void expectItem(LONG index, const Answer& value, bool again, LONG mc) {
        const std::string item = "Item(" + std::to_string(index) + ")";
        engine.expect({{"Array." + item}, {item + ".Value", value}});
        if (again) engine.expect({{item + ".Value", value}});
        engine.expect({{item + ".MC", static_cast<int>(mc)}});
    }
    /// What one value becomes: element, flag; True and 0 for a value that is none.
    void expectOne(const com::Variant& stored, const Value& expected, bool nonNumeric, bool again) {
        Arrays<Operation> arrays(1);
        arrays.values.fill(other());
        arrays.flags.fill(!nonNumeric);
        expectFilled(1);
        expectItem(1, stored, again, 7);
        EXPECT_TRUE(read(arrays, 1));
        EXPECT_EQ(arrays.values.values(), std::vector<Value>{expected}) << "type " << stored.type();
        EXPECT_EQ(arrays.mcs.values(), std::vector<LONG>{7});
        this->expectFlags(arrays, {nonNumeric});
    }
    /// The flags from index 0, where there are flags.
    static void expectFlags(const Arrays<Operation>& arrays, const std::vector<bool>& expected) {
        if constexpr (hasFlags) {
            EXPECT_EQ(arrays.flags.values(), expected);
            EXPECT_EQ(arrays.flags.lower(), 0);
        }
    }
    /// Content that an operation must overwrite or keep.
    static Value other() {
        if constexpr (std::is_same_v<Operation, Text>) {
            return L"old";
        } else {
            return Value{77};
        }
    }
    static Value twelve() {
        if constexpr (std::is_same_v<Operation, Text>) {
            return L"12";
        } else {
            return Value{12};
        }
    }

  private:
    template <class Do>
    auto withArguments(Arrays<Operation>& arrays, LONG count, Do call) {
        const Bstr type(L"60s");
        if constexpr (hasFlags) {
            return call(pid, start, count, type.get(), LONG{3}, arrays.values.inOut(), arrays.mcs.inOut(),
                        arrays.flags.inOut());
        } else {
            return call(pid, start, count, type.get(), LONG{3}, arrays.values.inOut(), arrays.mcs.inOut());
        }
    }
};

using Operations = testing::Types<Integer, Single, Text>;
TYPED_TEST_SUITE(ReadArrays, Operations);

com::Variant null() {
    return com::Variant::null();
}
com::Variant text(std::wstring_view value) {
    return com::Variant::of(value);
}

com::Variant raw(VARTYPE type, LONGLONG bits) {
    com::Variant variant;
    variant.inOut()->llVal = bits;
    variant.inOut()->vt = type;
    return variant;
}

com::Variant decimal(ULONGLONG mantissa, BYTE scale) {
    com::Variant variant;
    variant.inOut()->decVal = DECIMAL{};
    variant.inOut()->decVal.Lo64 = mantissa;
    variant.inOut()->decVal.scale = scale;
    variant.inOut()->vt = VT_DECIMAL;
    return variant;
}

// ---- Refused calls

TYPED_TEST(ReadArrays, BeforeSetUpTheArraysAreUntouchedAndNoProblemIsAdded) {
    Arrays<TypeParam> arrays(2, 1);
    arrays.values.fill(this->other());
    const void* data = arrays.values.data();
    EXPECT_FALSE(this->read(arrays, 5));
    EXPECT_EQ(arrays.values.data(), data);
    EXPECT_EQ(arrays.values.lower(), 1);
    EXPECT_EQ(arrays.values.upper(), 2);
    EXPECT_EQ(this->client.problems(), L"");
}

TYPED_TEST(ReadArrays, BeforeSetUpEvenNoArraysAreFine) {
    Arrays<TypeParam> arrays(0);
    SafeArrayDestroy(std::exchange(*arrays.values.inOut(), nullptr));
    SafeArrayDestroy(std::exchange(*arrays.mcs.inOut(), nullptr));
    SafeArrayDestroy(std::exchange(*arrays.flags.inOut(), nullptr));
    EXPECT_FALSE(this->read(arrays, 5));
    EXPECT_EQ(arrays.values.get(), nullptr);
}

TYPED_TEST(ReadArrays, AnUnknownPidAddsItsProblemAndLeavesTheArraysUntouched) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2, 1);
    arrays.values.fill(this->other());
    this->expectExists(pid, false);
    EXPECT_FALSE(this->read(arrays, 5));
    EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other()}));
    EXPECT_EQ(arrays.values.lower(), 1);
    EXPECT_EQ(this->client.problemTexts(), std::vector<std::wstring>{TypeParam::unknown});
}

// ---- The calls

TYPED_TEST(ReadArrays, ItemsAreAskedInOrderAndMonitorCodesAlwaysCopied) {
    this->setUpClient();
    Arrays<TypeParam> arrays(3);
    arrays.values.fill(this->other());
    this->expectFilled(3);
    this->expectItem(1, 12, true, 1);
    this->expectItem(2, null(), false, -9);
    this->expectItem(3, 12, true, 0x7FFFFFFF);
    EXPECT_TRUE(this->read(arrays, 3));
    EXPECT_EQ(arrays.values.values(),
              (std::vector{this->twelve(), typename TestFixture::Value{}, this->twelve()}));
    EXPECT_EQ(arrays.mcs.values(), (std::vector<LONG>{1, -9, 0x7FFFFFFF}));
    this->expectFlags(arrays, {false, true, false});
    EXPECT_EQ(this->client.problems(), L"");
}

TYPED_TEST(ReadArrays, EachItemIsReleasedBeforeTheNextAndTheArrayAtTheEnd) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    this->engine.expectReleases({"Item(", "Array"});
    this->expectFilled(2);
    this->expectItem(1, 12, true, 1);
    this->engine.expect({{"release Item(1)"}});
    this->expectItem(2, 12, true, 1);
    this->engine.expect({{"release Item(2)"}, {"release Array"}});
    EXPECT_TRUE(this->read(arrays, 2));
}

TYPED_TEST(ReadArrays, TheSecondReadingIsTheOneThatCounts) {
    this->setUpClient();
    Arrays<TypeParam> arrays(1);
    this->expectFilled(1);
    this->engine.expect({{"Array.Item(1)"}, {"Item(1).Value", 99}, {"Item(1).Value", 12}, {"Item(1).MC", 4}});
    EXPECT_TRUE(this->read(arrays, 1));
    EXPECT_EQ(arrays.values.values(), std::vector{this->twelve()});
}

TYPED_TEST(ReadArrays, StartTypeAndLengthReachTheEngineUnchanged) {
    this->setUpClient();
    Arrays<TypeParam> arrays(1);
    const auto define = [&](DATE from, BSTR type, LONG length, const std::string& shown) {
        this->expectExists(pid, true);
        this->engine.expect({{"new DIDataArray"}, {"Array.Define(" + shown + ", 0)", engineFails()}});
        if constexpr (TestFixture::hasFlags) {
            EXPECT_EQ(this->client.failure(TypeParam::member, pid, from, LONG{1}, type, length,
                                           arrays.values.inOut(), arrays.mcs.inOut(), arrays.flags.inOut()),
                      engineFailure());
        } else {
            EXPECT_EQ(this->client.failure(TypeParam::member, pid, from, LONG{1}, type, length,
                                           arrays.values.inOut(), arrays.mcs.inOut()),
                      engineFailure());
        }
    };
    using namespace std::string_literals;
    define(-1.25, nullptr, 0, "-1.25, 1, '', 0");
    define(39448.123456789, Bstr(L" H\x00e9\0x "s).get(), -2147483647 - 1,
           "39448.123456789, 1, ' H\xC3\xA9\0x ', -2147483648"s);
}

// ---- Failing engine calls

TYPED_TEST(ReadArrays, AFailureInFrontOfTheItemsReachesTheClientAndLeavesTheArraysUntouched) {
    this->setUpClient();
    const std::vector<Call> calls = {{"Engine.Params"},           {"Params.Exists(530001)", true},
                                     {"new DIDataArray"},         {"Array.Define(39448, 5, '60s', 3, 0)"},
                                     {"Params.Item(530001, -1)"}, {this->param(pid, "ReadDataArray(Array)")}};
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (std::size_t i = 0; i < failing; ++i) this->engine.expect({calls[i]});
        this->engine.expect({{calls[failing].text, engineFails()}});
        Arrays<TypeParam> arrays(2, 1);
        arrays.values.fill(this->other());
        EXPECT_EQ(this->fail(arrays, 5), engineFailure()) << calls[failing].text;
        EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other()})) << calls[failing].text;
        EXPECT_EQ(arrays.values.lower(), 1);
    }
    EXPECT_EQ(this->client.problems(), L"");
}

TYPED_TEST(ReadArrays, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    this->setUpClient();
    Arrays<TypeParam> arrays(1);
    this->engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(this->fail(arrays, 1).result, unsetObject);
    this->expectExists(pid, true);
    this->engine.expect({{"new DIDataArray"},
                         {"Array.Define(39448, 1, '60s', 3, 0)"},
                         {"Params.Item(530001, -1)", Answer::noObject()}});
    EXPECT_EQ(this->fail(arrays, 1).result, unsetObject);
    this->expectFilled(1);
    this->engine.expect({{"Array.Item(1)", Answer::noObject()}});
    EXPECT_EQ(this->fail(arrays, 1).result, unsetObject);
}

TYPED_TEST(ReadArrays, AFailingItemOrMonitorCodeReachesTheClientAndTheArraysStayWhole) {
    this->setUpClient();
    for (const bool atMc : {false, true}) {
        Arrays<TypeParam> arrays(2, 1);
        this->expectFilled(3);
        this->expectItem(1, 12, true, 6);
        if (atMc) {
            this->engine.expect({{"Array.Item(2)"},
                                 {"Item(2).Value", 12},
                                 {"Item(2).Value", 12},
                                 {"Item(2).MC", engineFails()}});
        } else {
            this->engine.expect({{"Array.Item(2)", engineFails()}});
        }
        EXPECT_EQ(this->fail(arrays, 3), engineFailure());
        EXPECT_EQ(arrays.values.upper(), 2);
        EXPECT_EQ(arrays.values.lower(), 0);
        EXPECT_EQ(arrays.values.values().front(), this->twelve());
        EXPECT_EQ(arrays.mcs.values().front(), 6);
        // Whole: every element can be written and read.
        arrays.values.fill(this->other());
        EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other(), this->other()}));
    }
    EXPECT_EQ(this->client.problems(), L"");
}

TYPED_TEST(ReadArrays, AFailingFirstReadingIsAnErrorForNumbersAndEmptyForTexts) {
    this->setUpClient();
    Arrays<TypeParam> arrays(1);
    arrays.values.fill(this->other());
    this->expectFilled(1);
    this->engine.expect({{"Array.Item(1)"}, {"Item(1).Value", engineFails()}});
    if (TestFixture::hasFlags) {
        EXPECT_EQ(this->fail(arrays, 1), engineFailure());
        return;
    }
    // Whether the value is read again after that is open; what comes of it is not.
    this->engine.expect({Call{"Item(1).Value", L"second"}.orNot(), {"Item(1).MC", 8}});
    EXPECT_TRUE(this->read(arrays, 1));
    EXPECT_EQ(arrays.values.values(), std::vector{typename TestFixture::Value{}});
    EXPECT_EQ(arrays.mcs.values(), std::vector<LONG>{8});
}

TYPED_TEST(ReadArrays, AFailingSecondReadingMakesTheValueMissing) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    arrays.values.fill(this->other());
    this->expectFilled(2);
    this->engine.expect(
        {{"Array.Item(1)"}, {"Item(1).Value", 12}, {"Item(1).Value", engineFails()}, {"Item(1).MC", 8}});
    this->expectItem(2, 12, true, 9);
    EXPECT_TRUE(this->read(arrays, 2));
    EXPECT_EQ(arrays.values.values(), (std::vector{typename TestFixture::Value{}, this->twelve()}));
    EXPECT_EQ(arrays.mcs.values(), (std::vector<LONG>{8, 9}));
    this->expectFlags(arrays, {true, false});
}

TYPED_TEST(ReadArrays, ASuppressedFailureDoesNotColourALaterOne) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    this->expectFilled(2);
    this->engine.expect(
        {{"Array.Item(1)"}, {"Item(1).Value", 12}, {"Item(1).Value", engineFails()}, {"Item(1).MC", 8}});
    this->engine.expect({{"Array.Item(2)", Answer::failure(E_FAIL)}});
    const Failure failure = this->fail(arrays, 2);
    EXPECT_EQ(failure.result, E_FAIL);
    EXPECT_NE(failure.description, engineFailure().description);
}

// ---- Array arguments

TYPED_TEST(ReadArrays, ArraysOfTheRightBoundsAreKept) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    SAFEARRAY* const values = arrays.values.get();
    SAFEARRAY* const mcs = arrays.mcs.get();
    SAFEARRAY* const flags = arrays.flags.get();
    const void* const data[] = {arrays.values.data(), arrays.mcs.data(), arrays.flags.data()};
    this->expectFilled(2);
    this->expectItem(1, 12, true, 1);
    this->expectItem(2, 12, true, 2);
    EXPECT_TRUE(this->read(arrays, 2));
    EXPECT_EQ(arrays.values.get(), values);
    EXPECT_EQ(arrays.mcs.get(), mcs);
    EXPECT_EQ(arrays.flags.get(), flags);
    EXPECT_EQ(arrays.values.data(), data[0]);
    EXPECT_EQ(arrays.mcs.data(), data[1]);
    EXPECT_EQ(arrays.flags.data(), data[2]);
}

TYPED_TEST(ReadArrays, ArraysOfAnyOtherBoundsBecomeZeroToCountLessOne) {
    this->setUpClient();
    const struct {
        LONG lower;
        ULONG count;
    } shapes[] = {
        {1, 2}, {0, 1}, {0, 3}, {-1, 2}, {-5, 100}, {0, 0}, {1, 0}, {2147483646, 1}, {-2147483647 - 1, 2}};
    for (const auto& [lower, count] : shapes) {
        Arrays<TypeParam> arrays(count, lower);
        this->expectFilled(2);
        this->expectItem(1, 12, true, 1);
        this->expectItem(2, null(), false, 2);
        EXPECT_TRUE(this->read(arrays, 2));
        EXPECT_EQ(arrays.values.values(), (std::vector{this->twelve(), typename TestFixture::Value{}}));
        EXPECT_EQ(arrays.mcs.values(), (std::vector<LONG>{1, 2}));
        EXPECT_EQ(arrays.values.lower(), 0) << lower << " " << count;
        EXPECT_EQ(arrays.mcs.lower(), 0);
        this->expectFlags(arrays, {false, true});
    }
}

TYPED_TEST(ReadArrays, EachArrayIsJudgedByItself) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    Array<LONG> oneBased(1, 2);
    std::swap(*arrays.mcs.inOut(), *oneBased.inOut());
    const void* const values = arrays.values.data();
    this->expectFilled(2);
    this->expectItem(1, 12, true, 1);
    this->expectItem(2, 12, true, 2);
    EXPECT_TRUE(this->read(arrays, 2));
    EXPECT_EQ(arrays.values.data(), values);
    EXPECT_EQ(arrays.mcs.values(), (std::vector<LONG>{1, 2}));
    EXPECT_EQ(arrays.mcs.lower(), 0);
}

TYPED_TEST(ReadArrays, AnArrayWithoutDimensionsIsError9) {
    this->setUpClient();
    for (int which = 0; which < (TestFixture::hasFlags ? 3 : 2); ++which) {
        Arrays<TypeParam> arrays(2);
        SAFEARRAY** const unallocated[] = {arrays.values.inOut(), arrays.mcs.inOut(), arrays.flags.inOut()};
        SafeArrayDestroy(std::exchange(*unallocated[which], nullptr));
        this->expectFilled(2);
        const Failure failure = this->fail(arrays, 2);
        EXPECT_EQ(clientNumber(failure.result), 9) << which;
        EXPECT_EQ(failure.description, L"Subscript out of range");
        EXPECT_EQ(*unallocated[which], nullptr);
    }
    EXPECT_EQ(this->client.problems(), L"");
}

TYPED_TEST(ReadArrays, ArraysAreDimensionedInArgumentOrderUpToTheOneThatFails) {
    this->setUpClient();
    Arrays<TypeParam> arrays(5, 1);
    SafeArrayDestroy(std::exchange(*arrays.mcs.inOut(), nullptr));
    this->expectFilled(2);
    EXPECT_EQ(clientNumber(this->fail(arrays, 2).result), 9);
    EXPECT_EQ(arrays.values.lower(), 0);
    EXPECT_EQ(arrays.values.upper(), 1);
    EXPECT_EQ(arrays.flags.lower(), 1);
    EXPECT_EQ(arrays.flags.upper(), 5);
}

TYPED_TEST(ReadArrays, AnArrayOfTwoDimensionsIsError9) {
    this->setUpClient();
    for (int which = 0; which < (TestFixture::hasFlags ? 3 : 2); ++which) {
        Arrays<TypeParam> arrays(2);
        SAFEARRAY** const square[] = {arrays.values.inOut(), arrays.mcs.inOut(), arrays.flags.inOut()};
        VARTYPE type = VT_EMPTY;
        ASSERT_EQ(SafeArrayGetVartype(*square[which], &type), S_OK);
        SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
        SafeArrayDestroy(std::exchange(*square[which], SafeArrayCreate(type, 2, bounds)));
        SAFEARRAY* const before = *square[which];
        this->expectFilled(2);
        EXPECT_EQ(clientNumber(this->fail(arrays, 2).result), 9) << which;
        EXPECT_EQ(*square[which], before);
        EXPECT_EQ(SafeArrayGetDim(before), 2U);
    }
}

TYPED_TEST(ReadArrays, AnArrayOfAnotherElementTypeIsError13) {
    this->setUpClient();
    for (const VARTYPE wrong : {VT_I2, VT_R8, VT_VARIANT, VT_UNKNOWN}) {
        for (const ULONG size : {2U, 3U}) {
            for (int which = 0; which < (TestFixture::hasFlags ? 3 : 2); ++which) {
                Arrays<TypeParam> arrays(2);
                SAFEARRAY** const odd[] = {arrays.values.inOut(), arrays.mcs.inOut(), arrays.flags.inOut()};
                SAFEARRAYBOUND bounds{size, 0};
                SafeArrayDestroy(std::exchange(*odd[which], SafeArrayCreate(wrong, 1, &bounds)));
                SAFEARRAY* const before = *odd[which];
                this->expectFilled(2);
                const Failure failure = this->fail(arrays, 2);
                EXPECT_EQ(clientNumber(failure.result), 13) << wrong << " of " << size << " in " << which;
                EXPECT_EQ(failure.description, L"Type mismatch");
                EXPECT_EQ(*odd[which], before);
            }
        }
    }
}

TYPED_TEST(ReadArrays, AFixedOrLockedArrayIsFilledWhenItFitsAndError10WhenItDoesNot) {
    this->setUpClient();
    for (const bool lock : {false, true}) {
        for (const ULONG size : {2U, 3U}) {
            Arrays<TypeParam> arrays(size);
            arrays.values.fill(this->other());
            if (lock) {
                ASSERT_EQ(SafeArrayLock(arrays.values.get()), S_OK);
            } else {
                arrays.values.fix();
            }
            SAFEARRAY* const before = arrays.values.get();
            const void* const data = arrays.values.data();
            this->expectFilled(2);
            if (size == 2) {
                this->expectItem(1, 12, true, 1);
                this->expectItem(2, 12, true, 2);
                EXPECT_TRUE(this->read(arrays, 2));
                EXPECT_EQ(arrays.values.values(), (std::vector{this->twelve(), this->twelve()}));
            } else {
                const Failure failure = this->fail(arrays, 2);
                EXPECT_EQ(clientNumber(failure.result), 10);
                EXPECT_EQ(failure.description, L"This array is fixed or temporarily locked");
                EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other(), this->other()}));
            }
            EXPECT_EQ(arrays.values.get(), before);
            EXPECT_EQ(arrays.values.data(), data);
            EXPECT_EQ(before->cLocks, lock ? 1U : 0U);
            if (lock) SafeArrayUnlock(before);
        }
    }
}

TYPED_TEST(ReadArrays, NoArrayIsLeftLocked) {
    this->setUpClient();
    Arrays<TypeParam> arrays(1);
    this->expectFilled(1);
    this->expectItem(1, 12, true, 1);
    EXPECT_TRUE(this->read(arrays, 1));
    this->expectFilled(1);
    this->engine.expect({{"Array.Item(1)", engineFails()}});
    EXPECT_EQ(this->fail(arrays, 1), engineFailure());
    EXPECT_EQ(arrays.values.get()->cLocks, 0U);
    EXPECT_EQ(arrays.mcs.get()->cLocks, 0U);
    EXPECT_EQ(arrays.flags.get()->cLocks, 0U);
}

// ---- Counts

TYPED_TEST(ReadArrays, ACountOfZeroReachesTheEngineAndKeepsArraysThatHoldNothing) {
    this->setUpClient();
    Arrays<TypeParam> arrays(0);
    SAFEARRAY* const before = arrays.values.get();
    this->expectFilled(0);
    EXPECT_TRUE(this->read(arrays, 0));
    EXPECT_EQ(arrays.values.get(), before);
    EXPECT_TRUE(arrays.values.values().empty());
}

TYPED_TEST(ReadArrays, ACountBelowZeroReachesTheEngineAndThenCannotBeDimensioned) {
    this->setUpClient();
    for (const LONG count : {-1L, -5L, -2147483647L - 1}) {
        Arrays<TypeParam> arrays(2);
        arrays.values.fill(this->other());
        this->expectFilled(count);
        const Failure failure = this->fail(arrays, count);
        EXPECT_EQ(clientNumber(failure.result), 9) << count;
        EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other()}));
    }
}

#ifndef _WIN64  // a 64-bit process may have the memory
TYPED_TEST(ReadArrays, AnAbsurdCountRunsOutOfMemoryAndLeavesTheArraysWhole) {
    this->setUpClient();
    for (const LONG count : {0x7FFFFFFFL, 0x40000001L, 0x3FFFFFFFL}) {
        Arrays<TypeParam> arrays(2);
        arrays.values.fill(this->other());
        this->expectFilled(count);
        const Failure failure = this->fail(arrays, count);
        EXPECT_EQ(clientNumber(failure.result), 7) << count;
        EXPECT_EQ(failure.description, L"Out of memory");
        EXPECT_EQ(arrays.values.values(), (std::vector{this->other(), this->other()}));
    }
}
#endif

TYPED_TEST(ReadArrays, ACountThatTheEngineRefusesIsTheEnginesError) {
    this->setUpClient();
    Arrays<TypeParam> arrays(2);
    this->expectExists(pid, true);
    this->engine.expect(
        {{"new DIDataArray"}, {"Array.Define(39448, 2147483647, '60s', 3, 0)", engineFails()}});
    EXPECT_EQ(this->fail(arrays, 0x7FFFFFFF), engineFailure());
}

// ---- Conversions

using ReadIntegers = ReadArrays<Integer>;
using ReadSingles = ReadArrays<Single>;
using ReadTexts = ReadArrays<Text>;

TEST_F(ReadIntegers, NumbersBecomeWholeNumbersOf16BitsHalfToEven) {
    setUpClient();
    const struct {
        com::Variant value;
        LONG expected;
    } rows[] = {
        {com::Variant::of(LONG{12}), 12},
        {com::Variant::of(LONG{32767}), 32767},
        {com::Variant::of(LONG{-32768}), -32768},
        {com::Variant::of(2.5), 2},
        {com::Variant::of(3.5), 4},
        {com::Variant::of(0.5), 0},
        {com::Variant::of(1.5), 2},
        {com::Variant::of(-0.5), 0},
        {com::Variant::of(-1.5), -2},
        {com::Variant::of(-2.5), -2},
        {com::Variant::of(2.51), 3},
        {com::Variant::of(32767.4), 32767},
        {com::Variant::of(-32768.4), -32768},
        {com::Variant::of(2.5f), 2},
        {com::Variant::of(3.5f), 4},
        {com::Variant::ofBool(true), -1},
        {com::Variant::ofBool(false), 0},
        {raw(VT_I2, -5), -5},
        {raw(VT_UI1, 200), 200},
        {raw(VT_CY, 25000), 2},
        {raw(VT_CY, 35000), 4},
        {decimal(35, 1), 4},
        {decimal(25, 1), 2},
        {text(L"12"), 12},
        {text(L" 12 "), 12},
        {text(L"-7"), -7},
        {text(L"2.5"), 2},
        {text(L"1,234"), 1234},
        {text(L"1e3"), 1000},
    };
    for (const auto& [value, expected] : rows) expectOne(value, expected, false, true);
}

TEST_F(ReadIntegers, NumbersBeyond16BitsAreFlaggedAfterASecondReading) {
    setUpClient();
    for (const com::Variant& value :
         {com::Variant::of(LONG{40000}), com::Variant::of(LONG{32768}), com::Variant::of(LONG{-32769}),
          com::Variant::of(32767.5), com::Variant::of(-40000.0), com::Variant::of(1e300),
          com::Variant::of(-1e30f), com::Variant::of(std::numeric_limits<double>::infinity()),
          raw(VT_CY, 400000000), decimal(99999, 0), text(L"40000"), text(L"1e300")}) {
        expectOne(value, 0, true, true);
    }
}

TEST_F(ReadSingles, NumbersBecomeSingles) {
    setUpClient();
    const struct {
        com::Variant value;
        float expected;
    } rows[] = {
        {com::Variant::of(LONG{40000}), 40000},
        {com::Variant::of(LONG{16777217}), 16777216},
        {com::Variant::of(0.1), 0.1f},
        {com::Variant::of(-2.5f), -2.5f},
        {com::Variant::of(1e-50), 0},
        {com::Variant::ofBool(true), -1},
        {raw(VT_I2, -5), -5},
        {raw(VT_CY, 125000), 12.5f},
        {decimal(12345, 2), 123.45f},
        {text(L"12"), 12},
        {text(L"-1.5e2"), -150},
        {text(L"1,234.5"), 1234.5f},
    };
    for (const auto& [value, expected] : rows) expectOne(value, expected, false, true);
}

TEST_F(ReadSingles, NumbersBeyondSinglesAreFlaggedAfterASecondReading) {
    setUpClient();
    for (const com::Variant& value : {com::Variant::of(1e300), com::Variant::of(-4e38), text(L"1e39"),
                                      com::Variant::of(std::numeric_limits<double>::infinity())}) {
        expectOne(value, 0, true, true);
    }
}

/// What is no number, although some of it could be converted to one.
std::vector<com::Variant> noNumbers() {
    return {null(),
            com::Variant(),
            text(L""),
            text(L" "),
            text(L"N/A"),
            text(L"12 apples"),
            text(L"True"),
            text(L"1/1/2008"),
            com::Variant::ofDate(39448.5),
            com::Variant::missing(),
            raw(VT_ERROR, DISP_E_TYPEMISMATCH),
            com::Variant::of(static_cast<IDispatch*>(nullptr)),
            raw(VT_UNKNOWN, 0)};
}

TEST_F(ReadIntegers, WhatIsNoNumberIsFlaggedAfterOneReading) {
    setUpClient();
    for (const com::Variant& value : noNumbers()) expectOne(value, 0, true, false);
}

TEST_F(ReadSingles, WhatIsNoNumberIsFlaggedAfterOneReading) {
    setUpClient();
    for (const com::Variant& value : noNumbers()) expectOne(value, 0, true, false);
}

TEST_F(ReadTexts, EveryValueButNullIsReadTwiceAndConvertedToText) {
    using namespace std::string_literals;
    setUpClient();
    const struct {
        com::Variant value;
        std::wstring expected;
    } rows[] = {
        {com::Variant::of(LONG{-40000}), L"-40000"},
        {com::Variant::of(0.1f), L"0.1"},
        {com::Variant::of(16777216.0f), L"1.677722E+07"},
        {com::Variant::of(0.1), L"0.1"},
        {com::Variant::ofBool(true), L"True"},
        {com::Variant::ofBool(false), L"False"},
        {raw(VT_CY, 125000), L"12.5"},
        {decimal(12345, 2), L"123.45"},
        {text(L"N/A"), L"N/A"},
        {text(L""), L""},
        {text(std::wstring_view(L"a\0b", 3)), L"a\0b"s},
        {text(L"\xD83D\xDE00"), L"\xD83D\xDE00"},
        {com::Variant(), L""},
        // What has no text is empty text.
        {com::Variant::missing(), L""},
        {com::Variant::of(static_cast<IDispatch*>(nullptr)), L""},
    };
    for (const auto& [value, expected] : rows) expectOne(value, expected, false, true);
}

TEST_F(ReadTexts, ANullIsEmptyTextAfterOneReading) {
    setUpClient();
    expectOne(null(), L"", false, false);
}

TEST_F(ReadIntegers, AFlagIsWrittenAsMinusOne) {
    setUpClient();
    Arrays<Integer> arrays(1);
    expectFilled(1);
    expectItem(1, null(), false, 1);
    EXPECT_TRUE(read(arrays, 1));
    const com::ArrayView<VARIANT_BOOL> flags(arrays.flags.get());
    EXPECT_EQ(flags[0], VARIANT_TRUE);
}

TEST_F(ReadIntegers, MessagesDuringAReadAreProblemsAndTheReadGoesOn) {
    setUpClient();
    Arrays<Integer> arrays(1);
    expectFilled(1);
    engine.expect({{"Array.Item(1)", Answer().message(1, L"gap")},
                   {"Item(1).Value", 12},
                   {"Item(1).Value", 12},
                   {"Item(1).MC", Answer(1).message(2, L"end")}});
    EXPECT_TRUE(read(arrays, 1));
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"gap", L"end"}));
}

}  // namespace
}  // namespace vtdn::test

// Safe arrays and strings of clients.
#include <gtest/gtest.h>

#include "com/safe_array.h"
#include "com/strings.h"

namespace vtdn::test {
namespace {

using com::ArrayView;
using com::Bounds;
using com::SafeArray;

SafeArray make(VARTYPE type, LONG lower, ULONG count) {
    SAFEARRAYBOUND bound{count, lower};
    return SafeArray(SafeArrayCreate(type, 1, &bound));
}
SafeArray twoDimensions(VARTYPE type) {
    SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
    return SafeArray(SafeArrayCreate(type, 2, bounds));
}

/// The number of the error that a piece of code ends in, 0 for none.
template <class Body>
LONG errorOf(Body body) {
    try {
        body();
        return 0;
    } catch (const com::Error& error) {
        return error.number();
    }
}

TEST(Bounds, AreThoseOfTheOneDimension) {
    EXPECT_EQ(com::bounds(make(VT_I4, 0, 3).get()), (Bounds{0, 2}));
    EXPECT_EQ(com::bounds(make(VT_I4, 1, 3).get()), (Bounds{1, 3}));
    EXPECT_EQ(com::bounds(make(VT_I4, -5, 3).get()), (Bounds{-5, -3}));
    EXPECT_EQ(com::bounds(make(VT_I4, 0, 0).get()), (Bounds{0, -1}));
}

TEST(Bounds, OfNoArrayOrTwoDimensionsAreError9) {
    EXPECT_EQ(errorOf([] { com::bounds(nullptr); }), 9);
    EXPECT_EQ(errorOf([] { com::bounds(twoDimensions(VT_I4).get()); }), 9);
    SAFEARRAY none{};
    EXPECT_EQ(errorOf([&] { com::bounds(&none); }), 9);
}

TEST(ArrayView, GoesOverTheElementsWhateverTheBounds) {
    for (const LONG lower : {0L, 1L, -5L}) {
        const SafeArray array = make(VT_I4, lower, 3);
        const ArrayView<LONG> view(array.get());
        ASSERT_EQ(view.size(), 3U);
        LONG next = 10;
        for (LONG& element : view) element = next++;
        LONG index = lower + 2, found = 0;
        ASSERT_EQ(SafeArrayGetElement(array.get(), &index, &found), S_OK);
        EXPECT_EQ(found, 12);
        EXPECT_EQ(view[0], 10);
    }
    const SafeArray empty = make(VT_R4, 0, 0);
    EXPECT_EQ(ArrayView<float>(empty.get()).size(), 0U);
    EXPECT_EQ(ArrayView<float>(empty.get()).begin(), ArrayView<float>(empty.get()).end());
}

TEST(ArrayView, LocksForItsLife) {
    const SafeArray array = make(VT_I4, 0, 1);
    {
        const ArrayView<LONG> view(array.get());
        EXPECT_EQ(array.get()->cLocks, 1U);
        EXPECT_EQ(SafeArrayDestroy(array.get()), DISP_E_ARRAYISLOCKED);
    }
    EXPECT_EQ(array.get()->cLocks, 0U);
}

TEST(ArrayView, OfAnotherElementTypeIsError13) {
    EXPECT_EQ(errorOf([] { ArrayView<LONG>(make(VT_R4, 0, 1).get()); }), 13);
    EXPECT_EQ(errorOf([] { ArrayView<float>(make(VT_I4, 0, 1).get()); }), 13);
    EXPECT_EQ(errorOf([] { ArrayView<VARIANT_BOOL>(make(VT_I2, 0, 1).get()); }), 13);
    EXPECT_EQ(errorOf([] { ArrayView<BSTR>(make(VT_VARIANT, 0, 1).get()); }), 13);
    EXPECT_EQ(errorOf([] { ArrayView<IDispatch*>(make(VT_UNKNOWN, 0, 1).get()); }), 13);
    EXPECT_EQ(errorOf([] { ArrayView<LONG>(nullptr); }), 9);
    EXPECT_EQ(errorOf([] { com::needElementType(nullptr, VT_I4); }), 13);
}

TEST(SafeArray, IsMadeFromZero) {
    const SafeArray array = SafeArray::of<LONG>(3);
    EXPECT_EQ(com::bounds(array.get()), (Bounds{0, 2}));
    EXPECT_EQ(ArrayView<LONG>(array.get())[2], 0);
    EXPECT_EQ(com::bounds(SafeArray::of<BSTR>(0).get()), (Bounds{0, -1}));
    EXPECT_EQ(errorOf([] { SafeArray::of<LONG>(-1); }), 9);
    EXPECT_THROW(SafeArray::of<VARIANT>(0x7FFFFFFF), std::bad_alloc);
}

TEST(SafeArray, OwnsItsElements) {
    SafeArray texts = SafeArray::of<BSTR>(1);
    ArrayView<BSTR>(texts.get())[0] = com::Bstr(L"text").detach();
    SafeArray moved = std::move(texts);
    EXPECT_EQ(texts.get(), nullptr);  // NOLINT(bugprone-use-after-move): what is tested
    SAFEARRAY* out = nullptr;
    moved.detachTo(&out);
    EXPECT_EQ(moved.get(), nullptr);
    EXPECT_EQ(com::view(ArrayView<BSTR>(out)[0]), L"text");
    SafeArray again(out);
}

class Redimension : public testing::Test {
  protected:
    static LONG failure(SAFEARRAY** array, VARTYPE type, LONG count) {
        return errorOf([&] { com::redimension(array, type, count); });
    }
};

TEST_F(Redimension, KeepsAnArrayThatHasTheBounds) {
    SafeArray array = SafeArray::of<LONG>(3);
    SAFEARRAY* const before = array.get();
    ArrayView<LONG>(array.get())[1] = 7;
    com::redimension(array.inOut(), VT_I4, 3);
    EXPECT_EQ(array.get(), before);
    EXPECT_EQ(ArrayView<LONG>(array.get())[1], 7);
}

TEST_F(Redimension, ReplacesAnyOtherByZeroes) {
    for (const auto& [lower, count] : {std::pair{0L, 2UL}, {1L, 3UL}, {-1L, 3UL}, {0L, 4UL}, {0L, 0UL}}) {
        SafeArray array = make(VT_I4, lower, count);
        if (count > 0) ArrayView<LONG>(array.get())[0] = 7;
        com::redimension(array.inOut(), VT_I4, 3);
        EXPECT_EQ(com::bounds(array.get()), (Bounds{0, 2}));
        EXPECT_EQ(ArrayView<LONG>(array.get())[0], 0);
    }
}

TEST_F(Redimension, ToNothingIsError9UnlessItIsThere) {
    SafeArray empty = make(VT_I4, 0, 0);
    SAFEARRAY* const before = empty.get();
    com::redimension(empty.inOut(), VT_I4, 0);
    EXPECT_EQ(empty.get(), before);
    SafeArray array = SafeArray::of<LONG>(3);
    for (const LONG count : {0L, -1L, -2147483647L - 1})
        EXPECT_EQ(failure(array.inOut(), VT_I4, count), 9) << count;
    EXPECT_EQ(failure(empty.inOut(), VT_I4, -1), 9);
    SafeArray oneBased = make(VT_I4, 1, 0);
    EXPECT_EQ(failure(oneBased.inOut(), VT_I4, 0), 9);
    EXPECT_EQ(com::bounds(array.get()), (Bounds{0, 2}));
}

TEST_F(Redimension, NeedsOneDimensionOfTheRightType) {
    SafeArray none;
    EXPECT_EQ(failure(none.inOut(), VT_I4, 3), 9);
    SafeArray square = twoDimensions(VT_I4);
    EXPECT_EQ(failure(square.inOut(), VT_I4, 3), 9);
    SafeArray singles = SafeArray::of<float>(3);
    EXPECT_EQ(failure(singles.inOut(), VT_I4, 3), 13);
    EXPECT_EQ(failure(singles.inOut(), VT_I4, 5), 13);
}

TEST_F(Redimension, LeavesFixedAndLockedArraysAsTheyAre) {
    for (const int flag : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED}) {
        SafeArray array = SafeArray::of<LONG>(3);
        const USHORT before = array.get()->fFeatures;
        array.get()->fFeatures = static_cast<USHORT>(before | flag);
        EXPECT_EQ(failure(array.inOut(), VT_I4, 4), 10) << flag;
        EXPECT_EQ(failure(array.inOut(), VT_I4, 3), 0) << flag;
        EXPECT_EQ(com::bounds(array.get()), (Bounds{0, 2}));
        array.get()->fFeatures = before;
    }
    SafeArray array = SafeArray::of<LONG>(3);
    const ArrayView<LONG> lock(array.get());
    EXPECT_EQ(failure(array.inOut(), VT_I4, 4), 10);
    EXPECT_EQ(failure(array.inOut(), VT_I4, 3), 0);
}

TEST_F(Redimension, ToWhatMemoryCannotHoldKeepsTheArray) {
    SafeArray array = SafeArray::of<BSTR>(2);
    SAFEARRAY* const before = array.get();
    EXPECT_THROW(com::redimension(array.inOut(), VT_BSTR, 0x7FFFFFFF), std::bad_alloc);
    EXPECT_EQ(array.get(), before);
}

TEST(Bstr, NullAndEmptyAreEqual) {
    EXPECT_EQ(com::view(nullptr), L"");
    EXPECT_EQ(com::Bstr().view(), com::Bstr(L"").view());
    EXPECT_NE(com::Bstr(L"").get(), nullptr);
}

TEST(Bstr, KeepsEveryCharacter) {
    const std::wstring text(L"a\0b\xD83D\xDE00\xD800z", 7);
    const com::Bstr bstr(text);
    EXPECT_EQ(bstr.view(), text);
    EXPECT_EQ(SysStringLen(bstr.get()), 7U);
    const com::Bstr copy(bstr);  // NOLINT(performance-unnecessary-copy-initialization): what is tested
    EXPECT_EQ(copy.view(), text);
    EXPECT_NE(copy.get(), bstr.get());
}

TEST(Bstr, ReplacesAndFreesTheOld) {
    BSTR text = SysAllocString(L"old");
    com::replace(&text, com::Bstr(L"new"));
    EXPECT_EQ(com::view(text), L"new");
    com::replace(&text, com::Bstr());
    EXPECT_EQ(text, nullptr);
}

TEST(Utf8, GoesBothWaysCharacterByCharacter) {
    const std::wstring text(L"a\0\x00E9\x20AC\xD83D\xDE00", 6);
    const std::string bytes("a\0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", 11);
    EXPECT_EQ(com::toUtf8(text), bytes);
    EXPECT_EQ(com::fromUtf8(bytes), text);
    EXPECT_EQ(com::toUtf8(L""), "");
    EXPECT_EQ(com::fromUtf8(""), L"");
}

TEST(Utf8, AnUnpairedSurrogateBecomesTheReplacementCharacter) {
    for (const wchar_t* text : {L"a\xD800z", L"a\xDC00z"}) EXPECT_EQ(com::toUtf8(text), "a\xEF\xBF\xBDz");
    EXPECT_EQ(com::fromUtf8("a\xFFz"), L"a\xFFFDz");
}

}  // namespace
}  // namespace vtdn::test

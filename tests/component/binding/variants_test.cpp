#include "binding/variants.h"

#include <gtest/gtest.h>

#include "com/error.h"

namespace vtdn::binding {
namespace {

com::Variant shortOf(SHORT value) {
    com::Variant v;
    v.inOut()->vt = VT_I2;
    v.inOut()->iVal = value;
    return v;
}

com::Variant decimalOf(double value) {
    com::Variant v;
    EXPECT_EQ(VarDecFromR8(value, &v.inOut()->decVal), S_OK);
    v.inOut()->vt = VT_DECIMAL;
    return v;
}

bool valid(const com::Variant& value) {
    return isValidPid(value.get());
}

TEST(IsValidPidOfAVariant, TakesIntegersRealsAndTexts) {
    EXPECT_TRUE(valid(com::Variant::of(LONG{530001})));
    EXPECT_TRUE(valid(com::Variant::of(530001.0)));
    EXPECT_TRUE(valid(com::Variant::of(530001.0F)));
    EXPECT_TRUE(valid(decimalOf(530001)));
    EXPECT_TRUE(valid(com::Variant::of(L"1-234-5-67-89")));
}

TEST(IsValidPidOfAVariant, RefusesWhatIsNotWellFormed) {
    EXPECT_FALSE(valid(com::Variant::of(LONG{99999})));
    EXPECT_FALSE(valid(com::Variant::of(LONG{100060000})));
    EXPECT_FALSE(valid(shortOf(32767)));  // 16 bits do not reach the first PID
    EXPECT_FALSE(valid(com::Variant::of(1e300)));
    EXPECT_FALSE(valid(decimalOf(1e20)));
    EXPECT_FALSE(valid(com::Variant::of(L"PID")));
    EXPECT_FALSE(valid(com::Variant::of(L"")));
}

TEST(IsValidPidOfAVariant, RefusesEveryOtherType) {
    EXPECT_FALSE(valid(com::Variant()));
    EXPECT_FALSE(valid(com::Variant::null()));
    EXPECT_FALSE(valid(com::Variant::missing()));
    EXPECT_FALSE(valid(com::Variant::ofBool(true)));
    EXPECT_FALSE(valid(com::Variant::ofDate(530001.0)));
    EXPECT_FALSE(valid(com::Variant::of(static_cast<IDispatch*>(nullptr))));
}

TEST(NullToEmpty, ChangesNullAlone) {
    EXPECT_EQ(nullToEmpty(com::Variant::null().get()).type(), VT_EMPTY);
    EXPECT_EQ(nullToEmpty(com::Variant().get()).type(), VT_EMPTY);
    EXPECT_EQ(nullToEmpty(com::Variant::of(LONG{0}).get()).type(), VT_I4);
    EXPECT_EQ(nullToEmpty(com::Variant::missing().get()).get().scode, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(com::view(nullToEmpty(com::Variant::of(L"").get()).get().bstrVal), L"");
}

TEST(IsTrue, TakesAnyNonzeroNumberAndTheTwoWords) {
    for (const com::Variant& yes :
         {com::Variant::ofBool(true), com::Variant::of(LONG{-5}), com::Variant::of(0.25),
          com::Variant::of(L"True"), com::Variant::of(L"tRuE"), com::Variant::of(L"0.5"), shortOf(3),
          decimalOf(1)})
        EXPECT_TRUE(isTrue(yes)) << yes.type();
    for (const com::Variant& no :
         {com::Variant::ofBool(false), com::Variant::of(LONG{0}), com::Variant::of(0.0),
          com::Variant::of(L"False"), com::Variant::of(L"0"), com::Variant(), shortOf(0)})
        EXPECT_FALSE(isTrue(no)) << no.type();
}

TEST(IsTrue, CountsNullAsFalse) {
    EXPECT_FALSE(isTrue(com::Variant::null()));
}

TEST(IsTrue, ThrowsWhatDoesNotConvert) {
    const auto numberOf = [](const com::Variant& value) {
        try {
            static_cast<void>(isTrue(value));
        } catch (const com::Error& error) {
            return error.number();
        }
        return LONG{0};
    };
    EXPECT_EQ(numberOf(com::Variant::of(L"yes")), 13);
    EXPECT_EQ(numberOf(com::Variant::of(L"")), 13);
    EXPECT_EQ(numberOf(com::Variant::missing()), 13);
    EXPECT_EQ(numberOf(com::Variant::of(static_cast<IDispatch*>(nullptr))), 91);
}

}  // namespace
}  // namespace vtdn::binding

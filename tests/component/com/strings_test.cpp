// A client's string by reference.
#include "com/strings.h"

#include <gtest/gtest.h>

namespace vtdn::test {
namespace {

using com::Bstr;
using com::ClientBstr;

TEST(ClientStrings, StayAsTheyAreUntilTheyAreSet) {
    BSTR mine = SysAllocString(L"old");
    const void* const before = mine;
    { const ClientBstr argument(&mine); }
    EXPECT_EQ(mine, before);
    EXPECT_EQ(com::view(mine), L"old");
    SysFreeString(mine);
}

TEST(ClientStrings, AreReplacedAsOftenAsTheyAreSet) {
    BSTR mine = SysAllocString(L"old");
    const ClientBstr argument(&mine);
    argument.set(Bstr(L""));
    EXPECT_EQ(com::view(mine), L"");
    EXPECT_TRUE(mine) << "an empty string is one";
    argument.set(Bstr(std::wstring_view(L"a\0b", 3)));
    EXPECT_EQ(com::view(mine), std::wstring_view(L"a\0b", 3));
    argument.set(Bstr());
    EXPECT_EQ(mine, nullptr);
}

TEST(ClientStrings, MayBeginAsNull) {
    BSTR mine = nullptr;
    ClientBstr(&mine).set(Bstr(L"new"));
    EXPECT_EQ(Bstr::adopt(mine).view(), L"new");
}

}  // namespace
}  // namespace vtdn::test

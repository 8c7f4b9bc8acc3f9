#include "binding/problems_list.h"

#include <gtest/gtest.h>

#include <string>

namespace vtdn::binding {
namespace {

TEST(ProblemsList, IsEmptyAtFirst) {
    EXPECT_EQ(ProblemsList().text(), L"");
}

TEST(ProblemsList, HasATabBetweenTwoEntriesAndNoneAtTheEnds) {
    ProblemsList list;
    list.add(L"2024/03/05 14:07:09", L"one");
    EXPECT_EQ(list.text(), L"(2024/03/05 14:07:09) one");
    list.add(L"2024/03/05 14:07:10", L"two");
    EXPECT_EQ(list.text(), L"(2024/03/05 14:07:09) one\t(2024/03/05 14:07:10) two");
}

TEST(ProblemsList, KeepsAnEmptyProblemAsATimeStamp) {
    ProblemsList list;
    list.add(L"t", L"");
    list.add(L"t", L"");
    EXPECT_EQ(list.text(), L"(t) \t(t) ");
}

TEST(ProblemsList, KeepsEveryCharacterOfAProblem) {
    const std::wstring problem(L"a\0b\tc\r\n\xD83D\xDE00", 9);
    ProblemsList list;
    list.add(L"t", problem);
    EXPECT_EQ(list.text(), L"(t) " + problem);
}

TEST(ProblemsList, StartsAnewWhenItIsCleared) {
    ProblemsList list;
    list.add(L"t", L"old");
    list.clear();
    EXPECT_EQ(list.text(), L"");
    list.add(L"t", L"new");
    EXPECT_EQ(list.text(), L"(t) new");
}

}  // namespace
}  // namespace vtdn::binding

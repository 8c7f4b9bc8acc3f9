#include "binding/problems_list.h"

#include <gtest/gtest.h>

#include <string>

namespace vtdn::binding {
namespace {

std::wstring textOf(const ProblemsList& list) {
    std::wstring text(list.size(), L'?');
    list.copyTo(text.data());
    return text;
}

TEST(ProblemsList, IsEmptyAtFirst) {
    EXPECT_EQ(textOf(ProblemsList()), L"");
}

TEST(ProblemsList, HasATabBetweenTwoEntriesAndNoneAtTheEnds) {
    ProblemsList list;
    list.add(L"2024/03/05 14:07:09", L"one");
    EXPECT_EQ(textOf(list), L"(2024/03/05 14:07:09) one");
    list.add(L"2024/03/05 14:07:10", L"two");
    EXPECT_EQ(textOf(list), L"(2024/03/05 14:07:09) one\t(2024/03/05 14:07:10) two");
}

TEST(ProblemsList, KeepsAnEmptyProblemAsATimeStamp) {
    ProblemsList list;
    list.add(L"t", L"");
    list.add(L"t", L"");
    EXPECT_EQ(textOf(list), L"(t) \t(t) ");
}

TEST(ProblemsList, KeepsEveryCharacterOfAProblem) {
    const std::wstring problem(L"a\0b\tc\r\n\xD83D\xDE00", 9);
    ProblemsList list;
    list.add(L"t", problem);
    EXPECT_EQ(textOf(list), L"(t) " + problem);
}

TEST(ProblemsList, StartsAnewWhenItIsCleared) {
    ProblemsList list;
    list.add(L"t", L"old");
    list.clear();
    EXPECT_EQ(textOf(list), L"");
    list.add(L"t", L"new");
    EXPECT_EQ(textOf(list), L"(t) new");
}

TEST(ProblemsList, KeepsManyEntriesOfAllLengthsInTheirOrder) {
    ProblemsList list;
    std::wstring expected;
    for (std::size_t i = 0; i < 3000; ++i) {
        const std::wstring problem(i * 37 % 301, static_cast<wchar_t>(L'a' + i % 26));
        list.add(std::to_wstring(i), problem);
        expected += (i == 0 ? L"(" : L"\t(") + std::to_wstring(i) + L") " + problem;
    }
    const std::wstring huge(100'000, L'x');
    list.add(L"t", huge);
    EXPECT_EQ(textOf(list), expected + L"\t(t) " + huge);
}

}  // namespace
}  // namespace vtdn::binding

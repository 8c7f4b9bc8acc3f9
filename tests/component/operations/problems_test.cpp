// The problems list and the engine's Message event.
#include <algorithm>
#include <string>

#include "operations/on_strict_engine.h"
#include "support/locale_setting.h"

namespace vtdn::test {
namespace {

class Problems : public OnStrictEngine {};

SYSTEMTIME now() {
    SYSTEMTIME time;
    GetLocalTime(&time);
    return time;
}

std::wstring stamp(const SYSTEMTIME& time, const wchar_t* dateSeparator = L"/",
                   const wchar_t* timeSeparator = L":") {
    wchar_t text[64];
    swprintf(text, 64, L"%04u%ls%02u%ls%02u %02u%ls%02u%ls%02u", time.wYear, dateSeparator, time.wMonth,
             dateSeparator, time.wDay, time.wHour, timeSeparator, time.wMinute, timeSeparator, time.wSecond);
    return text;
}

TEST_F(Problems, ANewWrapperHasNone) {
    EXPECT_EQ(client.problems(), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Problems, AnEntryIsTheLocalTimeInParenthesesABlankAndTheText) {
    setUpClient();
    const std::wstring before = stamp(now());
    engine.raise(1, L"text");
    const std::wstring after = stamp(now());
    const std::wstring list = client.problems();
    ASSERT_EQ(list.size(), before.size() + 7);
    const std::wstring written = list.substr(1, before.size());
    EXPECT_EQ(list, L"(" + written + L") text");
    EXPECT_LE(before, written);
    EXPECT_LE(written, after);
}

TEST_F(Problems, TheTimeOfAnEntryIsTheTimeAtWhichItWasAdded) {
    setUpClient();
    engine.raise(1, L"text");
    const std::wstring first = client.problems();
    Sleep(1100);
    const std::wstring before = stamp(now());
    engine.raise(1, L"text");
    const std::wstring second = client.problems();
    EXPECT_LT(first, second);
    EXPECT_LE(L"(" + before, second);
}

TEST_F(Problems, EntriesAreSeparatedByOneTabWithNoneBeforeOrAfter) {
    setUpClient();
    const SYSTEMTIME start = now();
    engine.raise(1, L"one");
    engine.raise(2, L"two");
    engine.raise(3, L"three");
    const std::wstring list = client.problems();
    const std::size_t entry = stamp(start).size() + 3;
    ASSERT_EQ(list.size(), 3 * entry + 11 + 2);
    EXPECT_EQ(std::count(list.begin(), list.end(), L'\t'), 2);
    EXPECT_EQ(list.substr(entry, 5), L"one\t(");
    EXPECT_EQ(list.substr(2 * entry + 4, 5), L"two\t(");
    EXPECT_TRUE(list.ends_with(L") three"));
}

TEST_F(Problems, ReadingTheListEmptiesIt) {
    setUpClient();
    engine.raise(1, L"one");
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"one"});
    EXPECT_EQ(client.problems(), L"");
    engine.raise(1, L"two");
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"two"});
}

TEST_F(Problems, AMessageOfAnyTypeIsAddedWithoutItsType) {
    setUpClient();
    for (const LONG type : {0L, 1L, -1L, 4711L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        engine.raise(type, L"note");
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"note"}) << type;
    }
}

TEST_F(Problems, AMessageWithoutTextStillMakesAnEntry) {
    setUpClient();
    engine.raise(1, L"");
    const std::wstring list = client.problems();
    EXPECT_EQ(list.size(), stamp(now()).size() + 3);
    EXPECT_TRUE(list.ends_with(L") "));
    engine.raise(1, L"");
    engine.raise(1, L"");
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"", L""}));
}

TEST_F(Problems, TextsAreKeptCharacterByCharacter) {
    using namespace std::string_literals;
    setUpClient();
    const std::wstring texts[] = {L"a\0b\0"s, L"\xD83D\xDE00 \xD800"s,   L"tab\tin it"s, L"line\r\nbreak"s,
                                  L" "s,      std::wstring(100000, L'x')};
    for (const std::wstring& text : texts) {
        engine.raise(1, text);
        const std::wstring list = client.problems();
        EXPECT_TRUE(list.ends_with(L") " + text));
        EXPECT_EQ(list.size(), stamp(now()).size() + 3 + text.size());
    }
}

TEST_F(Problems, AnEventWhoseArgumentsComeByReferenceIsTheSame) {
    setUpClient();
    engine.expect({{"Engine.Params", Answer().message(1, L"by reference", fake::EventArguments::byReference)},
                   {"Params.Exists(530001)", true}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_DoesExist, 530001));
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"by reference"});
}

TEST_F(Problems, MessagesAndProblemsInterleaveInTheOrderInWhichTheyHappen) {
    setUpClient();
    engine.expect({{"Engine.Params", Answer().message(1, L"params")},
                   {"Params.Exists(530001)", Answer(false).message(2, L"exists")}});
    EXPECT_EQ(client.text(&_DIWrapper::Param_Name, 530001), L"");
    engine.raise(3, L"later");
    EXPECT_EQ(client.problemTexts(),
              (std::vector<std::wstring>{L"params", L"exists", L"PID 0-005-3-00-01 does not exist (WDN-024)",
                                         L"later"}));
}

TEST_F(Problems, TheListCanBeReadInTheMiddleOfAnEngineCall) {
    setUpClient();
    std::wstring meanwhile;
    engine.raise(1, L"before");
    engine.expect({{"Engine.Params", Answer().during([&] { meanwhile = client.problems(); })},
                   {"Params.Exists(530001)", Answer(true).message(1, L"after")}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_DoesExist, 530001));
    EXPECT_TRUE(meanwhile.ends_with(L") before"));
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"after"});
}

TEST_F(Problems, TheListWorksWithoutASetUp) {
    setUpClient();
    engine.raise(1, L"one");
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"one"});
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Problems, EachWrapperHasAListOfItsOwn) {
    Client other;
    setUpClient();
    engine.raise(1, L"mine");
    EXPECT_EQ(other.problems(), L"");
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"mine"});
}

TEST_F(Problems, NoLimitIsSetToTheList) {
    setUpClient();
    constexpr std::size_t many = 20000;
    for (std::size_t i = 0; i < many; ++i) engine.raise(1, L"x");
    EXPECT_EQ(client.problemTexts().size(), many);
}

TEST_F(Problems, TheTimeStampHasTheUsersSeparators) {
    const LocaleSetting date(LOCALE_SDATE, L".");
    const LocaleSetting time(LOCALE_STIME, L"-");
    Client fresh;
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(1)", true}});
    EXPECT_TRUE(fresh.setup());
    const std::wstring before = stamp(now(), L".", L"-");
    engine.raise(1, L"text");
    const std::wstring after = stamp(now(), L".", L"-");
    const std::wstring list = fresh.problems();
    ASSERT_EQ(list.size(), before.size() + 7);
    EXPECT_LE(before, list.substr(1, before.size()));
    EXPECT_LE(list.substr(1, before.size()), after);
}

}  // namespace
}  // namespace vtdn::test

// Random texts through every parser of the folder: none may crash, and what was read must hold together.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "common/interval.h"
#include "common/lists.h"
#include "common/pid.h"

namespace vtdn::common {
namespace {

constexpr int trials = 200000;

std::wstring randomText(std::mt19937& random) {
    static constexpr wchar_t alphabet[] = L"0123456789012345678901234567890123456789--- []@;,smhdMvx\u00e4\0";
    std::uniform_int_distribution<std::size_t> length(0, 24);
    std::uniform_int_distribution<std::size_t> letter(0, std::size(alphabet) - 1);
    std::wstring text(length(random), L' ');
    for (wchar_t& c : text) c = alphabet[letter(random)];
    return text;
}

TEST(RandomTexts, GivePidsThatAreWellFormedAndReadBack) {
    std::mt19937 random(1);
    int read = 0;
    for (int i = 0; i < trials; ++i) {
        const std::wstring text = randomText(random);
        for (bool bracketed : {false, true}) {
            const std::int32_t pid = parsePidText(text, bracketed);
            if (pid == 0) continue;
            ++read;
            ASSERT_TRUE(isValidPid(pid));
            ASSERT_EQ(parsePidText(formatPid(pid), false), pid);
            ASSERT_EQ(parsePidText(formatPid9(pid), false), pid);
            ASSERT_EQ(parsePidText(L'[' + formatPid(pid) + L']', true), pid);
        }
    }
    EXPECT_GT(read, trials / 20);
}

TEST(RandomTexts, GiveIntervalsThatNormaliseOnce) {
    std::mt19937 random(2);
    int read = 0;
    for (int i = 0; i < trials; ++i) {
        Interval interval;
        if (!parseIntervalText(randomText(random), true, interval)) continue;
        ++read;
        Interval again = interval;
        normaliseInterval(again);
        ASSERT_EQ(again, interval);
        const std::wstring text = std::to_wstring(interval.count) + interval.unit;
        ASSERT_EQ(intervalTextForEngine(text), text);
    }
    EXPECT_GT(read, 100);
}

TEST(RandomTexts, SplitAndJoinWithoutLoss) {
    std::mt19937 random(3);
    for (int i = 0; i < trials; ++i) {
        const std::wstring text = randomText(random);
        std::wstring joined;
        bool first = true;
        for (const auto piece : split(text, L";")) {
            if (!first) joined += L';';
            first = false;
            joined += piece;
        }
        ASSERT_EQ(joined, text);
        ASSERT_EQ(sortUniqueDelimited(sortUniqueDelimited(text, L";"), L";"),
                  sortUniqueDelimited(text, L";"));
    }
}

}  // namespace
}  // namespace vtdn::common

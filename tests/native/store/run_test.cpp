// Runs: long segments that can be copied as blocks, and single look-ups that agree with them.

#include "store/run.h"

#include <gtest/gtest.h>

#include <cstring>

namespace vtdn::store::test {
namespace {

void putSingles(Run& run, std::initializer_list<float> numbers) {
    std::byte* room = run.appendNumbers(ValueKind::single, static_cast<std::int32_t>(numbers.size()));
    std::memcpy(room, numbers.begin(), numbers.size() * sizeof(float));
}

void putCodes(Run& run, std::initializer_list<MonitorCode> codes) {
    std::byte* room = run.appendCodes(static_cast<std::int32_t>(codes.size()));
    std::memcpy(room, codes.begin(), codes.size() * sizeof(MonitorCode));
}

TEST(Run, JoinsSegmentsOfOneKindIntoOneBlock) {
    store::Run run;
    putSingles(run, {1, 2});
    run.appendCode(7, 2);
    putSingles(run, {3});
    run.appendCode(7, 1);
    run.appendNulls(2);
    putSingles(run, {4});
    run.finish(6);
    ASSERT_EQ(run.values().size(), 3U);
    EXPECT_EQ(run.singles(run.values()[0]).size(), 3U);
    EXPECT_EQ(run.singles(run.values()[0])[2], 3.0F);
    EXPECT_EQ(run.values()[2].first, 5);
    ASSERT_EQ(run.codes().size(), 2U);
    EXPECT_EQ(run.codes()[0].count, 3);
    EXPECT_EQ(run.codes()[0].code, 7);
}

TEST(Run, KeepsSegmentsApartThatOtherValuesCameBetween) {
    store::Run run;
    putSingles(run, {1});
    run.appendValue(2.5);
    putSingles(run, {3});
    run.appendValue(std::string("x"));
    run.appendValue(std::string());
    run.appendValue(std::int32_t{4});
    run.finish(6);
    EXPECT_EQ(run.values().size(), 5U);
    EXPECT_EQ(run.value(1), Value(2.5));
    EXPECT_EQ(run.value(2), Value(3.0F));
    EXPECT_EQ(run.value(3), Value(std::string("x")));
    EXPECT_EQ(run.value(4), Value(std::string()));
    EXPECT_EQ(run.value(5), Value(std::int32_t{4}));
}

TEST(Run, JoinsArraysOfCodes) {
    store::Run run;
    putCodes(run, {1, 2});
    putSingles(run, {1, 2, 3});
    putCodes(run, {3});
    run.finish(3);
    ASSERT_EQ(run.codes().size(), 1U);
    EXPECT_FALSE(run.codes()[0].same);
    EXPECT_EQ(run.codesOf(run.codes()[0])[2], 3);
}

TEST(Run, FindsSingleIntervalsInAnyOrder) {
    std::vector<Item> items(100);
    store::Run run;
    for (int i = 0; i < 100; ++i) {
        Item& item = items[static_cast<std::size_t>(i)];
        item.code = i / 7;
        if (i % 3 == 1) item.value = std::int32_t{i};
        if (i % 3 == 2) item.value = static_cast<double>(i);
        run.appendValue(item.value);
        run.appendCode(item.code, 1);
    }
    run.finish(100);
    for (const int step : {1, 7, 37, 99}) {
        for (int k = 0; k < 100; ++k) {
            const int i = k * step % 100;
            ASSERT_EQ(run.item(i), items[static_cast<std::size_t>(i)]);
        }
    }
}

TEST(Run, TakesOverAnyPartOfAnother) {
    std::vector<Item> items;
    for (int i = 0; i < 60; ++i) {
        const Value values[] = {{},
                                std::int32_t{i},
                                static_cast<float>(i),
                                static_cast<double>(i),
                                std::string(static_cast<std::size_t>(i % 4), 'x')};
        items.push_back({values[i / 3 % 5], i < 30 ? i / 10 : i});
    }
    store::Run other;
    for (const Item& item : items) other.appendValue(item.value);
    other.appendCode(0, 10);
    other.appendCode(1, 10);
    other.appendCode(2, 10);
    for (int i = 30; i < 60; ++i) std::memcpy(other.appendCodes(1), &i, sizeof i);
    other.finish(60);
    for (std::int32_t first = 0; first <= 60; ++first) {
        for (std::int32_t count = 0; count <= 60 - first; ++count) {
            store::Run run;
            run.appendValue(1.5F);
            run.appendCode(7, 1);
            run.appendValuesOf(other, first, count);
            run.appendCodesOf(other, first, count);
            run.finish(count + 1);
            ASSERT_EQ(run.item(0), (Item{1.5F, 7}));
            for (std::int32_t i = 0; i < count; ++i)
                ASSERT_EQ(run.item(i + 1), items[static_cast<std::size_t>(first + i)]) << first << " + " << i;
        }
    }
}

TEST(Run, IsFilledUpWithNothing) {
    store::Run run;
    putSingles(run, {1});
    run.finish(3);
    EXPECT_EQ(run.item(2), Item{});
    run.clear();
    run.finish(2);
    EXPECT_EQ(run.count(), 2);
    EXPECT_EQ(run.item(1), Item{});
}

}  // namespace
}  // namespace vtdn::store::test

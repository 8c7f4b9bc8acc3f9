// Data arrays that a client fills: whole, item by item and block by block.
#include <cmath>
#include <limits>

#include "data_interface/value.h"
#include "engine/data_array_blocks.h"
#include "special_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

class EngineFill : public OnEngine {
  protected:
    [[nodiscard]] static engine::DataArray hours(LONG count) {
        auto data = engine::DataArray::create();
        data.define(hour(0), count, com::Bstr(L"h"), 1);
        return data;
    }
};

store::Item itemAt(const engine::DataArray& data, LONG index) {
    const auto item = data.item(index);
    com::Variant value;
    item.value(value);
    return {fromVariant(value.get()), item.mc()};
}

std::vector<store::Item> itemsOf(const engine::DataArray& data, LONG count) {
    std::vector<store::Item> all;
    for (LONG i = 1; i <= count; ++i) all.push_back(itemAt(data, i));
    return all;
}

/// What block access gives; the values of stretches without a block are asked for one by one.
std::vector<store::Item> byRuns(const engine::DataArray& data, LONG count) {
    std::vector<store::Item> all;
    DIDataRun run{};
    for (LONG index = 1; index <= count; index += run.count) {
        if (!data.runs().next(index, run)) throw std::runtime_error("no run");
        for (LONG i = 0; i < run.count; ++i) {
            store::Item item = itemAt(data, index + i);
            EXPECT_EQ(run.mcs ? run.mcs[i] : run.mc, item.code);
            if (run.type == VT_NULL) item.value = {};
            if (run.type == VT_I4) item.value = std::int32_t{static_cast<const LONG*>(run.values)[i]};
            if (run.type == VT_R4) item.value = static_cast<const float*>(run.values)[i];
            if (run.type == VT_R8) item.value = static_cast<const double*>(run.values)[i];
            all.push_back(item);
        }
    }
    return all;
}

com::Variant text(std::wstring_view value) {
    return com::Variant::of(value);
}

/// A new object of the class, to ask for what the typed client does not offer.
HRESULT setRun(const engine::DataArray& data, LONG index, const DIDataRun* run) {
    com::Ptr<DIDataArrayBlocks> blocks;
    com::check(data.get()->QueryInterface(__uuidof(DIDataArrayBlocks), blocks.receiveVoid()));
    return blocks->SetRun(index, run);
}

}  // namespace

TEST_F(EngineFill, FillSetsEveryItem) {
    const auto data = hours(5);
    data.fill(com::Variant::of(LONG{0}), 3);
    EXPECT_EQ(itemsOf(data, 5), std::vector<store::Item>(5, {0, 3}));
    EXPECT_EQ(byRuns(data, 5), itemsOf(data, 5));
    data.fill(text(L"N/A"), 4);
    EXPECT_EQ(itemsOf(data, 5), std::vector<store::Item>(5, {"N/A"s, 4}));
    data.fill(com::Variant::null(), 0);
    EXPECT_EQ(itemsOf(data, 5), std::vector<store::Item>(5));
}

TEST_F(EngineFill, SetItemSetsOneItemAndLeavesTheRest) {
    for (const auto& filled : {com::Variant::null(), com::Variant::of(LONG{7}), com::Variant::of(1.5F),
                               com::Variant::of(2.5), text(L"N/A")}) {
        const auto data = hours(6);
        data.fill(filled, 9);
        std::vector<store::Item> expected(6, {fromVariant(filled.get()), 9});
        data.setItem(2, com::Variant::of(LONG{5}), 1);
        data.setItem(3, com::Variant::of(0.5F), 2);
        data.setItem(4, com::Variant::of(0.1), 3);
        data.setItem(5, text(L"text"), 4);
        data.setItem(6, com::Variant::null(), 5);
        expected[1] = {5, 1};
        expected[2] = {0.5F, 2};
        expected[3] = {0.1, 3};
        expected[4] = {"text"s, 4};
        expected[5] = {{}, 5};
        EXPECT_EQ(itemsOf(data, 6), expected) << filled.type();
        EXPECT_EQ(byRuns(data, 6), expected) << filled.type();
    }
}

TEST_F(EngineFill, AnyItemCanBeSetAgainAsAnyKind) {
    const auto data = hours(3);
    const std::vector<com::Variant> values{
        com::Variant::of(LONG{1}), text(L"a"), com::Variant::of(2.5F), text(L"b"),
        com::Variant::null(),      text(L"c"), com::Variant::of(0.1),  text(L""),
        com::Variant::of(LONG{2})};
    for (LONG round = 0; round < 30; ++round) {
        for (const auto& value : values) {
            data.setItem(2, value, round);
            EXPECT_EQ(itemAt(data, 2), (store::Item{fromVariant(value.get()), round}));
            EXPECT_EQ(itemAt(data, 1), store::Item{});
            EXPECT_EQ(itemAt(data, 3), store::Item{});
        }
    }
}

TEST_F(EngineFill, EmptyIsNoValueAndReadsAsNull) {
    const auto data = hours(2);
    data.setItem(1, com::Variant(), 5);
    com::Variant value;
    data.item(1).value(value);
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(data.item(1).mc(), 5);
    data.fill(com::Variant(), 6);
    EXPECT_EQ(itemsOf(data, 2), std::vector<store::Item>(2, {{}, 6}));
}

TEST_F(EngineFill, ValuesAreCheckedAsWhenTheyArePutIntoAnItem) {
    const auto data = hours(2);
    data.fill(com::Variant::of(LONG{7}), 1);
    VARIANT array = com::Variant().get();
    array.vt = VT_ARRAY | VT_I4;
    array.parray = nullptr;
    struct Case {
        com::Variant value;
        LONG number;
    };
    const std::vector<Case> cases{{com::Variant::of(std::nan("")), 6},
                                  {com::Variant::of(HUGE_VALF), 6},
                                  {com::Variant::of(static_cast<IDispatch*>(nullptr)), 13},
                                  {com::Variant::missing(), 13},
                                  {text(L"\xD83C"), 5},
                                  {text(std::wstring(65536, L'x')), 5}};
    for (const Case& c : cases) {
        const auto item = engine::DataItem::create();
        const Failure put = failureOf([&] { item.putValue(c.value); });
        const Failure set = failureOf([&] { data.setItem(1, c.value, 2); });
        const Failure filled = failureOf([&] { data.fill(c.value, 2); });
        EXPECT_EQ(put.number, c.number);
        EXPECT_EQ(set.number, c.number);
        EXPECT_EQ(set.description, put.description);
        EXPECT_EQ(filled.description, put.description);
    }
    EXPECT_NE(data.get()->SetItem(1, array, 2), S_OK);
    EXPECT_EQ(itemsOf(data, 2), std::vector<store::Item>(2, {7, 1})) << "What was refused changed nothing";
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{}) << "A client's array belongs to no engine";
}

TEST_F(EngineFill, IndexesGoFromOneToTheCount) {
    const auto data = hours(3);
    for (const LONG outside : {0L, -1L, 4L, LONG_MAX, LONG_MIN}) {
        const Failure failure = failureOf([&] { data.setItem(outside, com::Variant::of(LONG{1}), 0); });
        EXPECT_EQ(failure.number, 9) << outside;
        EXPECT_NE(failure.description.find(L"from 1 to 3"), std::wstring::npos) << failure.description;
    }
    EXPECT_EQ(itemsOf(data, 3), std::vector<store::Item>(3));
}

TEST_F(EngineFill, AnArrayWithoutAPlaceIsRefused) {
    const auto data = engine::DataArray::create();
    EXPECT_EQ(failureOf([&] { data.fill(com::Variant::of(LONG{0}), 0); }).number, 91);
    EXPECT_EQ(failureOf([&] { data.setItem(1, com::Variant::of(LONG{0}), 0); }).number, 91);
    const DIDataRun run{1, VT_NULL, nullptr, nullptr, 0};
    EXPECT_EQ(setRun(data, 1, &run), E_INVALIDARG);
}

TEST_F(EngineFill, AnEmptyRunHasAPlaceAndNoItems) {
    const auto data = hours(0);
    data.fill(com::Variant::of(LONG{0}), 0);
    const Failure failure = failureOf([&] { static_cast<void>(data.item(1)); });
    EXPECT_EQ(failure.number, 9);
    EXPECT_NE(failure.description.find(L"empty"), std::wstring::npos) << failure.description;
    EXPECT_EQ(failureOf([&] { data.setItem(1, com::Variant::of(LONG{0}), 0); }).number, 9);
    DIDataRun run{};
    EXPECT_FALSE(data.runs().next(1, run));
    param(hourPid).readDataArray(data);
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineFill, AnEmptyRunIsPlacedByTheSameRules) {
    const auto data = engine::DataArray::create();
    EXPECT_EQ(failureOf([&] { data.define(hour(0.5), 0, com::Bstr(L"h"), 1); }).number, 5);
    EXPECT_EQ(failureOf([&] { data.define(hour(0), 0, com::Bstr(L"x"), 1); }).number, 5);
    EXPECT_EQ(failureOf([&] { data.define(hour(0), 0, com::Bstr(L"h"), 0); }).number, 5);
    EXPECT_EQ(failureOf([&] { data.define(1e300, 0, com::Bstr(L"h"), 1); }).number, 6);
}

TEST_F(EngineFill, ARunOfEachTypeIsSetAtOnce) {
    const auto data = hours(10);
    data.fill(text(L"before"), 77);
    const std::vector<LONG> whole{1, -2};
    const std::vector<float> singles{0.5F, 0.1F};
    const std::vector<double> reals{0.25, 1e300};
    const std::vector<LONG> codes{5, 6};
    const engine::DataBlocks blocks = data.blocks();
    ASSERT_TRUE(blocks);
    blocks.set(1, {2, VT_I4, whole.data(), codes.data(), 0});
    blocks.set(3, {2, VT_R4, singles.data(), nullptr, 8});
    blocks.set(5, {2, VT_R8, reals.data(), codes.data(), 0});
    blocks.set(7, {1, VT_NULL, nullptr, nullptr, 9});
    blocks.set(8, {1, VT_EMPTY, nullptr, nullptr, 10});
    const std::vector<store::Item> expected{{1, 5},     {-2, 6}, {0.5F, 8}, {0.1F, 8},       {0.25, 5},
                                            {1e300, 6}, {{}, 9}, {{}, 10},  {"before"s, 77}, {"before"s, 77}};
    EXPECT_EQ(itemsOf(data, 10), expected);
    EXPECT_EQ(byRuns(data, 10), expected);
}

TEST_F(EngineFill, ARunLeavesWhatItemsLeave) {
    const std::vector<float> values{1.5F, -0.0F, std::numeric_limits<float>::denorm_min(), 3e38F};
    const std::vector<LONG> codes{0, -1, LONG_MAX, LONG_MIN};
    const auto byBlock = hours(6);
    byBlock.fill(com::Variant::of(LONG{3}), 1);
    byBlock.blocks().set(2, {4, VT_R4, values.data(), codes.data(), 0});
    const auto byItem = hours(6);
    byItem.fill(com::Variant::of(LONG{3}), 1);
    for (LONG i = 0; i < 4; ++i)
        byItem.setItem(2 + i, com::Variant::of(values[static_cast<std::size_t>(i)]),
                       codes[static_cast<std::size_t>(i)]);
    EXPECT_EQ(itemsOf(byBlock, 6), itemsOf(byItem, 6));
}

TEST_F(EngineFill, RunsOutsideTheArrayAndOfOtherTypesAreRefused) {
    const auto data = hours(3);
    data.fill(com::Variant::of(LONG{7}), 1);
    const std::vector<LONG> values(4);
    const auto run = [&](LONG count, VARTYPE type, const void* from) {
        return DIDataRun{count, type, from, nullptr, 5};
    };
    const DIDataRun two = run(2, VT_I4, values.data());
    for (const LONG index : {0L, -1L, 3L, 4L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(setRun(data, index, &two), E_INVALIDARG);
    for (const LONG count : {0L, -1L, 4L, LONG_MAX, LONG_MIN}) {
        const DIDataRun other = run(count, VT_I4, values.data());
        EXPECT_EQ(setRun(data, 1, &other), E_INVALIDARG) << count;
    }
    for (const VARTYPE type : {VT_BSTR, VT_DATE, VT_I2, VT_VARIANT, VT_UI4}) {
        const DIDataRun other = run(1, type, values.data());
        EXPECT_EQ(setRun(data, 1, &other), E_INVALIDARG) << type;
    }
    const DIDataRun nowhere = run(1, VT_R4, nullptr);
    EXPECT_EQ(setRun(data, 1, &nowhere), E_POINTER);
    EXPECT_EQ(setRun(data, 1, nullptr), E_POINTER);
    EXPECT_EQ(itemsOf(data, 3), std::vector<store::Item>(3, {7, 1}));
}

TEST_F(EngineFill, ARunWithANumberThatCannotBeKeptIsRefusedWhole) {
    const auto data = hours(3);
    data.fill(com::Variant::of(LONG{7}), 1);
    const std::vector<float> singles{1, HUGE_VALF, 2};
    const std::vector<double> reals{1, 2, std::nan("")};
    for (const DIDataRun& run :
         {DIDataRun{3, VT_R4, singles.data(), nullptr, 5}, DIDataRun{3, VT_R8, reals.data(), nullptr, 5}}) {
        const Failure failure = failureOf([&] { data.blocks().set(1, run); });
        EXPECT_EQ(failure.number, 6);
        EXPECT_NE(failure.description.find(L"cannot be kept"), std::wstring::npos) << failure.description;
    }
    EXPECT_EQ(itemsOf(data, 3), std::vector<store::Item>(3, {7, 1}));
}

TEST_F(EngineFill, AnArrayThatWasReadCanBeChanged) {
    write(hourPid, hour(0), com::Variant::of(1.5F), 1);
    write(hourPid, hour(1), text(L"N/A"), 2);
    write(hourPid, hour(2), com::Variant::of(LONG{3}), 3);
    const auto data = readRun(hourPid, hour(0), 4, L"h", 1);
    data.setItem(3, com::Variant::of(0.25), 30);
    const std::vector<store::Item> expected{{1.5F, 1}, {"N/A"s, 2}, {0.25, 30}, {{}, 0}};
    EXPECT_EQ(itemsOf(data, 4), expected);
    EXPECT_EQ(byRuns(data, 4), expected);
    EXPECT_EQ(read(hourPid, hour(2)).get().lVal, 3) << "The parameter is as it was";
}

TEST_F(EngineFill, WhatBlockAccessShowsCanBeSetElsewhereInTheSameArray) {
    for (int h = 0; h < 4; ++h) write(hourPid, hour(h), com::Variant::of(0.5F + static_cast<float>(h)), 7);
    const auto data = readRun(hourPid, hour(0), 4, L"h", 1);
    const auto copyThreeToTheSecond = [&] {
        DIDataRun run{};
        ASSERT_TRUE(data.runs().next(1, run));
        ASSERT_EQ(run.count, 4);
        run.count = 3;
        data.blocks().set(2, run);
    };
    copyThreeToTheSecond();
    EXPECT_EQ(itemsOf(data, 4), (std::vector<store::Item>{{0.5F, 7}, {0.5F, 7}, {1.5F, 7}, {2.5F, 7}}));
    data.setItem(1, com::Variant::of(9.5F), 9);
    copyThreeToTheSecond();
    EXPECT_EQ(itemsOf(data, 4), (std::vector<store::Item>{{9.5F, 9}, {9.5F, 9}, {0.5F, 7}, {1.5F, 7}}));
}

TEST_F(EngineFill, AReadOverAFilledArrayShowsWhatIsStored) {
    write(hourPid, hour(1), com::Variant::of(1.5F), 1);
    const auto data = hours(3);
    data.fill(com::Variant::of(LONG{7}), 9);
    param(hourPid).readDataArray(data);
    EXPECT_EQ(itemsOf(data, 3), (std::vector<store::Item>{{}, {1.5F, 1}, {}}));
    data.fill(com::Variant::of(LONG{7}), 9);
    EXPECT_NE(failureOf([&] { param(monthPid).readDataArray(data); }).number, 0);
    EXPECT_EQ(itemsOf(data, 3), std::vector<store::Item>(3));
}

TEST_F(EngineFill, DefinedAnewAnArrayIsEmpty) {
    const auto data = hours(3);
    data.setItem(1, com::Variant::of(LONG{7}), 9);
    data.define(hour(0), 2, com::Bstr(L"h"), 1);
    EXPECT_EQ(itemsOf(data, 2), std::vector<store::Item>(2));
}

TEST_F(EngineFill, AnItemOfAFilledArrayIsACopy) {
    const auto data = hours(2);
    data.fill(com::Variant::of(LONG{7}), 9);
    const auto item = data.item(1);
    item.putMc(5);
    EXPECT_EQ(itemAt(data, 1), (store::Item{7, 9}));
    data.setItem(1, com::Variant::of(LONG{8}), 10);
    com::Variant value;
    item.value(value);
    EXPECT_EQ(value.get().lVal, 7);
}

TEST_F(EngineFill, RandomWritesLeaveWhatOneByOneWritesLeave) {
    constexpr LONG count = 400;
    const auto data = hours(count);
    std::vector<store::Item> expected(count);
    std::uint32_t state = 12345;
    const auto random = [&state](std::uint32_t below) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8) % below;
    };
    for (int step = 0; step < 600; ++step) {
        const LONG first = static_cast<LONG>(random(count));
        const LONG some = 1 + static_cast<LONG>(random(static_cast<std::uint32_t>(count - first)));
        const auto at = static_cast<std::size_t>(first);
        const auto mc = static_cast<LONG>(random(3));
        std::vector<float> singles(static_cast<std::size_t>(some));
        std::vector<double> reals(static_cast<std::size_t>(some));
        std::vector<LONG> whole(static_cast<std::size_t>(some));
        for (std::size_t i = 0; i < singles.size(); ++i) {
            whole[i] = static_cast<LONG>(random(1000));
            singles[i] = static_cast<float>(whole[i]) / 4;
            reals[i] = static_cast<double>(whole[i]) / 8;
        }
        switch (random(6)) {
            case 0:
                data.setItem(first + 1, text(std::to_wstring(step)), mc);
                expected[at] = {std::to_string(step), mc};
                break;
            case 1:
                data.blocks().set(first + 1, {some, VT_NULL, nullptr, nullptr, mc});
                for (std::size_t i = 0; i < whole.size(); ++i) expected[at + i] = {{}, mc};
                break;
            case 2:
                data.blocks().set(first + 1, {some, VT_I4, whole.data(), whole.data(), 0});
                for (std::size_t i = 0; i < whole.size(); ++i)
                    expected[at + i] = {std::int32_t{whole[i]}, whole[i]};
                break;
            case 3:
                data.blocks().set(first + 1, {some, VT_R4, singles.data(), nullptr, mc});
                for (std::size_t i = 0; i < whole.size(); ++i) expected[at + i] = {singles[i], mc};
                break;
            case 4:
                data.blocks().set(first + 1, {some, VT_R8, reals.data(), nullptr, mc});
                for (std::size_t i = 0; i < whole.size(); ++i) expected[at + i] = {reals[i], mc};
                break;
            default:
                data.setItem(first + 1, com::Variant::of(LONG{step}), mc);
                expected[at] = {std::int32_t{step}, mc};
        }
        if (step % 100 == 99) {
            EXPECT_EQ(byRuns(data, count), expected);
        }
    }
    EXPECT_EQ(itemsOf(data, count), expected);
}

}  // namespace vtdn::embedded::test

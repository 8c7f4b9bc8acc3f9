// Special function 33: storing a data array under a mask.
#include <chrono>
#include <iostream>

#include "data_interface/value.h"
#include "foreign_data_array.h"
#include "special_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

constexpr LONG yearOfMinutes = 525'600;
constexpr DATE newYear = 39083.0;  // 1 January 2007

/// Time that this process has had of the processor.
double processorNanoseconds() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return static_cast<double>(time.dwHighDateTime) * 4294967296.0 +
               static_cast<double>(time.dwLowDateTime);
    };
    return (ticks(kernel) + ticks(user)) * 100;
}

class EngineMaskedRun : public OnSpecialFunctions {
  protected:
    [[nodiscard]] static engine::DataArray defined(LONG count, DATE start = hour(0),
                                                   const wchar_t* type = L"h", LONG length = 1) {
        auto data = engine::DataArray::create();
        data.define(start, count, com::Bstr(type), length);
        return data;
    }
    [[nodiscard]] static engine::DataArray masked(const std::vector<LONG>& flags) {
        auto mask = defined(static_cast<LONG>(flags.size()));
        mask.fill(com::Variant::of(LONG{0}), 0);
        for (std::size_t i = 0; i < flags.size(); ++i)
            mask.setItem(static_cast<LONG>(i) + 1, com::Variant::of(flags[i]), 0);
        return mask;
    }
    /// Five hours of data: a single, a whole number, a double, a text and no value, with codes 11 to 15.
    [[nodiscard]] static engine::DataArray fiveHours() {
        auto data = defined(5);
        data.setItem(1, com::Variant::of(1.5F), 11);
        data.setItem(2, com::Variant::of(LONG{2}), 12);
        data.setItem(3, com::Variant::of(0.1), 13);
        data.setItem(4, com::Variant::of(std::wstring_view(L"N/A")), 14);
        data.setItem(5, com::Variant::null(), 15);
        return data;
    }
    static Arguments both(const engine::DataArray& data, const engine::DataArray& mask) {
        return {com::Variant::of(data.get()), com::Variant::of(mask.get())};
    }
    void store(LONG pid, const engine::DataArray& data, const engine::DataArray& mask) {
        const com::Variant done = result(pid, 33, both(data, mask));
        ASSERT_EQ(done.type(), VT_BOOL);
        EXPECT_EQ(done.get().boolVal, VARIANT_TRUE);
    }
    /// What another connection reads, hour by hour.
    [[nodiscard]] std::vector<store::Item> stored(int count) const {
        store::Site site(connections(), "DEMO");
        std::vector<store::Item> all;
        all.reserve(static_cast<std::size_t>(count));
        for (int h = 0; h < count; ++h)
            all.push_back(site.read(hourPid, store::timeOf({2007, 3, 25, h, 0, 0})));
        return all;
    }
};

}  // namespace

TEST_F(EngineMaskedRun, ThreeStoresValuesAndCodesOfEveryKind) {
    store(hourPid, fiveHours(), masked({3, 3, 3, 3, 3}));
    EXPECT_EQ(stored(6),
              (std::vector<store::Item>{{1.5F, 11}, {2, 12}, {0.1, 13}, {"N/A"s, 14}, {{}, 15}, {}}));
}

TEST_F(EngineMaskedRun, TheMaskSaysWhatOfEachIntervalIsStored) {
    for (int h = 0; h < 5; ++h) write(hourPid, hour(h), com::Variant::of(LONG{100 + h}), h);
    store(hourPid, fiveHours(), masked({0, 1, 2, 3, 1}));
    EXPECT_EQ(stored(5), (std::vector<store::Item>{{100, 0}, {2, 1}, {102, 13}, {"N/A"s, 14}, {{}, 4}}));
}

TEST_F(EngineMaskedRun, AnEmptyItemUnderAMaskOfCodesLeavesTheValue) {
    write(hourPid, hour(0), com::Variant::of(2.5F), 1);
    const auto data = defined(1);
    data.setItem(1, com::Variant(), 7);
    store(hourPid, data, masked({2}));
    EXPECT_EQ(stored(1), (std::vector<store::Item>{{2.5F, 7}}));
}

TEST_F(EngineMaskedRun, AMaskOfZerosStoresNothing) {
    write(hourPid, hour(0), com::Variant::of(2.5F), 1);
    store(hourPid, fiveHours(), masked({0, 0, 0, 0, 0}));
    EXPECT_EQ(stored(5), (std::vector<store::Item>{{2.5F, 1}, {}, {}, {}, {}}));
}

TEST_F(EngineMaskedRun, AMaskThatIsFilledAtOnceCounts) {
    const auto mask = defined(5);
    mask.fill(com::Variant::of(LONG{3}), 0);
    store(hourPid, fiveHours(), mask);
    EXPECT_EQ(stored(1), (std::vector<store::Item>{{1.5F, 11}}));
}

TEST_F(EngineMaskedRun, AMaskMayBeOfAnyKindOfNumber) {
    const auto mask = defined(5);
    mask.setItem(1, com::Variant::of(3.0F), 0);
    mask.setItem(2, com::Variant::of(1.0), 0);
    mask.setItem(3, com::Variant::of(2.0F), 0);
    mask.setItem(4, com::Variant::ofBool(false), 0);
    mask.setItem(5, com::Variant::of(LONG{0}), 0);
    store(hourPid, fiveHours(), mask);
    EXPECT_EQ(stored(4), (std::vector<store::Item>{{1.5F, 11}, {2, 0}, {{}, 13}, {}}));
}

TEST_F(EngineMaskedRun, ADataArrayThatWasReadIsCopiedToAnotherParameter) {
    configure([](store::Load& load) {
        auto all = store::test::demoParameters();
        all.push_back(store::test::stored(504070000, "1h"));
        load.replaceParameters(all);
    });
    store(hourPid, fiveHours(), masked({3, 3, 3, 3, 3}));
    const auto data = readRun(hourPid, hour(0), 5, L"h", 1);
    store(504070000, data, masked({3, 3, 3, 3, 3}));
    store::Site site(connections(), "DEMO");
    const std::vector<store::Item> expected = stored(5);
    for (int h = 0; h < 5; ++h)
        EXPECT_EQ(site.read(504070000, store::timeOf({2007, 3, 25, h, 0, 0})),
                  expected[static_cast<std::size_t>(h)]);
}

TEST_F(EngineMaskedRun, TheArgumentsMayBeNested) {
    EXPECT_EQ(result(hourPid, 33, nested(both(fiveHours(), masked({3, 3, 3, 3, 3})))).type(), VT_BOOL);
    EXPECT_EQ(stored(1), (std::vector<store::Item>{{1.5F, 11}}));
}

TEST_F(EngineMaskedRun, AnEmptyRunStoresNothingAndIsTrue) {
    store(hourPid, defined(0), defined(0));
    EXPECT_EQ(stored(1), std::vector<store::Item>(1));
}

TEST_F(EngineMaskedRun, AnEmptyRunIsRefusedForWhatCannotBeWritten) {
    EXPECT_EQ(refused(limitPid, 33, both(defined(0), defined(0))).number, 70);
    EXPECT_EQ(refused(monthPid, 33, both(defined(0), defined(0))).number, 5);
}

TEST_F(EngineMaskedRun, MasksOfOtherNumbersAreRefusedAndNothingIsStored) {
    struct Case {
        com::Variant mask;
        LONG number;
    };
    const std::vector<Case> cases{{com::Variant::of(LONG{4}), 6},
                                  {com::Variant::of(LONG{-1}), 6},
                                  {com::Variant::of(LONG_MAX), 6},
                                  {com::Variant::of(1.5F), 6},
                                  {com::Variant::of(2.0000001), 6},
                                  {com::Variant::ofBool(true), 6},
                                  {com::Variant::null(), 13},
                                  {com::Variant(), 13},
                                  {com::Variant::of(std::wstring_view(L"3")), 13}};
    for (const Case& c : cases) {
        const auto mask = masked({3, 3, 3, 3, 3});
        mask.setItem(4, c.mask, 0);
        const Failure failure = refused(hourPid, 33, both(fiveHours(), mask));
        EXPECT_EQ(failure.number, c.number) << failure.description;
        EXPECT_NE(failure.description.find(L"Item 4 of the mask"), std::wstring::npos) << failure.description;
    }
    EXPECT_EQ(stored(5), std::vector<store::Item>(5));
}

TEST_F(EngineMaskedRun, AMaskThatWasNeverFilledIsRefused) {
    EXPECT_EQ(refused(hourPid, 33, both(fiveHours(), defined(5))).number, 13);
}

TEST_F(EngineMaskedRun, ArraysAtDifferentPlacesAreRefused) {
    const auto data = fiveHours();
    const std::vector<engine::DataArray> others{defined(4), defined(6), defined(5, hour(1)),
                                                defined(5, hour(0), L"m"), defined(5, hour(0), L"h", 2)};
    for (const auto& other : others) {
        other.fill(com::Variant::of(LONG{3}), 0);
        EXPECT_EQ(refused(hourPid, 33, both(data, other)).number, 5);
    }
    EXPECT_EQ(stored(5), std::vector<store::Item>(5));
}

TEST_F(EngineMaskedRun, TheSamePlaceMayBeNamedDifferently) {
    const auto mask = defined(5, hour(0), L"minutes", 60);
    mask.fill(com::Variant::of(LONG{3}), 0);
    store(hourPid, fiveHours(), mask);
}

TEST_F(EngineMaskedRun, ArraysWithoutAPlaceAreRefused) {
    const auto data = fiveHours();
    const auto nowhere = engine::DataArray::create();
    EXPECT_EQ(refused(hourPid, 33, both(data, nowhere)).number, 91);
    EXPECT_EQ(refused(hourPid, 33, both(nowhere, data)).number, 91);
}

TEST_F(EngineMaskedRun, OtherArgumentsAreRefused) {
    const auto data = com::Variant::of(fiveHours().get());
    const auto nothing = com::Variant::of(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(refused(hourPid, 33, Arguments{}).number, 450);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data}).number, 450);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data, data, data}).number, 450);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data, com::Variant::of(LONG{3})}).number, 13);
    EXPECT_EQ(refused(hourPid, 33, Arguments{com::Variant::null(), data}).number, 13);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data, com::Variant::missing()}).number, 13);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data, nothing}).number, 91);
    EXPECT_EQ(refused(hourPid, 33, Arguments{nothing, data}).number, 91);
    EXPECT_EQ(refused(hourPid, 33, Arguments{data, com::Variant::of(engine.get())}).number, 13);
    const auto item = engine::DataItem::create();
    EXPECT_EQ(refused(hourPid, 33, Arguments{com::Variant::of(item.get()), data}).number, 13);
    EXPECT_EQ(refused(hourPid, 33, nested(nested({data, data}))).number, 450);
    EXPECT_EQ(refused(hourPid, 33, com::SafeArray()).number, 13);
    EXPECT_EQ(refused(hourPid, 33, com::SafeArray::of<LONG>(2)).number, 13);
    EXPECT_EQ(stored(5), std::vector<store::Item>(5));
}

TEST_F(EngineMaskedRun, AnArrayOfAnotherLibraryIsRefused) {
    ForeignDataArray foreign;
    const auto own = com::Variant::of(fiveHours().get());
    EXPECT_EQ(refused(hourPid, 33, Arguments{com::Variant::of(&foreign), own}).number, 13);
    EXPECT_EQ(refused(hourPid, 33, Arguments{own, com::Variant::of(&foreign)}).number, 13);
}

TEST_F(EngineMaskedRun, WhatTheStoreRefusesIsAnErrorAndAMessage) {
    const auto data = fiveHours();
    const auto mask = masked({3, 3, 3, 3, 3});
    EXPECT_EQ(refused(limitPid, 33, both(data, mask)).number, 70);
    EXPECT_EQ(refused(averagePid, 33, both(data, mask)).number, 70);
    EXPECT_EQ(refused(formulaPid, 33, both(data, mask)).number, 70);
    EXPECT_EQ(refused(minutePid, 33, both(data, mask)).number, 5);
    const engine::Param hours = param(hourPid);
    engine.close();
    com::SafeArray array = variantsOf(both(data, mask));
    const Failure failure = failureOf([&] { static_cast<void>(hours.specialFunction(33, array)); });
    EXPECT_EQ(failure.number, 91);
    EXPECT_EQ(heard.take(), std::vector{failure.description});
}

TEST_F(EngineMaskedRun, WhenTheStoreFailsInTheMiddleNothingIsStored) {
    constexpr LONG count = 5 * 1440;
    const auto data = defined(count, newYear, L"m");
    data.fill(com::Variant::of(1.5F), 1);
    const auto mask = defined(count, newYear, L"m");
    mask.fill(com::Variant::of(LONG{3}), 0);
    store(minutePid, data, mask);
    {
        // The fourth day of minutes is damaged: only its code is asked for, so that it has to be read.
        store::Site site(connections(), "DEMO");
        site.database(store::DatabaseKind::dataShortTerm)
            .execute("UPDATE chunk SET data = zeroblob(20) WHERE id = (SELECT MAX(id) - 1 FROM chunk)");
    }
    data.fill(com::Variant::of(2.5F), 2);
    mask.fill(com::Variant::of(LONG{2}), 0);
    refused(minutePid, 33, both(data, mask));
    const auto first = readRun(minutePid, newYear, 1440, L"m", 1);
    EXPECT_EQ(first.item(1).mc(), 1);
    EXPECT_EQ(first.item(1440).mc(), 1);
}

TEST_F(EngineMaskedRun, AYearOfMinutesComesBackValueByValue) {
    std::vector<store::Item> given(yearOfMinutes);
    const auto data = defined(yearOfMinutes, newYear, L"m");
    const auto mask = defined(yearOfMinutes, newYear, L"m");
    mask.fill(com::Variant::of(LONG{3}), 0);
    for (std::size_t i = 0; i < given.size(); ++i) {
        given[i].code = static_cast<LONG>(i / 700 % 23);
        const auto n = static_cast<std::int32_t>(i);
        if (i % 1000 == 17)
            given[i].value = "text " + std::to_string(i);
        else if (i % 500 < 20)
            given[i].value = {};
        else if (i % 5000 < 1000)
            given[i].value = n;
        else if (i % 5000 < 1500)
            given[i].value = n / 3.0;
        else
            given[i].value = static_cast<float>(n) / 7;
        data.setItem(n + 1, toVariant(given[i].value), given[i].code);
    }
    store(minutePid, data, mask);
    const auto back = readRun(minutePid, newYear, yearOfMinutes, L"m", 1);
    int wrong = 0;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const auto item = back.item(static_cast<LONG>(i) + 1);
        com::Variant value;
        item.value(value);
        if (!(store::Item{fromVariant(value.get()), item.mc()} == given[i])) ++wrong;
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(EngineMaskedRun, AYearOfMinutesIsStoredQuicklyAndInLittleMemory) {
    std::vector<float> values(yearOfMinutes);
    std::vector<LONG> codes(yearOfMinutes);
    const std::vector<LONG> flags(yearOfMinutes, 3);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<float>(i) * 0.25F;
        codes[i] = static_cast<LONG>(i / 60 % 3);
    }
    double best = 1e9;
    constexpr int rounds = 5;
    const double processor = processorNanoseconds();
    for (int round = 0; round < rounds; ++round) {
        for (float& value : values) value += 1;
        const auto start = std::chrono::steady_clock::now();
        const auto data = defined(yearOfMinutes, newYear, L"m");
        const auto mask = defined(yearOfMinutes, newYear, L"m");
        mask.fill(com::Variant::of(LONG{0}), 0);
        data.blocks().set(1, {yearOfMinutes, VT_R4, values.data(), codes.data(), 0});
        mask.blocks().set(1, {yearOfMinutes, VT_I4, flags.data(), nullptr, 0});
        store(minutePid, data, mask);
        const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count() / yearOfMinutes);
    }
    const double ofProcessor = (processorNanoseconds() - processor) / rounds / yearOfMinutes;
    std::cout << "    " << best << " ns per value, " << ofProcessor << " of the processor\n";
    // Several times what it takes, since other programs share the machine.
    EXPECT_LT(ofProcessor, 400);
}

}  // namespace vtdn::embedded::test

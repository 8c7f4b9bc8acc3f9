// Block access of an engine: the results must equal those of item-by-item access bit by bit.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

#include "fake_engine/lenient.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using fake::Interval;

constexpr LONG pid = 530001;

/// Everything that the three array reads return for one run, as bits.
struct Everything {
    std::vector<LONG> integers;
    std::vector<LONG> integerMcs;
    std::vector<bool> integerFlags;
    std::vector<ULONG> singles;  // bits: a NaN equals itself
    std::vector<LONG> singleMcs;
    std::vector<bool> singleFlags;
    std::vector<std::wstring> texts;
    std::vector<LONG> textMcs;
    bool operator==(const Everything&) const = default;
};

class Runs : public testing::Test {
  protected:
    Runs() { EXPECT_TRUE(client_.setup()); }
    ~Runs() override {
        client_.release();
        EXPECT_EQ(site.objects, 0);
    }

    Everything readAll(LONG count) {
        Everything all;
        const Bstr type(L"1h");
        Array<LONG> integers(0, 0);
        Array<float> singles(0, 0);
        Array<BSTR> texts(0, 0);
        Array<LONG> mcs(0, 0);
        Array<VARIANT_BOOL> flags(0, 0);
        EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetDataArray_Integer, pid, 39448.0, count, type.get(),
                                LONG{1}, integers.inOut(), mcs.inOut(), flags.inOut()));
        all.integers = integers.values();
        all.integerMcs = mcs.values();
        all.integerFlags = flags.values();
        EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetDataArray_Single, pid, 39448.0, count, type.get(),
                                LONG{1}, singles.inOut(), mcs.inOut(), flags.inOut()));
        for (const float single : singles.values()) {
            ULONG bits = 0;
            std::memcpy(&bits, &single, sizeof single);
            all.singles.push_back(bits);
        }
        all.singleMcs = mcs.values();
        all.singleFlags = flags.values();
        EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetDataArray_String, pid, 39448.0, count, type.get(),
                                LONG{1}, texts.inOut(), mcs.inOut()));
        all.texts = texts.values();
        all.textMcs = mcs.values();
        return all;
    }

    /// Reads item by item and in runs; the two must agree. Runs are cut at several lengths.
    void expectSame(LONG count) {
        site.offerRuns = false;
        const Everything byItem = readAll(count);
        site.offerRuns = true;
        for (const LONG longest : {0x7FFFFFFFL, 1L, 2L, 7L}) {
            site.longestRun = longest;
            const Everything byRun = readAll(count);
            EXPECT_EQ(byRun.integers, byItem.integers);
            EXPECT_EQ(byRun.integerMcs, byItem.integerMcs);
            EXPECT_EQ(byRun.integerFlags, byItem.integerFlags);
            EXPECT_EQ(byRun.singles, byItem.singles);
            EXPECT_EQ(byRun.singleMcs, byItem.singleMcs);
            EXPECT_EQ(byRun.singleFlags, byItem.singleFlags);
            EXPECT_EQ(byRun.texts, byItem.texts);
            EXPECT_EQ(byRun.textMcs, byItem.textMcs);
        }
    }

    fake::Site site;
    std::vector<Interval>& run = site.parameters[pid].run;

  private:
    fake::LenientServer server_{site};
    Client client_;
};

/// Doubles at and around every limit of the conversions.
const double edges[] = {0,
                        -0.0,
                        0.5,
                        1.5,
                        2.5,
                        -0.5,
                        -2.5,
                        0.49999999999999994,
                        32766.5,
                        32767.0,
                        32767.4999,
                        32767.5,
                        32768,
                        -32768,
                        -32768.4999,
                        -32768.5,
                        -32768.51,
                        40000,
                        2147483647.0,
                        2147483648.0,
                        -2147483648.5,
                        1e-46,
                        1e-45,
                        1.401298464324817e-45,
                        1.17549435e-38,
                        3.4028234663852886e38,
                        3.4028235e38,
                        3.4028235677973366e38,
                        3.40282357e38,
                        -3.5e38,
                        1e300,
                        0.1,
                        1.0 / 3,
                        16777217,
                        123456789.125,
                        5e-324,
                        std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity(),
                        std::numeric_limits<double>::quiet_NaN()};

TEST_F(Runs, EveryLimitOfADoubleReadsTheSame) {
    LONG mc = 0;
    for (const double value : edges) run.push_back({com::Variant::of(value), ++mc});
    expectSame(static_cast<LONG>(run.size()));
}

TEST_F(Runs, EveryLimitOfASingleReadsTheSame) {
    LONG mc = 0;
    for (const double value : edges) run.push_back({com::Variant::of(static_cast<float>(value)), ++mc});
    for (const float value : {std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(),
                              std::numeric_limits<float>::signaling_NaN()}) {
        run.push_back({com::Variant::of(value), ++mc});
    }
    expectSame(static_cast<LONG>(run.size()));
}

TEST_F(Runs, EveryLimitOfAWholeNumberReadsTheSame) {
    for (const LONG value : {0L, 1L, -1L, 32767L, 32768L, -32768L, -32769L, 40000L, 16777216L, 16777217L,
                             33554435L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        run.push_back({com::Variant::of(value), 3});
    }
    expectSame(static_cast<LONG>(run.size()));
}

TEST_F(Runs, RandomMixturesOfTypesAndCodesReadTheSame) {
    std::mt19937 random(20240305);
    const auto upTo = [&random](unsigned limit) { return random() % limit; };
    for (int round = 0; round < 40; ++round) {
        run.clear();
        const std::size_t count = 1 + upTo(300);
        while (run.size() < count) {
            const unsigned type = upTo(8);
            const std::size_t length = 1 + upTo(20);
            const bool oneMc = upTo(2) == 0;
            const LONG mc = static_cast<LONG>(upTo(100)) - 50;
            for (std::size_t i = 0; i < length && run.size() < count; ++i) {
                Interval interval;
                interval.mc = oneMc ? mc : static_cast<LONG>(random());
                const auto integer = static_cast<LONG>(random()) >> upTo(31);
                const double real =
                    std::ldexp(static_cast<double>(integer), static_cast<int>(upTo(200)) - 100);
                switch (type) {
                    case 0:
                        break;  // Null
                    case 1:
                        interval.value = com::Variant::of(integer);
                        break;
                    case 2:
                        interval.value = com::Variant::of(static_cast<float>(integer) / 8);
                        break;
                    case 3:
                        interval.value = com::Variant::of(upTo(2) ? real : static_cast<double>(integer) / 2);
                        break;
                    case 4:
                        interval.value = com::Variant::of(std::to_wstring(integer));
                        break;
                    case 5:
                        interval.value = com::Variant::of(L"N/A");
                        break;
                    case 6:
                        interval.value = com::Variant::ofBool(upTo(2) == 0);
                        break;
                    default:
                        interval.value = com::Variant();
                        break;
                }
                run.push_back(std::move(interval));
            }
        }
        SCOPED_TRACE(round);
        expectSame(static_cast<LONG>(count) + static_cast<LONG>(upTo(3)));
    }
}

TEST_F(Runs, AnEngineWithRunsIsNotAskedForItemsThatItHandsOutInBlocks) {
    site.offerRuns = true;
    for (int i = 0; i < 100; ++i) run.push_back({com::Variant::of(0.5 * i), 1});
    for (int i = 0; i < 50; ++i) run.push_back({com::Variant::null(), 2});
    static_cast<void>(readAll(150));
    EXPECT_EQ(site.itemCalls, 0);
    EXPECT_EQ(site.runCalls, 3 * 2);
}

TEST_F(Runs, ItemsBetweenBlocksAreAskedOneByOne) {
    site.offerRuns = true;
    for (int i = 0; i < 10; ++i) run.push_back({com::Variant::of(LONG{i}), 1});
    for (int i = 0; i < 4; ++i) run.push_back({com::Variant::of(L"text"), 2});
    for (int i = 0; i < 10; ++i) run.push_back({com::Variant::of(LONG{i}), 1});
    static_cast<void>(readAll(24));
    EXPECT_EQ(site.itemCalls, 3 * 4);
}

TEST_F(Runs, AnEngineWithoutRunsIsAskedForEveryItem) {
    for (int i = 0; i < 100; ++i) run.push_back({com::Variant::of(0.5 * i), 1});
    static_cast<void>(readAll(100));
    EXPECT_EQ(site.itemCalls, 300);
    EXPECT_EQ(site.runCalls, 0);
}

TEST_F(Runs, ACountOfZeroAsksForNoRun) {
    site.offerRuns = true;
    run.push_back({com::Variant::of(1.0), 1});
    static_cast<void>(readAll(0));
    EXPECT_EQ(site.runCalls, 0);
    EXPECT_EQ(site.itemCalls, 0);
}

}  // namespace
}  // namespace vtdn::test

// Block writes of an engine: what it stores must equal what item-by-item writes leave, bit by bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "fake_engine/lenient.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using fake::Interval;

constexpr LONG pid = 530001;

/// An interval in words, a single by its bits.
std::string shown(const Interval& interval) {
    const VARIANT& value = interval.value.get();
    std::string text = "type " + std::to_string(value.vt) + " ";
    if (value.vt == VT_R4) {
        ULONG bits = 0;
        std::memcpy(&bits, &value.fltVal, sizeof bits);
        text += std::to_string(bits);
    } else if (value.vt == VT_I4) {
        text += std::to_string(value.lVal);
    } else if (value.vt == VT_BSTR) {
        text += com::toUtf8(com::view(value.bstrVal));
    }
    return text + ", code " + std::to_string(interval.mc);
}
std::vector<std::string> shown(const std::vector<Interval>& intervals) {
    std::vector<std::string> all;
    all.reserve(intervals.size());
    for (const Interval& interval : intervals) all.push_back(shown(interval));
    return all;
}

/// A request of a client.
struct Request {
    std::wstring values;
    std::vector<LONG> mcs;
    std::vector<LONG> flags;

    void add(std::wstring_view value, LONG mc, LONG flag) {
        if (!flags.empty()) values += L'\t';
        values += value;
        mcs.push_back(mc);
        flags.push_back(flag);
    }
};

class Blocks : public testing::Test {
  protected:
    Blocks() { EXPECT_TRUE(client_.setup()); }
    ~Blocks() override {
        client_.release();
        EXPECT_EQ(site.objects, 0);
    }

    void write(const Request& request, bool inBlocks) {
        site.offerBlocks = inBlocks;
        parameter.written.clear();
        parameter.mask.clear();
        site.setItemCalls = 0;
        site.setRunCalls = 0;
        const auto count = static_cast<LONG>(request.flags.size());
        const Bstr type(L"1h");
        const Bstr values(request.values);
        Array<LONG> mcs(0, static_cast<ULONG>(count));
        Array<LONG> flags(0, static_cast<ULONG>(count));
        {
            const com::ArrayView<LONG> mcElements(mcs.get());
            const com::ArrayView<LONG> flagElements(flags.get());
            std::ranges::copy(request.mcs, mcElements.begin());
            std::ranges::copy(request.flags, flagElements.begin());
        }
        EXPECT_TRUE(client_.yes(&_DIWrapper::Param_WriteValues, pid, 39448.0, count, type.get(), LONG{1},
                                values.get(), mcs.inOut(), flags.inOut()));
        EXPECT_EQ(mcs.values(), request.mcs);
        EXPECT_EQ(flags.values(), request.flags);
        EXPECT_EQ(client_.problems(), L"");
    }
    /// Writes item by item and in blocks; the two must agree.
    void expectSame(const Request& request) {
        write(request, false);
        EXPECT_EQ(site.setRunCalls, 0);
        const auto data = shown(parameter.written);
        const auto mask = shown(parameter.mask);
        ASSERT_EQ(data.size(), request.flags.size());
        // Every mask item holds its flag, or 0.
        for (std::size_t i = 0; i < mask.size(); ++i) {
            const LONG flag = request.flags[i];
            const LONG expected = flag >= 1 && flag <= 3 ? flag : 0;
            ASSERT_EQ(mask[i], "type 3 " + std::to_string(expected) + ", code 0") << i;
        }
        write(request, true);
        EXPECT_EQ(shown(parameter.written), data);
        EXPECT_EQ(shown(parameter.mask), mask);
    }

    fake::Site site;
    fake::Parameter& parameter = site.parameters[pid];
    const Client& client() const { return client_; }

  private:
    fake::LenientServer server_{site};
    Client client_;
};

TEST_F(Blocks, HoldARunOfNumbersAtOnce) {
    Request request;
    for (int i = 0; i < 100; ++i) request.add(std::to_wstring(i) + L".5", i, i % 2 == 0 ? 3 : 1);
    expectSame(request);
    EXPECT_EQ(site.setRunCalls, 2) << "one for the data, one for the mask";
    EXPECT_EQ(site.setItemCalls, 0);
    EXPECT_EQ(shown(parameter.written[3]), shown(Interval{com::Variant::of(3.5F), 0}));
    EXPECT_EQ(shown(parameter.written[4]), shown(Interval{com::Variant::of(4.5F), 4}));
}

TEST_F(Blocks, EndAtTextsGapsAndOtherTypes) {
    Request request;
    request.add(L"1", 1, 3);
    request.add(L"2", 2, 1);
    request.add(L"text", 3, 3);
    request.add(L"3", 4, 3);
    request.add(L"", 5, 3);
    request.add(L"", 6, 1);
    request.add(L"7", 7, 2);
    request.add(L"8", 8, 2);
    request.add(L"9", 9, 0);
    request.add(L"10", 10, 3);
    request.add(L"", 11, 2);
    request.add(L"text", 12, 1);
    expectSame(request);
    // 1-2, 4, 5-6, 7-8, 10, 11; each in data and mask.
    EXPECT_EQ(site.setRunCalls, 12);
    EXPECT_EQ(site.setItemCalls, 4) << "the two texts";
}

TEST_F(Blocks, AreCutWhereTheyGrowLong) {
    for (const int count : {4095, 4096, 4097, 8192, 20000}) {
        Request request;
        for (int i = 0; i < count; ++i) request.add(std::to_wstring(i), i, 3);
        expectSame(request);
        EXPECT_EQ(site.setItemCalls, 0);
        EXPECT_GE(site.setRunCalls, 2);
        EXPECT_LE(site.setRunCalls, 2 * (count / 4096 + 1));
    }
}

TEST_F(Blocks, OfAnEmptyRunAndOfARunOfNothingAreNone) {
    expectSame({});
    EXPECT_EQ(site.setRunCalls, 0);
    Request request;
    for (int i = 0; i < 5; ++i) request.add(L"1", 1, 0);
    expectSame(request);
    EXPECT_EQ(site.setRunCalls, 0);
    EXPECT_EQ(site.setItemCalls, 0);
}

TEST_F(Blocks, LeaveWhatItemByItemWritesLeaveInRandomRuns) {
    std::mt19937 random(4);
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    const wchar_t* odd[] = {L"",      L"text", L" 12 ", L"1,234.5", L"1e3", L"-0", L"$5",   L"(7)",
                            L"1e-20", L" ",    L"&H10", L"N/A",     L"5.",  L".5", L"1e38", L"16777217"};
    for (int round = 0; round < 300; ++round) {
        Request request;
        const int count = round % 50 == 0 ? 9000 : below(60);
        int kind = 0;
        LONG flag = 3;
        for (int i = 0; i < count; ++i) {
            // Mostly as the one before, so that blocks come about.
            if (below(6) == 0) kind = below(3);
            if (below(6) == 0) flag = below(6) - 1;
            const LONG mc = below(4) == 0 ? static_cast<LONG>(random()) : 0;
            switch (kind) {
                case 0:
                    request.add(
                        std::to_wstring(below(2000000) - 1000000) + L"." + std::to_wstring(below(1000)), mc,
                        flag);
                    break;
                case 1:
                    request.add(L"", mc, flag);
                    break;
                default:
                    request.add(odd[static_cast<std::size_t>(below(std::size(odd)))], mc, flag);
                    break;
            }
        }
        SCOPED_TRACE("round " + std::to_string(round));
        expectSame(request);
        if (HasFailure()) return;
    }
}

/// Fails the first block write.
class FailingBlocks : public fake::Tap {
  public:
    HRESULT onCall(const char* call) override {
        return std::string_view(call) == "DIDataArrayBlocks.SetRun" ? E_ACCESSDENIED : S_OK;
    }
};

TEST_F(Blocks, ThatFailReachTheClientAndNothingIsStored) {
    FailingBlocks tap;
    site.tap = &tap;
    site.offerBlocks = true;
    const Bstr type(L"1h");
    const Bstr values(L"1\t2");
    Array<LONG> mcs(0, 2);
    Array<LONG> flags(0, 2);
    flags.fill(3);
    const long before = site.objects;
    EXPECT_EQ(client()
                  .failure(&_DIWrapper::Param_WriteValues, pid, 39448.0, LONG{2}, type.get(), LONG{1},
                           values.get(), mcs.inOut(), flags.inOut())
                  .result,
              E_ACCESSDENIED);
    EXPECT_EQ(site.objects, before);
    EXPECT_TRUE(parameter.written.empty());
    EXPECT_EQ(client().problems(), L"");
    site.tap = nullptr;
}

TEST_F(Blocks, ANumberBeyondASingleStoresNothing) {
    for (const bool inBlocks : {false, true}) {
        site.offerBlocks = inBlocks;
        const Bstr type(L"1h");
        const Bstr values(L"1\t1e39");
        Array<LONG> mcs(0, 2);
        Array<LONG> flags(0, 2);
        flags.fill(3);
        EXPECT_EQ(client()
                      .failure(&_DIWrapper::Param_WriteValues, pid, 39448.0, LONG{2}, type.get(), LONG{1},
                               values.get(), mcs.inOut(), flags.inOut())
                      .result,
                  DISP_E_OVERFLOW);
        EXPECT_TRUE(parameter.written.empty());
    }
}

}  // namespace
}  // namespace vtdn::test

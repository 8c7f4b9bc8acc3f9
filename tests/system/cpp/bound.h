// An early-bound client of the registered component, on the demo site.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "com/error.h"
#include "com/variant.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {

constexpr LONG barry = 1;
constexpr LONG so2Mass = 504030000;         // 5-040-3-00-00, lb/hr, hourly
constexpr LONG operatingTime = 501030000;   // 5-010-3-00-00, hr, hourly
constexpr LONG so2Analyzer = 511010001;     // 5-110-1-00-01, ppm, by the minute, no values
constexpr LONG ratedHeatInput = 590100000;  // 5-901-0-00-00, a constant
constexpr LONG unitItself = 500100000;      // 5-001-0-00-00
constexpr LONG nobodysPid = 599930000;

/// A new wrapper from the registered class.
inline com::Ptr<_DIWrapper> registered() {
    com::Ptr<_DIWrapper> wrapper;
    com::check(CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_DIWrapper),
                                wrapper.receiveVoid()));
    return wrapper;
}

class OnDemoSite : public testing::Test {
  protected:
    OnDemoSite() : client_(registered()) { EXPECT_TRUE(client_.setup(barry)); }
    ~OnDemoSite() override {
        client_.teardown();
        client_.release();
    }

    /// A run that is read as singles, as doubles; what is no number is left out.
    [[nodiscard]] std::vector<double> numbers(LONG pid, DATE start, LONG hours) const {
        const com::Bstr hour(L"h");
        Array<float> values(0, 0);
        Array<LONG> mcs(0, 0);
        Array<VARIANT_BOOL> flags(0, 0);
        EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetDataArray_Single, pid, start, hours, hour.get(),
                                LONG{1}, values.inOut(), mcs.inOut(), flags.inOut()));
        std::vector<double> found;
        const auto singles = values.values();
        const auto missing = flags.values();
        for (std::size_t i = 0; i < singles.size(); ++i)
            if (!missing[i]) found.push_back(singles[i]);
        return found;
    }

    Client client_;
};

}  // namespace vtdn::test

// A site of ten parameters with a year of minutes each, and the component set up on it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/component.h"
#include "com/strings.h"
#include "store/site.h"

namespace vtdn::bench {

inline constexpr LONG minutes = 525600;
inline constexpr int parameters = 10;
inline constexpr LONG firstPid = 501010000;
/// Parameters without values, for writes.
inline constexpr int emptyParameters = 10;
inline constexpr LONG firstEmptyPid = firstPid + parameters;
inline constexpr DATE start = 39083.0;  // 1 January 2007
inline constexpr std::int64_t startSeconds = 39083LL * 86400;

struct Series {
    std::vector<float> values;
    std::vector<std::int32_t> codes;
};

/// Load that wanders over the day with noise on every minute, and a substitute code for an hour now and then.
Series makeSeries(unsigned seed);

inline constexpr char siteId[] = "BENCH";
void defineParameters(store::Load& load);
void makeSite(const store::SiteConnections& connections, const std::array<Series, parameters>& series);

/// The arrays of a read of a year, fresh.
struct Arrays {
    SAFEARRAY* values = SafeArrayCreateVector(VT_R4, 0, minutes);
    SAFEARRAY* codes = SafeArrayCreateVector(VT_I4, 0, minutes);
    SAFEARRAY* missing = SafeArrayCreateVector(VT_BOOL, 0, minutes);
    Arrays() = default;
    Arrays(const Arrays&) = delete;
    Arrays& operator=(const Arrays&) = delete;
    ~Arrays() {
        SafeArrayDestroy(values);
        SafeArrayDestroy(codes);
        SafeArrayDestroy(missing);
    }
};

template <class T>
T* elements(SAFEARRAY* array) {
    return static_cast<T*>(array->pvData);
}

/// What a client hands over to write a year.
struct YearRequest {
    com::Bstr values;
    SAFEARRAY* codes = SafeArrayCreateVector(VT_I4, 0, minutes);
    SAFEARRAY* flags = SafeArrayCreateVector(VT_I4, 0, minutes);
    explicit YearRequest(const Series& series);
    YearRequest(const YearRequest&) = delete;
    YearRequest& operator=(const YearRequest&) = delete;
    ~YearRequest() {
        SafeArrayDestroy(codes);
        SafeArrayDestroy(flags);
    }
};

/// The component on the site, for as long as it lives.
class OnSite {
  public:
    OnSite(const std::wstring& componentFile, const store::SiteConnections& connections);
    ~OnSite() { wrapper_->Teardown(); }
    OnSite(const OnSite&) = delete;
    OnSite& operator=(const OnSite&) = delete;

    void read(LONG pid, Arrays& arrays) const;
    void write(LONG pid, YearRequest& request) const;
    [[nodiscard]] com::Bstr listOfCalibrations() const;
    /// The downtimes of all tags from one second since 30 December 1899 to another, by tag; the caller's own.
    [[nodiscard]] SAFEARRAY* listOfDowntimes(std::int64_t first, std::int64_t last) const;

  private:
    com::Ptr<_DIWrapper> wrapper_;
    com::Bstr minute_{L"m"};
};

/// Throws unless the year was read as it was written.
void needEqual(const Arrays& arrays, const Series& series);

}  // namespace vtdn::bench

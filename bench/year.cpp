#include "bench/year.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <random>

#include "bench/component.h"
#include "bench/row_table.h"
#include "bench/timing.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "store/site.h"

namespace vtdn::bench {
namespace {

constexpr LONG minutes = 525600;
constexpr int parameters = 10;
constexpr LONG firstPid = 501010000;
constexpr DATE start = 39083.0;  // 1 January 2007
constexpr std::int64_t startSeconds = 39083LL * 86400;

struct Series {
    std::vector<float> values;
    std::vector<std::int32_t> codes;
};

/// Load that wanders over the day with noise on every minute, and a substitute code for an hour now and then.
Series makeSeries(unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0.0F, 3.0F);
    std::uniform_int_distribution<int> hour(0, 199);
    Series series;
    series.values.resize(minutes);
    series.codes.resize(minutes);
    std::int32_t code = 1;
    for (LONG i = 0; i < minutes; ++i) {
        if (i % 60 == 0) code = hour(random) == 0 ? 6 : 1;
        const auto phase = static_cast<float>(i % 1440) / 1440.0F * 6.2831853F;
        series.values[i] = 500.0F + 200.0F * std::sin(phase) + noise(random);
        series.codes[i] = code;
    }
    return series;
}

void makeSite(const store::SiteConnections& connections, const std::array<Series, parameters>& series) {
    store::Site site = store::Site::create(connections, "BENCH");
    store::Load load(site);
    std::vector<store::Parameter> list(parameters);
    for (int p = 0; p < parameters; ++p) {
        list[p].pid = firstPid + p;
        list[p].name = "Minute " + std::to_string(p);
        list[p].interval = "1m";
    }
    const std::vector<store::MonitorCodeName> codes = {
        {.code = 1, .short_name = "1", .long_name = "Measured"},
        {.code = 6, .short_name = "6", .long_name = "Substitute"}};
    load.replaceMonitorCodes(codes);
    load.replaceParameters(list);
    // Minute by minute, as the values come in at a plant.
    for (LONG i = 0; i < minutes; ++i)
        for (int p = 0; p < parameters; ++p)
            load.append(firstPid + p, startSeconds + std::int64_t{i} * 60,
                        {series[p].values[i], series[p].codes[i]});
    load.commit();
}

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

class Reader {
  public:
    Reader(const std::wstring& componentFile, const store::SiteConnections& connections)
        : wrapper_(makeWrapper(componentFile)) {
        const auto bstr = [](const std::string& text) { return com::Bstr(com::fromUtf8(text)); };
        VARIANT_BOOL bound = VARIANT_FALSE;
        com::check(wrapper_->Setup2(bstr("BENCH").get(), bstr(connections.alarm).get(),
                                    bstr(connections.config).get(), bstr(connections.data).get(),
                                    bstr(connections.data_short_term).get(), bstr(connections.realtime).get(),
                                    &bound));
        com::Bstr problems;
        com::check(wrapper_->GetAndClearProblemsList(problems.receive()));
        if (!bound) com::throwError(E_FAIL, problems.view());
    }
    ~Reader() { wrapper_->Teardown(); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    void read(LONG pid, Arrays& arrays) {
        VARIANT_BOOL done = VARIANT_FALSE;
        com::check(wrapper_->Param_GetDataArray_Single(pid, start, minutes, minute_.get(), 1, &arrays.values,
                                                       &arrays.codes, &arrays.missing, &done));
        if (!done) com::throwError(E_FAIL, L"the year was not read");
    }

  private:
    com::Ptr<_DIWrapper> wrapper_;
    com::Bstr minute_{L"m"};
};

void needEqual(const Arrays& arrays, const Series& series) {
    for (LONG i = 0; i < minutes; ++i)
        if (elements<float>(arrays.values)[i] != series.values[i] ||
            elements<LONG>(arrays.codes)[i] != series.codes[i] ||
            elements<VARIANT_BOOL>(arrays.missing)[i] != VARIANT_FALSE)
            com::throwError(E_FAIL, L"a value that was read differs from what was written");
}

}  // namespace

std::vector<Figure> measureYear(const std::wstring& componentFile, const std::wstring& engineFile,
                                const std::string& folder) {
    std::array<Series, parameters> series;
    for (int p = 0; p < parameters; ++p) series[p] = makeSeries(static_cast<unsigned>(p + 1));

    const auto connections = store::SiteConnections::inFolder(folder + "/site");
    std::filesystem::create_directories(folder + "/site");
    makeSite(connections, series);
    std::uintmax_t bytes = 0;
    for (const auto& file : std::filesystem::directory_iterator(folder + "/site")) bytes += file.file_size();

    RowTable table(folder + "/rows.db");
    for (int p = 0; p < parameters; ++p)
        table.write(firstPid + p, startSeconds, series[p].values, series[p].codes);

    const EmbeddedEngine engine(engineFile);
    Reader reader(componentFile, connections);
    for (int p = 0; p < parameters; ++p) {
        Arrays arrays;
        reader.read(firstPid + p, arrays);
        needEqual(arrays, series[p]);
    }

    int turn = 0;
    const auto component = [&] {
        Arrays arrays;
        reader.read(firstPid + turn++ % parameters, arrays);
    };
    const auto [own, rows] = fastest(15, component, [&] {
        const Arrays arrays;
        table.read(firstPid + turn % parameters, startSeconds, minutes, elements<float>(arrays.values),
                   elements<LONG>(arrays.codes), elements<VARIANT_BOOL>(arrays.missing));
    });
    const auto [again, floor] = fastest(41, component, [] {
        const Arrays arrays;
        std::fill_n(elements<float>(arrays.values), minutes, 1.0F);
        std::fill_n(elements<LONG>(arrays.codes), minutes, 1);
        std::fill_n(elements<VARIANT_BOOL>(arrays.missing), minutes, VARIANT_FALSE);
    });
    return {
        {"year_read_over_row_loop", own / rows, over(own * 1e3, rows * 1e3, "ms")},
        {"year_read_over_floor", again / floor, over(again * 1e3, floor * 1e3, "ms")},
        {"file_bytes_per_value", static_cast<double>(bytes) / (static_cast<double>(minutes) * parameters),
         "all five databases, " + std::to_string(parameters) + " parameters"},
    };
}

}  // namespace vtdn::bench

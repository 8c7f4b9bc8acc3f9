#include "bench/year_site.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <random>

#include "com/error.h"
#include "com/variant.h"
#include "common/dates.h"

namespace vtdn::bench {

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

void defineParameters(store::Load& load) {
    std::vector<store::Parameter> list(parameters + emptyParameters);
    for (int p = 0; p < parameters + emptyParameters; ++p) {
        list[p].pid = firstPid + p;
        list[p].name = "Minute " + std::to_string(p);
        list[p].interval = "1m";
    }
    const std::vector<store::MonitorCodeName> codes = {
        {.code = 1, .short_name = "1", .long_name = "Measured"},
        {.code = 6, .short_name = "6", .long_name = "Substitute"}};
    load.replaceMonitorCodes(codes);
    load.replaceParameters(list);
}

void makeSite(const store::SiteConnections& connections, const std::array<Series, parameters>& series) {
    store::Site site = store::Site::create(connections, siteId);
    store::Load load(site);
    defineParameters(load);
    // Minute by minute, as the values come in at a plant.
    for (LONG i = 0; i < minutes; ++i)
        for (int p = 0; p < parameters; ++p)
            load.append(firstPid + p, startSeconds + std::int64_t{i} * 60,
                        {series[p].values[i], series[p].codes[i]});
    load.commit();
}

YearRequest::YearRequest(const Series& series) {
    std::string text;
    for (const float value : series.values) {
        char digits[32];
        if (!text.empty()) text += '\t';
        text.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
    }
    values = com::Bstr(com::fromUtf8(text));
    std::copy_n(series.codes.begin(), minutes, elements<LONG>(codes));
    std::fill_n(elements<LONG>(flags), minutes, 3);
}

OnSite::OnSite(const std::wstring& componentFile, const store::SiteConnections& connections)
    : wrapper_(makeWrapper(componentFile)) {
    const auto bstr = [](const std::string& text) { return com::Bstr(com::fromUtf8(text)); };
    VARIANT_BOOL bound = VARIANT_FALSE;
    com::check(wrapper_->Setup2(bstr(siteId).get(), bstr(connections.alarm).get(),
                                bstr(connections.config).get(), bstr(connections.data).get(),
                                bstr(connections.data_short_term).get(), bstr(connections.realtime).get(),
                                &bound));
    com::Bstr problems;
    com::check(wrapper_->GetAndClearProblemsList(problems.receive()));
    if (!bound) com::throwError(E_FAIL, problems.view());
}

void OnSite::read(LONG pid, Arrays& arrays) const {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_GetDataArray_Single(pid, start, minutes, minute_.get(), 1, &arrays.values,
                                                   &arrays.codes, &arrays.missing, &done));
    if (!done) com::throwError(E_FAIL, L"the year was not read");
}

void OnSite::write(LONG pid, YearRequest& request) const {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_WriteValues(pid, start, minutes, minute_.get(), 1, request.values.get(),
                                           &request.codes, &request.flags, &done));
    if (!done) com::throwError(E_FAIL, L"the year was not written");
}

com::Bstr OnSite::listOfCalibrations() const {
    com::Bstr list;
    com::check(wrapper_->GetListOf75CalPIDs(list.receive()));
    return list;
}

SAFEARRAY* OnSite::listOfDowntimes(std::int64_t first, std::int64_t last) const {
    SAFEARRAY* every = nullptr;
    SAFEARRAY* list = nullptr;
    com::check(wrapper_->GetOccurrences(common::dateOfSeconds(first), common::dateOfSeconds(last),
                                        VARIANT_TRUE, com::Variant::ofBool(false).get(), 0, VARIANT_TRUE,
                                        &every, &list));
    return list;
}

void needEqual(const Arrays& arrays, const Series& series) {
    for (LONG i = 0; i < minutes; ++i)
        if (elements<float>(arrays.values)[i] != series.values[i] ||
            elements<LONG>(arrays.codes)[i] != series.codes[i] ||
            elements<VARIANT_BOOL>(arrays.missing)[i] != VARIANT_FALSE)
            com::throwError(E_FAIL, L"a value that was read differs from what was written");
}

}  // namespace vtdn::bench

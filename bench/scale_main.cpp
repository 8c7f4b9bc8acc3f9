// Measures what grows with the size of the work, in a process of its own: the memory of a year's write, what
// a listed parameter costs when there are many, and a long list of records. Works as the other bench does.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "bench/list.h"
#include "bench/memory.h"
#include "bench/program.h"
#include "bench/timing.h"
#include "bench/year_site.h"
#include "com/error.h"

namespace {

using namespace vtdn;
using namespace vtdn::bench;

constexpr int listType = 3;
constexpr int manyParameters = 10'000;
constexpr int fewParameters = 1'000;

store::SiteConnections siteIn(const std::string& folder) {
    std::filesystem::create_directories(folder);
    return store::SiteConnections::inFolder(folder);
}

/// Beyond what the client holds and the engine's two arrays of a value and a code for each interval.
Figure memoryOfAYear(const std::wstring& componentFile) {
    const auto connections = siteIn("year");
    {
        store::Site site = store::Site::create(connections, siteId);
        store::Load load(site);
        defineParameters(load);
        load.commit();
    }
    const OnSite site(componentFile, connections);
    YearRequest request(makeSeries(1));
    const Memory before = memory();
    site.write(firstEmptyPid, request);
    const Memory after = memory();
    constexpr double megabyte = 1024.0 * 1024.0;
    constexpr double arrays = 2.0 * minutes * 8 / megabyte;
    const double grown = static_cast<double>(after.most - before.now) / megabyte;
    return {"year_write_memory_mb", grown - arrays,
            std::to_string(grown) + " MB in all, " + std::to_string(arrays) + " MB of them the arrays"};
}

void makeCalibrationSite(int count, const store::SiteConnections& connections) {
    store::Site site = store::Site::create(connections, siteId);
    store::Load load(site);
    std::vector<store::Parameter> list(static_cast<std::size_t>(count));
    std::vector<store::SpecialValueEntry> specials;
    for (int i = 0; i < count; ++i) {
        store::Parameter& parameter = list[static_cast<std::size_t>(i)];
        parameter.pid = 100'003'000 + (i / 100) * 100'000 + (i % 100);
        parameter.name = "Analyzer " + std::to_string(i);
        parameter.interval = "1h";
        parameter.parameter_type = listType;
        specials.push_back({parameter.pid, -22, std::string("40CFR75")});
        for (const int flag : {-25, -114, -117, -118}) specials.push_back({parameter.pid, flag, false});
    }
    load.replaceParameters(list);
    load.replaceSpecialValues(specials);
    load.commit();
}

/// What one of many parameters costs over what one of few does, all five filters read.
Figure growthOfLists(const std::wstring& componentFile) {
    const auto few = siteIn("few");
    const auto many = siteIn("many");
    makeCalibrationSite(fewParameters, few);
    makeCalibrationSite(manyParameters, many);
    const OnSite onFew(componentFile, few);
    const OnSite onMany(componentFile, many);
    const auto list = [](const OnSite& site, int count) {
        return [&site, count] {
            const auto text = site.listOfCalibrations();
            if (text.view().size() != static_cast<std::size_t>(count) * 10 - 1)
                com::throwError(E_FAIL, L"a list has another length than expected");
        };
    };
    const auto [many1, few1] = fastest(15, list(onMany, manyParameters), list(onFew, fewParameters));
    const double ofMany = many1 / manyParameters * 1e6;
    const double ofFew = few1 / fewParameters * 1e6;
    return {"list_growth", ofMany / ofFew, over(ofMany, ofFew, "us a parameter")};
}

}  // namespace

int main() {
    return runBench([](const std::wstring& component, const std::wstring& engineFile) {
        const EmbeddedEngine engine(engineFile);
        std::vector<Figure> figures{memoryOfAYear(component), growthOfLists(component)};
        for (Figure& figure : measureList(component)) figures.push_back(std::move(figure));
        return figures;
    });
}

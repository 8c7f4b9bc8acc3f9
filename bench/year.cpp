#include "bench/year.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "bench/component.h"
#include "bench/row_table.h"
#include "bench/timing.h"
#include "bench/year_site.h"
#include "bench/year_write.h"
#include "store/site.h"

namespace vtdn::bench {

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
    const OnSite reader(componentFile, connections);
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
    std::vector<Figure> figures = {
        {"year_read_over_row_loop", own / rows, over(own * 1e3, rows * 1e3, "ms")},
        {"year_read_over_floor", again / floor, over(again * 1e3, floor * 1e3, "ms")},
        {"file_bytes_per_value", static_cast<double>(bytes) / (static_cast<double>(minutes) * parameters),
         "all five databases, " + std::to_string(parameters) + " parameters"},
    };
    for (Figure& figure : measureYearOfWrites(reader, table)) figures.push_back(std::move(figure));
    return figures;
}

}  // namespace vtdn::bench

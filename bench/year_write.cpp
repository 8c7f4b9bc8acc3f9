#include "bench/year_write.h"

#include "bench/timing.h"

namespace vtdn::bench {

std::vector<Figure> measureYearOfWrites(const OnSite& site, RowTable& table) {
    const Series series = makeSeries(100);
    YearRequest request(series);
    // A parameter that has no values yet for each round: what is there already need not be written again.
    LONG pid = firstEmptyPid;
    LONG row = firstEmptyPid;
    const auto [own, rows] = fastest(
        emptyParameters, [&] { site.write(pid++, request); },
        [&] { table.write(row++, startSeconds, series.values, series.codes); });
    for (LONG written = firstEmptyPid; written < pid; ++written) {
        Arrays arrays;
        site.read(written, arrays);
        needEqual(arrays, series);
    }
    return {{"year_write_over_row_loop", own / rows, over(own * 1e3, rows * 1e3, "ms")}};
}

}  // namespace vtdn::bench

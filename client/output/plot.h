// A line chart as SVG: one panel per parameter, one time axis.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "store/interval.h"

namespace vtdn::client {

struct PlotPoint {
    std::optional<double> value;  ///< none leaves a gap
    std::int32_t code = 0;
};

struct PlotSeries {
    std::string title;
    std::string units;
    std::vector<PlotPoint> points;  ///< one per interval
};

struct Plot {
    std::string title;
    store::Time start = 0;
    store::Interval interval = store::Interval::of("h", 1);
    std::vector<PlotSeries> series;
    /// Codes that need no mark; nothing: in each panel the code that most of its values have.
    std::optional<std::set<std::int32_t>> normalCodes;
};

/// The picture as text. A line joins the values of neighbouring intervals and breaks where there is none;
/// intervals with another code than a normal one are marked on a strip below the panel, in one colour per
/// code, with a legend. Long runs are thinned to the lowest and highest value per pixel, which the eye cannot
/// tell from all of them.
std::string plotSvg(const Plot& plot);

}  // namespace vtdn::client

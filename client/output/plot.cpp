#include "client/output/plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "client/output/axis.h"
#include "client/output/svg.h"
#include "client/text/numbers.h"

namespace vtdn::client {

namespace {

constexpr double left = 80;
constexpr double plotWidth = pageWidth - left - rightMargin;
constexpr double panelTitle = 26;
constexpr double panelHeight = 240;
constexpr double stripHeight = 10;
constexpr double axisHeight = 44;
constexpr double legendHeight = 22;
constexpr std::size_t mostMarkedPoints = 200;

constexpr std::string_view lineColour = "#1f5a99";
// Told apart in print and by colour-blind eyes (after Okabe and Ito).
constexpr std::array<std::string_view, 6> codeColours{"#d55e00", "#009e73", "#cc79a7",
                                                      "#e69f00", "#56b4e9", "#000000"};

/// The codes of a panel that are marked, each with its colour. Codes beyond the colours share the last one.
class CodeMarks {
  public:
    CodeMarks(const PlotSeries& series, const std::optional<std::set<std::int32_t>>& normal) {
        std::map<std::int32_t, std::size_t> counts;  // intervals with a value, by code
        for (const PlotPoint& point : series.points)
            if (point.value || point.code != 0) counts[point.code] += point.value ? 1 : 0;
        if (normal) {
            normal_ = *normal;
        } else if (!counts.empty()) {
            const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
            normal_ = {std::max_element(counts.begin(), counts.end(), byCount)->first};
        }
        for (const auto& [code, count] : counts)
            if (!normal_.contains(code)) colours_.emplace(code, colour(colours_.size()));
    }
    /// No colour for a normal code, and for an interval that holds nothing at all.
    [[nodiscard]] std::string_view of(const PlotPoint& point) const {
        if (!point.value && point.code == 0) return {};
        const auto found = colours_.find(point.code);
        return found == colours_.end() ? std::string_view() : found->second;
    }
    [[nodiscard]] const std::map<std::int32_t, std::string_view>& colours() const { return colours_; }
    /// The codes that are not marked, in words.
    [[nodiscard]] std::string normal() const {
        std::string text;
        for (const std::int32_t code : normal_) text += (text.empty() ? "" : ", ") + std::to_string(code);
        return text;
    }

  private:
    static std::string_view colour(std::size_t i) { return codeColours[std::min(i, codeColours.size() - 1)]; }

    std::set<std::int32_t> normal_;
    std::map<std::int32_t, std::string_view> colours_;
};

/// One panel: its place on the page and its scales.
struct Panel {
    const PlotSeries& series;
    const Plot& plot;
    double top;
    store::Time end;
    ValueAxis axis;

    [[nodiscard]] TimeScale scale() const { return {plot.start, end, left}; }
    [[nodiscard]] double x(store::Time time) const { return scale().x(time); }
    [[nodiscard]] double xOf(std::size_t i) const {
        return x(plot.interval.step(plot.start, static_cast<std::int64_t>(i)));
    }
    [[nodiscard]] double y(double value) const {
        return top + panelTitle + panelHeight * (axis.high - value) / (axis.high - axis.low);
    }
    [[nodiscard]] double bottom() const { return top + panelTitle + panelHeight; }
};

/// The lowest and the highest value that share a pixel column, in the order in which they come.
struct Column {
    std::size_t low;
    std::size_t high;
};

class LinePath {
  public:
    explicit LinePath(const Panel& panel) : panel_(panel) {}

    /// The stretch of values from `first` to before `last`, none of which is missing.
    void stretch(std::size_t first, std::size_t last) {
        if (last - first == 1) {
            lone_.push_back(first);
            return;
        }
        bool begun = false;
        for (std::size_t i = first; i < last;) {
            const Column column = takeColumn(i, last);
            point(std::min(column.low, column.high), begun);
            begun = true;
            if (column.low != column.high) point(std::max(column.low, column.high), true);
        }
    }
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Values without a neighbour, which a line cannot show.
    [[nodiscard]] const std::vector<std::size_t>& lone() const { return lone_; }

  private:
    Column takeColumn(std::size_t& i, std::size_t last) const {
        const double pixel = std::floor(panel_.xOf(i) * 2);
        Column column{i, i};
        for (; i < last && std::floor(panel_.xOf(i) * 2) == pixel; ++i) {
            if (value(i) < value(column.low)) column.low = i;
            if (value(i) > value(column.high)) column.high = i;
        }
        return column;
    }
    [[nodiscard]] double value(std::size_t i) const { return *panel_.series.points[i].value; }
    void point(std::size_t i, bool joined) {
        path_ += (joined ? "L" : "M") + coordinate(panel_.xOf(i)) + " " + coordinate(panel_.y(value(i)));
    }

    const Panel& panel_;
    std::string path_;
    std::vector<std::size_t> lone_;
};

void drawValueAxis(Drawing& drawing, const Panel& panel) {
    const ValueAxis& axis = panel.axis;
    const std::string format =
        axis.decimals == 0 ? "#,##0" : "#,##0." + std::string(static_cast<std::size_t>(axis.decimals), '0');
    const bool tooLong = std::max(std::fabs(axis.low), std::fabs(axis.high)) >= 1e9;
    const int count = static_cast<int>(std::lround((axis.high - axis.low) / axis.step));
    for (int i = 0; i <= count; ++i) {
        const double value = axis.low + i * axis.step;
        const double y = panel.y(value);
        drawing.line(left, y, left + plotWidth, y, i == 0 ? "axis" : "grid");
        drawing.text(left - 8, y + 4, "end", "tick",
                     tooLong ? shortestText(value) : formatNumber(value, format));
    }
}

void drawLine(Drawing& drawing, const Panel& panel) {
    LinePath path(panel);
    const auto& points = panel.series.points;
    for (std::size_t i = 0; i < points.size();) {
        if (!points[i].value) {
            ++i;
            continue;
        }
        std::size_t last = i;
        while (last < points.size() && points[last].value) ++last;
        path.stretch(i, last);
        i = last;
    }
    if (!path.path().empty()) drawing.add("<path class=\"line\" d=\"" + path.path() + "\"/>\n");
    for (const std::size_t i : path.lone())
        drawing.dot(panel.xOf(i), panel.y(*points[i].value), 2, lineColour);
}

void drawMarks(Drawing& drawing, const Panel& panel, const CodeMarks& marks) {
    const auto& points = panel.series.points;
    const double y = panel.bottom() + 4;
    std::size_t marked = 0;
    for (const PlotPoint& point : points) marked += marks.of(point).empty() ? 0 : 1;
    for (std::size_t i = 0; i < points.size();) {
        const std::string_view colour = marks.of(points[i]);
        std::size_t last = i + 1;
        while (last < points.size() && marks.of(points[last]) == colour) ++last;
        if (!colour.empty())
            drawing.rect(panel.xOf(i), y, std::max(panel.xOf(last) - panel.xOf(i), 1.0), stripHeight, colour);
        i = last;
    }
    if (marked > mostMarkedPoints) return;
    for (std::size_t i = 0; i < points.size(); ++i)
        if (const std::string_view colour = marks.of(points[i]); points[i].value && !colour.empty())
            drawing.dot(panel.xOf(i), panel.y(*points[i].value), 3, colour);
}

void drawLegend(Drawing& drawing, double y, const CodeMarks& marks) {
    const std::string title = "Monitor codes other than " + marks.normal() + ":";
    double x = left;
    drawing.text(x, y, "start", "tick", title);
    x += 16 + 6.4 * static_cast<double>(title.size());
    for (const auto& [code, colour] : marks.colours()) {
        const std::string label = std::to_string(code);
        if (x + 24 + 8 * static_cast<double>(label.size()) > pageWidth - rightMargin) {
            drawing.text(x, y, "start", "tick", "...");
            return;
        }
        drawing.rect(x, y - 9, 12, 10, colour);
        drawing.text(x + 16, y, "start", "tick", label);
        x += 32 + 8 * static_cast<double>(label.size());
    }
}

ValueAxis axisFor(const PlotSeries& series) {
    double low = 0;
    double high = 0;
    bool any = false;
    for (const PlotPoint& point : series.points) {
        if (!point.value || !std::isfinite(*point.value)) continue;
        low = any ? std::min(low, *point.value) : *point.value;
        high = any ? std::max(high, *point.value) : *point.value;
        any = true;
    }
    // Zero belongs into the picture unless the values keep well away from it.
    if (low > 0 && low < 0.5 * high) low = 0;
    return valueAxis(low, any ? high : 1, 6);
}

double drawPanel(Drawing& drawing, const Panel& panel, const CodeMarks& marks) {
    const PlotSeries& series = panel.series;
    drawing.text(left, panel.top + 16, "start", "panel",
                 series.units.empty() ? series.title : series.title + ", " + series.units);
    drawTimeAxis(drawing, panel.scale(), panel.top + panelTitle, panel.bottom(),
                 panel.bottom() + stripHeight + 20);
    drawValueAxis(drawing, panel);
    drawLine(drawing, panel);
    drawMarks(drawing, panel, marks);
    const bool anyValue = std::any_of(series.points.begin(), series.points.end(),
                                      [](const PlotPoint& point) { return point.value.has_value(); });
    if (!anyValue)
        drawing.text(left + plotWidth / 2, panel.top + panelTitle + panelHeight / 2, "middle", "panel",
                     "no values");
    double bottom = panel.bottom() + stripHeight + axisHeight;
    if (!marks.colours().empty()) {
        drawLegend(drawing, bottom + 8, marks);
        bottom += legendHeight;
    }
    return bottom;
}

}  // namespace

std::string plotSvg(const Plot& plot) {
    Drawing drawing;
    double y = titleHeight;
    for (const PlotSeries& series : plot.series) {
        const auto count = static_cast<std::int64_t>(std::max<std::size_t>(series.points.size(), 1));
        const Panel panel{series, plot, y, plot.interval.step(plot.start, count), axisFor(series)};
        y = drawPanel(drawing, panel, CodeMarks(series, plot.normalCodes));
    }
    return drawing.page(plot.title, left, y + 8);
}

}  // namespace vtdn::client

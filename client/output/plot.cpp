#include "client/output/plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "client/output/axis.h"
#include "client/text/numbers.h"
#include "client/text/times.h"

namespace vtdn::client {

namespace {

// The page, in SVG units.
constexpr double pageWidth = 1000;
constexpr double left = 80;
constexpr double right = 24;
constexpr double plotWidth = pageWidth - left - right;
constexpr double titleHeight = 48;
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

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // XML has no way to write most control characters.
                out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return out;
}

/// A coordinate, to a tenth of a unit.
std::string at(double coordinate) {
    std::string text = formatNumber(coordinate, "0.#");
    return text;
}

class Drawing {
  public:
    void add(std::string_view text) { svg_ += text; }
    void text(double x, double y, std::string_view anchor, std::string_view cls, std::string_view content) {
        svg_ += "<text x=\"" + at(x) + "\" y=\"" + at(y) + "\" text-anchor=\"" + std::string(anchor) + "\"";
        if (!cls.empty()) svg_ += " class=\"" + std::string(cls) + "\"";
        svg_ += ">" + escaped(content) + "</text>\n";
    }
    void line(double x1, double y1, double x2, double y2, std::string_view cls) {
        svg_ += "<line x1=\"" + at(x1) + "\" y1=\"" + at(y1) + "\" x2=\"" + at(x2) + "\" y2=\"" + at(y2) +
                "\" class=\"" + std::string(cls) + "\"/>\n";
    }
    void rect(double x, double y, double width, double height, std::string_view fill) {
        svg_ += "<rect x=\"" + at(x) + "\" y=\"" + at(y) + "\" width=\"" + at(width) + "\" height=\"" +
                at(height) + "\" fill=\"" + std::string(fill) + "\"/>\n";
    }
    void dot(double x, double y, double radius, std::string_view fill) {
        svg_ += "<circle cx=\"" + at(x) + "\" cy=\"" + at(y) + "\" r=\"" + at(radius) + "\" fill=\"" +
                std::string(fill) + "\"/>\n";
    }
    [[nodiscard]] const std::string& svg() const { return svg_; }

  private:
    std::string svg_;
};

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

    [[nodiscard]] double x(store::Time time) const {
        return left +
               plotWidth * static_cast<double>(time - plot.start) / static_cast<double>(end - plot.start);
    }
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
        path_ += (joined ? "L" : "M") + at(panel_.xOf(i)) + " " + at(panel_.y(value(i)));
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

void drawTimeAxis(Drawing& drawing, const Panel& panel) {
    const double y = panel.bottom();
    for (const TimeTick& tick : timeTicks(panel.plot.start, panel.end, 10)) {
        const double x = panel.x(tick.time);
        drawing.line(x, panel.top + panelTitle, x, y, "grid");
        drawing.text(x, y + stripHeight + 20, "middle", "tick", tick.label);
        if (!tick.second.empty()) drawing.text(x, y + stripHeight + 34, "middle", "tick", tick.second);
    }
}

void drawLegend(Drawing& drawing, double y, const CodeMarks& marks) {
    const std::string title = "Monitor codes other than " + marks.normal() + ":";
    double x = left;
    drawing.text(x, y, "start", "tick", title);
    x += 16 + 6.4 * static_cast<double>(title.size());
    for (const auto& [code, colour] : marks.colours()) {
        const std::string label = std::to_string(code);
        if (x + 24 + 8 * static_cast<double>(label.size()) > pageWidth - right) {
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
    drawTimeAxis(drawing, panel);
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

constexpr std::string_view styles =
    "<style>text{font-family:'Segoe UI','Helvetica Neue',Arial,sans-serif;fill:#222}.title{font-size:18px;"
    "font-weight:600}.panel{font-size:14px;font-weight:600}.tick{font-size:12px;fill:#555}.grid{stroke:#"
    "e4e4e4}"
    ".axis{stroke:#888}.line{fill:none;stroke:#1f5a99;stroke-width:1.4;stroke-linejoin:round}</style>\n";

}  // namespace

std::string plotSvg(const Plot& plot) {
    Drawing drawing;
    double y = titleHeight;
    for (const PlotSeries& series : plot.series) {
        const auto count = static_cast<std::int64_t>(std::max<std::size_t>(series.points.size(), 1));
        const Panel panel{series, plot, y, plot.interval.step(plot.start, count), axisFor(series)};
        y = drawPanel(drawing, panel, CodeMarks(series, plot.normalCodes));
    }
    const std::string height = at(y + 8);
    const std::string title = escaped(plot.title);
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 "
        "0 " +
        at(pageWidth) + " " + height + "\" width=\"" + at(pageWidth) + "\" height=\"" + height +
        "\" role=\"img\">\n<title>" + title + "</title>\n";
    svg += styles;
    svg += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    svg += "<text x=\"" + at(left) + "\" y=\"28\" class=\"title\">" + title + "</text>\n";
    svg += drawing.svg();
    return svg + "</svg>\n";
}

}  // namespace vtdn::client

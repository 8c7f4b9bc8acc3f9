#include "client/output/timeline.h"

#include <algorithm>
#include <array>

#include "client/output/svg.h"
#include "client/text/numbers.h"
#include "client/text/times.h"

namespace vtdn::client {

namespace {

constexpr double left = 48;
constexpr double legendHeight = 30;
constexpr double rowTitle = 22;
constexpr double laneHeight = 16;
constexpr double laneGap = 3;
constexpr double rowGap = 14;
constexpr double axisHeight = 44;
constexpr double narrowestBar = 1;
// Bars nearer to each other than this look like one.
constexpr double narrowestGap = 0.5;

constexpr std::array<OccurrenceKind, 2> kinds{OccurrenceKind::excursion, OccurrenceKind::downtime};

/// How a kind is drawn: told apart in print and by colour-blind eyes (after Okabe and Ito).
struct Look {
    std::string_view colour;
    std::string_view hatched;
    std::string_view plural;
};

Look lookOf(OccurrenceKind kind) {
    if (kind == OccurrenceKind::excursion) return {"#d55e00", "url(#hatched-excursion)", "excursions"};
    return {"#0072b2", "url(#hatched-downtime)", "downtime"};
}

std::string_view fillOf(const OccurrenceRun& run) {
    const Look look = lookOf(run.kind);
    return run.said.excludable ? look.hatched : look.colour;
}

std::string patterns() {
    std::string svg = "<defs>\n";
    for (const OccurrenceKind kind : kinds) {
        const std::string colour(lookOf(kind).colour);
        svg += "<pattern id=\"hatched-" + std::string(nameOf(kind)) +
               "\" width=\"5\" height=\"5\" patternUnits=\"userSpaceOnUse\" patternTransform=\"rotate(45)\">"
               "<rect width=\"5\" height=\"5\" fill=\"#ffffff\"/><rect width=\"2.5\" height=\"5\" fill=\"" +
               colour + "\"/></pattern>\n";
    }
    return svg + "</defs>\n";
}

std::string spanText(store::Time from, store::Time to) {
    const bool seconds = from % 60 != 0 || to % 60 != 0;
    return timestampText(from, seconds) + " to " + timestampText(to, seconds);
}

std::string tooltipOf(const OccurrenceRun& run) {
    std::string text(nameOf(run.kind));
    if (run.said.excludable) text += ", excludable";
    text += "\n" + spanText(run.begin, run.end) + ", " +
            counted(static_cast<std::size_t>(run.count), "interval") + " of " + run.interval.text();
    const auto add = [&](std::string_view name, const std::string& said) {
        if (!said.empty()) text += "\n" + std::string(name) + ": " + said;
    };
    add("Category", run.said.category);
    add("Reason", run.said.reason);
    add("Action", run.said.action);
    add("Limit", run.said.limit);
    return text;
}

/// A stretch of a lane that is drawn in one piece: a run, or several that the eye cannot tell apart.
struct Bar {
    const OccurrenceRun* first;
    store::Time begin;
    store::Time end;
    store::Time seconds = 0;  ///< how long its runs last together
    std::size_t runs = 1;

    [[nodiscard]] std::string tooltip() const {
        if (runs == 1) return tooltipOf(*first);
        return counted(runs, nameOf(first->kind)) + (first->said.excludable ? ", excludable" : "") + "\n" +
               spanText(begin, end) + ", " + hoursText(seconds) + " in all";
    }
};

/// The bars of a lane. Those that are excludable and those that count are never drawn as one.
class Lane {
  public:
    Lane(const TimelineRow& row, OccurrenceKind kind, const TimeScale& scale) : kind_(kind), scale_(scale) {
        for (const OccurrenceRun& run : row.runs)
            if (run.kind == kind) add(run);
    }
    [[nodiscard]] bool isEmpty() const { return counted_.empty() && excludable_.empty(); }
    /// "downtime 5 h, 2 h of it excludable".
    [[nodiscard]] std::string summary() const {
        std::string text = std::string(lookOf(kind_).plural) + " " + hoursText(seconds_ + excludableSeconds_);
        if (excludableSeconds_ > 0) text += ", " + hoursText(excludableSeconds_) + " of it excludable";
        return text;
    }
    void draw(Drawing& drawing, double y) const {
        // What counts stands over what is excludable where the two are too near to each other.
        for (const auto* bars : {&excludable_, &counted_})
            for (const Bar& bar : *bars)
                drawing.rect(scale_.x(bar.begin), y, width(bar), laneHeight, fillOf(*bar.first),
                             bar.tooltip());
    }

  private:
    void add(const OccurrenceRun& run) {
        const Bar bar{&run, std::max(run.begin, scale_.from), std::min(run.end, scale_.to)};
        if (bar.end <= bar.begin) return;
        const store::Time lasts = bar.end - bar.begin;
        (run.said.excludable ? excludableSeconds_ : seconds_) += lasts;
        auto& bars = run.said.excludable ? excludable_ : counted_;
        if (!bars.empty() && blurs(bars.back(), bar)) {
            Bar& last = bars.back();
            last.end = bar.end;
            last.seconds += lasts;
            ++last.runs;
        } else {
            bars.push_back(bar);
            bars.back().seconds = lasts;
        }
    }
    [[nodiscard]] double width(const Bar& bar) const {
        return std::max(scale_.x(bar.end) - scale_.x(bar.begin), narrowestBar);
    }
    /// Whether two bars look like one: they stand side by side, and one of them is a mere line.
    [[nodiscard]] bool blurs(const Bar& bar, const Bar& next) const {
        const double gap = scale_.x(next.begin) - scale_.x(bar.begin) - width(bar);
        return gap < narrowestGap && std::min(width(bar), width(next)) <= narrowestBar;
    }

    OccurrenceKind kind_;
    const TimeScale& scale_;
    std::vector<Bar> counted_;
    std::vector<Bar> excludable_;
    store::Time seconds_ = 0;
    store::Time excludableSeconds_ = 0;
};

void drawLegend(Drawing& drawing, double y) {
    double x = left;
    const auto entry = [&](std::string_view fill, std::string_view label) {
        drawing.rect(x, y - 10, 22, 12, fill);
        drawing.text(x + 28, y, "start", "tick", label);
        x += 52 + 6.4 * static_cast<double>(label.size());
    };
    for (const OccurrenceKind kind : kinds) {
        const std::string name(nameOf(kind));
        entry(lookOf(kind).colour, name);
        entry(lookOf(kind).hatched, name + ", excludable");
    }
}

/// Draws a row from `y` down and returns where it ends.
double drawRow(Drawing& drawing, const TimelineRow& row, const TimeScale& scale, double y) {
    std::vector<Lane> lanes;
    std::string summary;
    for (const OccurrenceKind kind : kinds) {
        Lane lane(row, kind, scale);
        if (lane.isEmpty()) continue;
        summary += (summary.empty() ? "" : "; ") + lane.summary();
        lanes.push_back(std::move(lane));
    }
    drawing.text(left, y + 15, "start", "panel", row.title);
    drawing.text(pageWidth - rightMargin, y + 15, "end", "tick", summary.empty() ? "none" : summary);
    y += rowTitle;
    for (const Lane& lane : lanes) {
        lane.draw(drawing, y);
        y += laneHeight + laneGap;
    }
    drawing.line(left, y, pageWidth - rightMargin, y, "axis");
    return y + rowGap;
}

}  // namespace

std::string timelineSvg(const Timeline& timeline) {
    const TimeScale scale{timeline.from, timeline.to, left};
    const double top = titleHeight + legendHeight;
    Drawing rows;
    double y = top;
    for (const TimelineRow& row : timeline.rows) y = drawRow(rows, row, scale, y);
    if (timeline.rows.empty()) {
        rows.text(pageWidth / 2, y + laneHeight, "middle", "panel", "no downtimes and no excursions");
        y += rowTitle + laneHeight;
    }
    Drawing drawing;
    drawing.add(patterns());
    drawLegend(drawing, titleHeight + 6);
    drawTimeAxis(drawing, scale, top, y, y + 16);
    drawing.add(rows.svg());
    return drawing.page(timeline.title, left, y + axisHeight);
}

}  // namespace vtdn::client

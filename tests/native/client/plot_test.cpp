#include "client/output/plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "client/output/axis.h"

namespace vtdn::client {
namespace {

std::size_t countOf(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

/// The drawn line's path data.
std::string pathOf(const std::string& svg) {
    const std::size_t start = svg.find("class=\"line\" d=\"");
    if (start == std::string::npos) return {};
    return svg.substr(start + 16, svg.find('"', start + 16) - start - 16);
}

Plot hourly(std::vector<PlotPoint> points) {
    Plot plot;
    plot.title = "SO2 mass";
    plot.start = store::timeOf({2007, 1, 15, 0, 0, 0});
    plot.series.push_back({"SO2 mass", "lb/hr", std::move(points)});
    return plot;
}

TEST(ValueAxis, HasRoundTicksAroundTheValues) {
    const ValueAxis axis = valueAxis(0, 5680.7, 6);
    EXPECT_EQ(axis.step, 2000);
    EXPECT_EQ(axis.low, 0);
    EXPECT_EQ(axis.high, 6000);
    EXPECT_EQ(axis.decimals, 0);
    const ValueAxis small = valueAxis(0.021, 0.263, 6);
    EXPECT_DOUBLE_EQ(small.step, 0.05);
    EXPECT_EQ(small.decimals, 2);
    for (const auto& [low, high] :
         {std::pair(-3.0, 3.0), {5.0, 5.0}, {0.0, 0.0}, {-1e-12, 1e12}, {-7.0, -7.0}, {1e300, 1.1e300}}) {
        const ValueAxis any = valueAxis(low, high, 6);
        EXPECT_LE(any.low, low + any.step * 1e-6);
        EXPECT_GE(any.high, high - any.step * 1e-6);
        EXPECT_GT(any.step, 0);
        EXPECT_LE((any.high - any.low) / any.step, 8.001);
    }
}

TEST(TimeTicks, StandAtRoundTimesOfTheCalendar) {
    const auto day = store::timeOf({2007, 1, 15, 0, 0, 0});
    const auto hours = timeTicks(day, day + store::secondsPerDay, 10);
    ASSERT_EQ(hours.size(), 9u);
    EXPECT_EQ(hours[0].label, "00:00");
    EXPECT_EQ(hours[0].second, "15 Jan 2007");
    EXPECT_EQ(hours[1].label, "03:00");
    EXPECT_EQ(hours[8].second, "16 Jan 2007");
    const auto year =
        timeTicks(store::timeOf({2007, 1, 1, 0, 0, 0}), store::timeOf({2008, 1, 1, 0, 0, 0}), 10);
    ASSERT_EQ(year.size(), 7u);
    EXPECT_EQ(year[1].label, "Mar");
    EXPECT_EQ(year[6].second, "2008");
    const auto days = timeTicks(day + 100, day + 20 * store::secondsPerDay, 10);
    EXPECT_EQ(days[0].second, "2007");
    EXPECT_TRUE(std::all_of(days.begin(), days.end(),
                            [](const TimeTick& t) { return t.time % store::secondsPerDay == 0; }));
    for (const store::Time span : {1, 7, 61, 3600, 90'000, 86'400 * 40, 86'400 * 800, 86'400 * 20'000})
        EXPECT_LE(timeTicks(day, day + span, 10).size(), 11u) << span;
}

TEST(Plot, TheLineBreaksWhereThereIsNoValue) {
    const std::string svg = plotSvg(hourly({{1, 0}, {2, 0}, {{}, 0}, {3, 0}, {4, 0}, {{}, 0}, {5, 0}}));
    EXPECT_EQ(std::ranges::count(pathOf(svg), 'M'), 2);
    EXPECT_EQ(std::ranges::count(pathOf(svg), 'L'), 2);
    // The last value stands alone: a dot.
    EXPECT_EQ(countOf(svg, "<circle"), 1u);
}

TEST(Plot, OtherCodesThanTheUsualOneAreMarked) {
    const std::string svg = plotSvg(hourly({{1, 1}, {2, 1}, {3, 1}, {4, 2}, {{}, 9}, {{}, 0}}));
    EXPECT_EQ(countOf(svg, "Monitor codes other than"), 1u);
    EXPECT_EQ(countOf(svg, ">2</text>"), 2u);  // a tick of the value axis and the legend
    EXPECT_EQ(countOf(svg, ">9</text>"), 1u);
    EXPECT_EQ(countOf(svg, "<circle"), 1u);  // the value with code 2
    // The usual code is that of the values, however many intervals have none.
    EXPECT_NE(plotSvg(hourly({{1, 2}, {{}, 9}, {{}, 9}})).find("other than 2:"), std::string::npos);
    Plot quiet = hourly({{1, 1}, {2, 2}});
    quiet.normalCodes = {1, 2};
    EXPECT_EQ(countOf(plotSvg(quiet), "Monitor codes other than"), 0u);
}

TEST(Plot, SaysTitleUnitsAndWhenThereIsNothing) {
    const std::string svg = plotSvg(hourly({{{}, 0}, {{}, 0}}));
    EXPECT_NE(svg.find("SO2 mass, lb/hr"), std::string::npos);
    EXPECT_NE(svg.find("no values"), std::string::npos);
    EXPECT_EQ(pathOf(svg), "");
    Plot named = hourly({{1, 0}});
    named.title = "a <b> & \"c\"\x01";
    EXPECT_NE(plotSvg(named).find("a &lt;b&gt; &amp; &quot;c&quot; "), std::string::npos);
}

TEST(Plot, ALongRunKeepsItsExtremesAndStaysSmall) {
    std::vector<PlotPoint> points(525'600);
    for (std::size_t i = 0; i < points.size(); ++i) points[i].value = std::sin(static_cast<double>(i) / 1000);
    points[300'000].value = 50;
    points[400'000].value = -50;
    const std::string svg = plotSvg(hourly(std::move(points)));
    EXPECT_LT(svg.size(), 120'000u);
    // The highest and the lowest value are on the line, at their places between -60 and 60.
    EXPECT_NE(pathOf(svg).find(" 94L"), std::string::npos);
    EXPECT_NE(pathOf(svg).find(" 294L"), std::string::npos);
    EXPECT_NE(svg.find(">60</text>"), std::string::npos);
    EXPECT_NE(svg.find(">-60</text>"), std::string::npos);
}

TEST(Plot, ManyParametersHaveAPanelEach) {
    Plot plot = hourly({{1, 0}, {2, 0}});
    plot.series.push_back({"NOx rate", "lb/mmBtu", {{0.1, 0}, {0.2, 0}}});
    const std::string svg = plotSvg(plot);
    EXPECT_EQ(countOf(svg, "class=\"line\""), 2u);
    EXPECT_NE(svg.find("NOx rate, lb/mmBtu"), std::string::npos);
}

}  // namespace
}  // namespace vtdn::client

// Occurrences: merged into runs, drawn as a timeline, asked for on the command line.
#include <gtest/gtest.h>

#include <algorithm>

#include "client/occurrences/runs.h"
#include "client/output/timeline.h"
#include "client/verbs/occurrence_arguments.h"
#include "usage.h"

namespace vtdn::client {
namespace {

constexpr std::int32_t sulfur = 504030000;
constexpr std::int32_t nitrogen = 505030000;
constexpr std::int32_t sulfurDown = 504038000;
constexpr std::int32_t sulfurHigh = 504039000;
constexpr store::Time hour = 3600;
const store::Time monday = store::timeOf({2007, 1, 8, 0, 0, 0});

OccurrencePart downtime(std::int32_t tag, store::Time hours, const std::string& reason = "",
                        bool excludable = false) {
    OccurrencePart part;
    part.tag = tag;
    part.time = monday + hours * hour;
    part.kind = OccurrenceKind::downtime;
    part.said.pid = sulfurDown;
    part.said.reason = reason;
    part.said.excludable = excludable;
    return part;
}

OccurrencePart excursion(std::int32_t tag, store::Time hours, const std::string& limit = "") {
    OccurrencePart part = downtime(tag, hours);
    part.kind = OccurrenceKind::excursion;
    part.said.pid = sulfurHigh;
    part.said.limit = limit;
    return part;
}

/// "tag kind first hour+count" of every run.
std::vector<std::string> inWords(const std::vector<OccurrenceRun>& runs) {
    std::vector<std::string> words;
    words.reserve(runs.size());
    for (const OccurrenceRun& run : runs)
        words.push_back(std::to_string(run.tag) + " " + std::string(nameOf(run.kind)) + " " +
                        std::to_string((run.begin - monday) / hour) + "+" + std::to_string(run.count));
    return words;
}

std::size_t countOf(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(OccurrenceRuns, AreNeighboursAboutWhichTheSameIsSaid) {
    const std::vector parts{downtime(sulfur, 0),          downtime(sulfur, 1),
                            downtime(sulfur, 3),          downtime(sulfur, 4, "drift"),
                            downtime(sulfur, 5, "drift"), downtime(sulfur, 6, "drift", true),
                            downtime(sulfur, 7)};
    EXPECT_EQ(inWords(mergeRuns(parts)),
              (std::vector<std::string>{"504030000 downtime 0+2", "504030000 downtime 3+1",
                                        "504030000 downtime 4+2", "504030000 downtime 6+1",
                                        "504030000 downtime 7+1"}));
    const auto runs = mergeRuns(parts);
    EXPECT_EQ(runs[0].end, monday + 2 * hour);
    EXPECT_EQ(runs[0].hours(), 2);
    EXPECT_EQ(runs[2].said.reason, "drift");
    EXPECT_TRUE(mergeRuns({}).empty());
}

TEST(OccurrenceRuns, OfSeveralTagsAndKindsDoNotDisturbEachOther) {
    // In order of time, as the engine lists them.
    const std::vector parts{downtime(sulfur, 0), excursion(sulfur, 0),  downtime(nitrogen, 0),
                            downtime(sulfur, 1), downtime(nitrogen, 1), downtime(sulfur, 2),
                            excursion(sulfur, 2)};
    EXPECT_EQ(inWords(mergeRuns(parts)),
              (std::vector<std::string>{"504030000 downtime 0+3", "504030000 excursion 0+1",
                                        "505030000 downtime 0+2", "504030000 excursion 2+1"}));
}

TEST(OccurrenceRuns, GoBeyondTheEndOfADayAndOfAMonth) {
    OccurrencePart january = downtime(sulfur, 0);
    january.interval = store::Interval::parse("1M");
    january.time = store::timeOf({2007, 1, 1, 0, 0, 0});
    OccurrencePart february = january;
    february.time = store::timeOf({2007, 2, 1, 0, 0, 0});
    OccurrencePart minute = downtime(sulfur, 24);
    minute.interval = store::Interval::parse("1m");
    OccurrencePart next = minute;
    next.time += 60;
    const auto runs = mergeRuns(std::vector{january, february, minute, next});
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].end, store::timeOf({2007, 3, 1, 0, 0, 0}));
    EXPECT_EQ(runs[0].count, 2);
    EXPECT_EQ(runs[1].end - runs[1].begin, 120);
    EXPECT_EQ(hoursText(runs[1].end - runs[1].begin), "0.03 h");
    EXPECT_EQ(hoursText(5 * hour), "5 h");
    EXPECT_EQ(hoursText(2500 * hour), "2,500 h");
}

TEST(OccurrenceParts, AreThoseThatTheFilterTakes) {
    store::Occurrence both;
    both.excursion.emplace();
    both.excursion->pid = sulfurHigh;
    both.excursion->limit = "0.5 lb/mmBtu";
    both.downtime.emplace();
    both.downtime->pid = sulfurDown;
    both.downtime->excludable = true;
    const auto found = [&](const PartFilter& filter) {
        std::vector<OccurrencePart> parts;
        addParts(parts, downtime(sulfur, 7), both, filter);
        std::vector<std::int32_t> pids;
        for (const OccurrencePart& part : parts) {
            EXPECT_EQ(part.tag, sulfur);
            EXPECT_EQ(part.time, monday + 7 * hour);
            EXPECT_EQ(part.said.limit, part.kind == OccurrenceKind::excursion ? "0.5 lb/mmBtu" : "");
            pids.push_back(part.said.pid);
        }
        return pids;
    };
    EXPECT_EQ(found({}), (std::vector{sulfurHigh, sulfurDown}));
    EXPECT_EQ(found({true, false, {}}), std::vector{sulfurDown});
    EXPECT_EQ(found({false, true, {}}), std::vector{sulfurHigh});
    EXPECT_EQ(found({true, true, true}), std::vector{sulfurDown});
    EXPECT_EQ(found({true, true, false}), std::vector{sulfurHigh});
    EXPECT_TRUE(found({false, true, true}).empty());
}

Timeline timelineOf(std::vector<TimelineRow> rows, store::Time days) {
    return {"Downtimes of a unit", monday, monday + days * store::secondsPerDay, std::move(rows)};
}

TEST(Timeline, HasARowPerTagWithItsHoursAndALegend) {
    const std::vector sulfurs{downtime(sulfur, 1, "drift"), downtime(sulfur, 2, "drift"),
                              downtime(sulfur, 3, "", true), excursion(sulfur, 5, "0.5 lb/mmBtu")};
    const std::string svg = timelineSvg(
        timelineOf({{"SO2", mergeRuns(sulfurs)}, {"NOx", mergeRuns(std::vector{downtime(nitrogen, 7)})}}, 1));
    EXPECT_NE(svg.find(">SO2</text>"), std::string::npos);
    EXPECT_NE(svg.find(">excursions 1 h; downtime 3 h, 1 h of it excludable</text>"), std::string::npos);
    EXPECT_NE(svg.find(">downtime 1 h</text>"), std::string::npos);
    EXPECT_NE(svg.find(">8 Jan 2007</text>"), std::string::npos);
    for (const char* label : {">downtime</text>", ">downtime, excludable</text>", ">excursion</text>",
                              ">excursion, excludable</text>"})
        EXPECT_EQ(countOf(svg, label), 1u) << label;
    // A bar for each of the four runs, with a tooltip; the picture has a title of its own.
    EXPECT_EQ(countOf(svg, "<title>"), 5u);
    EXPECT_NE(svg.find("<title>downtime\n2007-01-08 01:00 to 2007-01-08 03:00, 2 intervals of 1h\nReason: "
                       "drift</title>"),
              std::string::npos);
    EXPECT_NE(svg.find("Limit: 0.5 lb/mmBtu"), std::string::npos);
    // Excludable bars are hatched: one of them, and one entry of the legend.
    EXPECT_EQ(countOf(svg, "fill=\"url(#hatched-downtime)\""), 2u);
    EXPECT_EQ(countOf(svg, "fill=\"url(#hatched-excursion)\""), 1u);
}

TEST(Timeline, CountsAndDrawsWhatLiesInItsSpan) {
    const auto runs = mergeRuns(
        std::vector{downtime(sulfur, -2), downtime(sulfur, -1), downtime(sulfur, 0), downtime(sulfur, 30)});
    const std::string svg = timelineSvg(timelineOf({{"SO2", runs}}, 1));
    EXPECT_NE(svg.find(">downtime 1 h</text>"), std::string::npos);
    EXPECT_EQ(countOf(svg, "<title>"), 2u);
    EXPECT_NE(svg.find("2007-01-07 22:00 to 2007-01-08 01:00, 3 intervals"), std::string::npos);
    EXPECT_EQ(svg.find("x=\"-"), std::string::npos);
}

TEST(Timeline, OfAYearStaysSmallAndKeepsLongRunsApart) {
    std::vector<OccurrencePart> parts;
    for (store::Time h = 0; h < 365 * 24; h += 2) parts.push_back(downtime(sulfur, h));
    std::string svg = timelineSvg(timelineOf({{"SO2", mergeRuns(parts)}}, 365));
    EXPECT_LT(svg.size(), 20'000u);
    EXPECT_NE(svg.find(">downtime 4,380 h</text>"), std::string::npos);
    EXPECT_NE(svg.find("4380 downtimes"), std::string::npos);

    parts.clear();
    for (store::Time h = 0; h < 1000; ++h)
        if (h != 500) parts.push_back(downtime(sulfur, h, h < 500 ? "first" : "second"));
    svg = timelineSvg(timelineOf({{"SO2", mergeRuns(parts)}}, 365));
    EXPECT_NE(svg.find("Reason: first"), std::string::npos);
    EXPECT_NE(svg.find("Reason: second"), std::string::npos);
}

TEST(Timeline, SaysWhenThereIsNothingAndEscapesWhatIsSaid) {
    EXPECT_NE(timelineSvg(timelineOf({}, 1)).find("no downtimes and no excursions"), std::string::npos);
    const auto runs = mergeRuns(std::vector{downtime(sulfur, 1, "<b> & \"x\"\r\n\x01\xEF\xBF\xBE.")});
    const std::string svg = timelineSvg(timelineOf({{"a <tag>", runs}}, 1));
    EXPECT_NE(svg.find(">a &lt;tag&gt;</text>"), std::string::npos);
    EXPECT_NE(svg.find("Reason: &lt;b&gt; &amp; &quot;x&quot; \n  .</title>"), std::string::npos);
}

OccurrenceQuery queryOf(Options options, std::vector<std::string> operands = {}) {
    Arguments arguments = argumentsOf(options);
    for (std::string& operand : operands) arguments.addOperand(std::move(operand));
    return occurrenceQuery(arguments);
}

TEST(OccurrenceQuery, IsWhatTheOptionsSay) {
    const OccurrenceQuery month = queryOf({{"--month", "2007-02"}});
    EXPECT_EQ(month.first, store::timeOf({2007, 2, 1, 0, 0, 0}));
    EXPECT_EQ(month.last, store::timeOf({2007, 2, 28, 23, 59, 59}));
    EXPECT_TRUE(month.parts.downtimes && month.parts.excursions && !month.byTag);
    EXPECT_EQ(excludeFilter(month.parts), 0);
    EXPECT_TRUE(month.unitsOrTags.empty());
    const OccurrenceQuery day =
        queryOf({{"--day", "2007-01-08"}, {"--downtimes", ""}, {"--counted", ""}, {"--by-tag", ""}},
                {"5", "5-040-3-00-00", "504039000", "0", "19"});
    EXPECT_EQ(day.last - day.first, store::secondsPerDay - 1);
    EXPECT_TRUE(day.parts.downtimes && !day.parts.excursions && day.byTag);
    EXPECT_EQ(excludeFilter(day.parts), 1);
    EXPECT_EQ(day.unitsOrTags, (std::vector<std::int32_t>{5, sulfur, sulfurHigh, 0, 19}));
    EXPECT_EQ(excludeFilter(queryOf({{"--day", "2007-01-08"}, {"--excludable", ""}}).parts), 2);
    EXPECT_FALSE(queryOf({{"--day", "2007-01-08"}, {"--excursions", ""}}).parts.downtimes);
}

TEST(OccurrenceQuery, WhatItDoesNotUnderstandIsAUsageFailure) {
    const auto refusal = [](Options options, std::vector<std::string> operands = {}) {
        return refusalOf([&] { queryOf(options, operands); });
    };
    EXPECT_NE(refusal({}).find("--from is missing"), std::string::npos);
    EXPECT_NE(refusal({{"--from", "2007-01-08"}}).find("--to is missing"), std::string::npos);
    EXPECT_NE(refusal({{"--from", "2007-01-08"}, {"--to", "2007-01-08"}}).find("ends before"),
              std::string::npos);
    for (const Options& options :
         {Options{{"--day", "2007-01-08"}, {"--month", "2007-01"}},
          Options{{"--month", "2007-01"}, {"--to", "2007-02-01"}},
          Options{{"--day", "2007-01-08"}, {"--downtimes", ""}, {"--excursions", ""}},
          Options{{"--day", "2007-01-08"}, {"--excludable", ""}, {"--counted", ""}}})
        EXPECT_NE(refusal(options).find("do not go together"), std::string::npos);
    EXPECT_NE(refusal({{"--month", "January"}}).find("is no month"), std::string::npos);
    for (const char* operand : {"20", "-1", "Barry", "5-040-6-00-00"})
        EXPECT_NE(refusal({{"--day", "2007-01-08"}}, {operand}).find("neither a unit nor a PID"),
                  std::string::npos)
            << operand;
}

TEST(PartChanges, AreWhatIsGiven) {
    EXPECT_TRUE(partChanges(argumentsOf({})).empty());
    const PartChanges changes = partChanges(argumentsOf({{"--reason", ""}, {"--excludable", "no"}}));
    EXPECT_FALSE(changes.empty());
    EXPECT_EQ(changes.reason, "");
    EXPECT_EQ(changes.excludable, false);
    EXPECT_FALSE(changes.category);
    EXPECT_EQ(partChanges(argumentsOf({{"--excludable", "yes"}})).excludable, true);
    EXPECT_NE(refusalOf([] {
                  partChanges(argumentsOf({{"--excludable", "ye"}}));
              }).find("\"yes\""),
              std::string::npos);
}

TEST(PartMeant, IsTheOnlyOneOrTheOneThatWasSaid) {
    store::Occurrence both;
    both.excursion.emplace();
    both.excursion->pid = sulfurHigh;
    both.downtime.emplace();
    both.downtime->pid = sulfurDown;
    const auto meant = [](const store::Occurrence& occurrence, std::int32_t pid, Options options = {}) {
        return partMeant(argumentsOf(options), occurrence, pid);
    };
    EXPECT_EQ(meant(both, sulfurHigh), OccurrenceKind::excursion);
    EXPECT_EQ(meant(both, sulfurDown), OccurrenceKind::downtime);
    EXPECT_EQ(meant(both, sulfur, {{"--downtime", ""}}), OccurrenceKind::downtime);
    EXPECT_EQ(meant(both, sulfurDown, {{"--excursion", ""}}), OccurrenceKind::excursion);
    EXPECT_NE(refusalOf([&] { meant(both, sulfur); }).find("--excursion or --downtime"), std::string::npos);
    EXPECT_NE(refusalOf([&] {
                  meant(both, sulfur, {{"--downtime", ""}, {"--excursion", ""}});
              }).find("do not go together"),
              std::string::npos);
    store::Occurrence one = both;
    one.downtime.reset();
    EXPECT_EQ(meant(one, sulfur), OccurrenceKind::excursion);
    try {
        meant(one, sulfur, {{"--downtime", ""}});
        ADD_FAILURE() << "was accepted";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::refused);
        EXPECT_STREQ(failure.what(), "The occurrence has no downtime.");
    }
}

}  // namespace
}  // namespace vtdn::client

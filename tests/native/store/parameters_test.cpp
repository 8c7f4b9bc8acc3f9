// Parameters: kept as given, and refused when they contradict themselves or each other.

#include "store/parameters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "demo_site.h"
#include "expect_error.h"
#include "store/monitor_codes.h"

namespace vtdn::store::test {
namespace {

// The demo parameters after a change to them.
template <typename Change>
std::string refusedAfter(Change change, ErrorKind kind = ErrorKind::badParameter) {
    std::vector<Parameter> all = demoParameters();
    change(all);
    return expectError(kind, [&] { checkParameters(all); });
}

TEST(Parameters, ComeBackAsTheyWereGiven) {
    DemoSite demo;
    std::vector<Parameter> all = demoParameters();
    all[0].name = std::string("NO\xE2\x82\x93 \0 minute", 14);
    all[0].description = "Outlet; \"wet\"";
    all[0].format = "0.0";
    all[0].units = "ppm";
    all[0].parameter_type = 17;
    all[4].uses.push_back(hourPid);  // a repeat is kept
    all.push_back(constant(590600000, std::string("text")));
    all.push_back(constant(590700000, 0.1));
    all.push_back(constant(590800000, std::int32_t{7}));
    replaceParameters(demo.site.database(DatabaseKind::config), all);
    Site other = demo.reopen();
    EXPECT_EQ(other.parameters().entries().size(), all.size());
    for (const Parameter& p : all) EXPECT_EQ(other.parameters().get(p.pid), p) << p.pid;
}

TEST(Parameters, ChangesOfAnotherConnectionAreSeenAfterAFlush) {
    DemoSite demo;
    Site other = demo.reopen();
    EXPECT_EQ(other.parameters().get(minutePid).name, "Stored");
    std::vector<Parameter> all = demoParameters();
    all[0].name = "Changed";
    replaceParameters(demo.site.database(DatabaseKind::config), all);
    EXPECT_EQ(other.parameters().get(minutePid).name, "Stored");
    other.flushCache();
    EXPECT_EQ(other.parameters().get(minutePid).name, "Changed");
}

TEST(Parameters, AnUnknownOneIsNamedInItsDisplayForm) {
    DemoSite demo;
    EXPECT_FALSE(demo.site.parameters().contains(123456789));
    const std::string sentence =
        expectError(ErrorKind::unknownParameter, [&] { (void)demo.site.parameters().get(123456789); });
    EXPECT_NE(sentence.find("1-234-5-67-89"), std::string::npos);
}

TEST(Parameters, NeedAWellFormedPidANameAndAnInterval) {
    refusedAfter([](auto& all) { all[0].pid = 99'999; });
    refusedAfter([](auto& all) { all[0].pid = 504060000; });  // time-type digit 6
    refusedAfter([](auto& all) { all[0].pid = all[1].pid; });
    refusedAfter([](auto& all) { all[0].name.clear(); });
    refusedAfter([](auto& all) { all[0].interval.clear(); });
    refusedAfter([](auto& all) { all[0].interval = "7d"; });
    refusedAfter([](auto& all) { all[0].interval = "1x"; }, ErrorKind::badInterval);
    refusedAfter([](auto& all) { all[0].interval = "7m"; }, ErrorKind::badInterval);
}

TEST(Parameters, HaveOnlyWhatBelongsToTheirKind) {
    refusedAfter([](auto& all) { all[0].constant = 1.0; });
    refusedAfter([](auto& all) { all[0].formula = "1"; });
    refusedAfter([](auto& all) { all[0].uses = {hourPid}; });
    refusedAfter([](auto& all) { all[0].calculation = Aggregation::sum; });
    refusedAfter([](auto& all) { all[2].constant = std::monostate(); });
    refusedAfter([](auto& all) { all[2].constant = std::numeric_limits<double>::infinity(); });
    refusedAfter([](auto& all) { all[2].constant = std::numeric_limits<float>::quiet_NaN(); });
    refusedAfter([](auto& all) { all[2].uses = {hourPid}; });
    refusedAfter([](auto& all) { all[3].uses.clear(); });
    refusedAfter([](auto& all) { all[3].calculation = Aggregation::none; });
    refusedAfter([](auto& all) { all[3].formula = "[5-040-1-00-00]"; });
}

TEST(Parameters, UseOnlyWhatExists) {
    const std::string sentence = refusedAfter([](auto& all) { all.erase(all.begin()); });
    EXPECT_NE(sentence.find("5-040-1-00-00"), std::string::npos) << sentence;
}

TEST(Parameters, AnAggregateNeedsOneShorterIntervalThatFillsItsOwn) {
    refusedAfter([](auto& all) { all[3].uses = {hourPid}; });
    refusedAfter([](auto& all) { all[3].uses = {limitPid}; });
    refusedAfter([](auto& all) { all[3].uses = {monthPid}; });
    refusedAfter([](auto& all) { all[3].uses = {minutePid, minutePid}; });
    refusedAfter([](auto& all) { all[0].interval = "40m"; });
}

TEST(Parameters, AFormulaAndItsUsesAreTheSameSetOfFittingIntervals) {
    refusedAfter([](auto& all) { all[4].uses = {hourPid, limitPid}; });
    refusedAfter([](auto& all) { all[4].uses.push_back(monthPid); });
    refusedAfter([](auto& all) { all[4].interval = "15m"; });
    refusedAfter([](auto& all) { all[4].formula = "1 +"; }, ErrorKind::badFormula);
    // The minutes have no rule for longer intervals; with one the formula can use them.
    const auto useMinutes = [](auto& all) {
        all[4].formula = "[5-040-1-00-00]";
        all[4].uses = {minutePid};
    };
    refusedAfter(useMinutes);
    std::vector<Parameter> all = demoParameters();
    useMinutes(all);
    all[0].roll_up = Aggregation::maximum;
    EXPECT_NO_THROW(checkParameters(all));
}

TEST(Parameters, ACycleIsRefusedAndItsWayTold) {
    const std::string own = refusedAfter([](auto& all) {
        all[4].formula = "[5-041-3-02-00] + 1";
        all[4].uses = {formulaPid};
    });
    EXPECT_NE(own.find("5-041-3-02-00 uses 5-041-3-02-00"), std::string::npos) << own;
    const std::string two = refusedAfter([](auto& all) {
        all.push_back(computed(504230200, "1h", "[5-041-3-02-00]", {formulaPid}));
        all[4].formula = "[5-042-3-02-00]";
        all[4].uses = {504230200};
    });
    EXPECT_NE(two.find("computed from itself"), std::string::npos) << two;
}

TEST(Parameters, AChainOfCalculationsHasALimit) {
    const auto chain = [](int length) {
        std::vector<Parameter> all{stored(100'130'000, "1h")};
        for (int i = 1; i <= length; ++i) {
            const Pid used = 100'130'000 + (i - 1) * 100'000;
            all.push_back(
                computed(used + 100'000, "1h", ("P(" + std::to_string(used) + ")").c_str(), {used}));
        }
        return all;
    };
    EXPECT_NO_THROW(checkParameters(chain(90)));
    expectError(ErrorKind::badParameter, [&] {
        auto all = chain(200);
        std::reverse(all.begin(), all.end());
        all.front().pid = 100'100'000;  // the deepest is looked at first
        checkParameters(all);
    });
}

TEST(Parameters, NothingChangesWhenOneIsRefused) {
    DemoSite demo;
    std::vector<Parameter> all = demoParameters();
    all[0].name = "Changed";
    all[6].name.clear();
    expectError(ErrorKind::badParameter,
                [&] { replaceParameters(demo.site.database(DatabaseKind::config), all); });
    EXPECT_EQ(demo.reopen().parameters().get(minutePid).name, "Stored");
}

TEST(MonitorCodes, ComeBackAndZeroIsAlwaysKnown) {
    DemoSite demo;
    EXPECT_TRUE(demo.site.monitorCodes().contains(0));
    const std::vector<MonitorCodeName> codes{{1, "OK", "Measured", 1}, {12, "SUB", "Substitute", 500}};
    replaceMonitorCodes(demo.site.database(DatabaseKind::config), codes);
    demo.site.flushCache();
    const MonitorCodeTable& table = demo.site.monitorCodes();
    EXPECT_EQ(table.codes().size(), 3U);
    EXPECT_EQ(table.codes().at(12), codes[1]);
    EXPECT_TRUE(table.contains(0));
    EXPECT_FALSE(table.contains(99));
    EXPECT_EQ(table.rankOf(12), 500);
    EXPECT_EQ(table.rankOf(99), 99);
}

TEST(MonitorCodes, OutsideTheirRangeOrGivenTwiceAreRefused) {
    DemoSite demo;
    Database& config = demo.site.database(DatabaseKind::config);
    for (const std::vector<MonitorCodeName>& codes : {std::vector<MonitorCodeName>{{-1, "", "", 0}},
                                                      {{32'768, "", "", 0}},
                                                      {{5, "a", "", 0}, {5, "b", "", 0}}})
        expectError(ErrorKind::outOfRange, [&] { replaceMonitorCodes(config, codes); });
    EXPECT_EQ(MonitorCodeTable::load(config).codes().size(), 1U);
}

}  // namespace
}  // namespace vtdn::store::test

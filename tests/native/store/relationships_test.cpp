// Relationships: groups of averaging levels, what a level says about itself, and what is refused.

#include "store/relationships.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "demo_site.h"
#include "expect_error.h"

namespace vtdn::store::test {
namespace {

constexpr Pid rawPid = 601010000;      // stored, 1m
constexpr Pid quarterPid = 601020000;  // average of the minutes, 15m
constexpr Pid hourlyPid = 601030000;   // average of the quarters, 1h
constexpr Pid dailyPid = 601040000;    // maximum of the hours, 1d
constexpr Pid outsidePid = 602030000;  // stored, 1h, of another quantity

std::vector<Parameter> levels() {
    return {stored(rawPid, "60s"), aggregate(quarterPid, "15m", Aggregation::average, rawPid),
            aggregate(hourlyPid, "60m", Aggregation::average, quarterPid),
            aggregate(dailyPid, "24h", Aggregation::maximum, hourlyPid), stored(outsidePid, "1h")};
}

const std::vector<Relationship> chain{{rawPid, quarterPid}, {quarterPid, hourlyPid}, {hourlyPid, dailyPid}};

std::string refused(const std::vector<Relationship>& relationships, std::vector<Parameter> parameters) {
    return expectError(ErrorKind::badParameter,
                       [&] { checkRelationships(relationships, ParameterSet(std::move(parameters))); });
}

struct RelatedSite : DemoSite {
    RelatedSite() {
        replaceParameters(config(), levels());
        replaceRelationships(config(), chain);
        site.flushCache();
    }
    Database& config() { return site.database(DatabaseKind::config); }
};

TEST(Relationships, EachLevelSaysItsOwnInterval) {
    RelatedSite demo;
    Site other = demo.reopen();
    const auto said = [&](Pid pid) {
        const ParameterRelationship* r = other.relationship(pid);
        return r == nullptr ? "none" : std::to_string(r->interval_count) + r->interval_unit;
    };
    EXPECT_EQ(said(rawPid), "1n");
    EXPECT_EQ(said(quarterPid), "15n");
    EXPECT_EQ(said(hourlyPid), "1h");
    EXPECT_EQ(said(dailyPid), "1d");
    EXPECT_EQ(said(outsidePid), "none");
    expectError(ErrorKind::unknownParameter, [&] { (void)other.relationship(123456789); });
    std::vector<Pid> pids;
    for (const auto& [pid, r] : other.relationships().relationships()) pids.push_back(pid);
    EXPECT_EQ(pids, (std::vector<Pid>{rawPid, quarterPid, hourlyPid, dailyPid}));
}

TEST(Relationships, IntervalsAreSaidInTheLargestUnitThatDividesThem) {
    for (const auto& [interval, count, unit] : std::vector<std::tuple<const char*, int, const char*>>{
             {"120s", 2, "n"}, {"90m", 90, "n"}, {"8h", 8, "h"}, {"720m", 12, "h"}}) {
        DemoSite demo;
        Database& config = demo.site.database(DatabaseKind::config);
        replaceParameters(config, std::vector<Parameter>{stored(rawPid, "1m"), stored(hourlyPid, interval)});
        replaceRelationships(config, std::vector<Relationship>{{hourlyPid, rawPid}});
        demo.site.flushCache();
        EXPECT_EQ(demo.site.relationship(hourlyPid)->interval_count, count);
        EXPECT_EQ(demo.site.relationship(hourlyPid)->interval_unit, unit);
    }
}

TEST(Relationships, TheDetailListsTheLevelsOfTheGroupFromTheShortestOn) {
    RelatedSite demo;
    std::vector<Parameter> all = levels();
    all[0].units = "lb/hr";
    constexpr char name[] = "<\"SO2\" & 'x'>\t\r\n\0\x01 \xF0\x9F\x8F\xAD \xEF\xBF\xBF";
    all[0].name = std::string(name, sizeof name - 1);
    replaceParameters(demo.config(), all);
    // In any order and direction: what counts is who is connected.
    replaceRelationships(
        demo.config(),
        std::vector<Relationship>{{dailyPid, hourlyPid}, {rawPid, dailyPid}, {hourlyPid, quarterPid}});
    demo.site.flushCache();
    const std::string expected =
        "<Relationship>"
        "<Parameter PID=\"601010000\" Name=\"&lt;&quot;SO2&quot; &amp; "
        "'x'&gt;&#9;&#13;&#10;\xEF\xBF\xBD\xEF\xBF\xBD "
        "\xF0\x9F\x8F\xAD \xEF\xBF\xBD\" IntervalCount=\"1\" IntervalUnit=\"n\" Units=\"lb/hr\" "
        "Computation=\"stored\"/>"
        "<Parameter PID=\"601020000\" Name=\"Aggregate\" IntervalCount=\"15\" IntervalUnit=\"n\" Units=\"\" "
        "Computation=\"average\" SourcePID=\"601010000\"/>"
        "<Parameter PID=\"601030000\" Name=\"Aggregate\" IntervalCount=\"1\" IntervalUnit=\"h\" Units=\"\" "
        "Computation=\"average\" SourcePID=\"601020000\"/>"
        "<Parameter PID=\"601040000\" Name=\"Aggregate\" IntervalCount=\"1\" IntervalUnit=\"d\" Units=\"\" "
        "Computation=\"maximum\" SourcePID=\"601030000\"/>"
        "</Relationship>";
    for (const Pid pid : {rawPid, quarterPid, hourlyPid, dailyPid})
        EXPECT_EQ(*demo.site.relationship(pid)->detail_xml, expected);
}

TEST(Relationships, GroupsThatNoRowConnectsAreApart) {
    RelatedSite demo;
    std::vector<Parameter> all = levels();
    all.push_back(stored(602010000, "1m"));
    replaceParameters(demo.config(), all);
    std::vector<Relationship> two = chain;
    two.push_back({outsidePid, 602010000});
    replaceRelationships(demo.config(), two);
    demo.site.flushCache();
    const std::string& first = *demo.site.relationship(rawPid)->detail_xml;
    const std::string& second = *demo.site.relationship(outsidePid)->detail_xml;
    EXPECT_EQ(first.find("602"), std::string::npos) << first;
    EXPECT_EQ(second.find("601"), std::string::npos) << second;
    EXPECT_LT(second.find("602010000"), second.find("602030000")) << "the shorter interval first";
}

TEST(Relationships, AreBetweenTwoExistingParametersOfDifferentIntervalsAndGivenOnce) {
    const std::string missing = refused({{rawPid, 123456789}}, levels());
    EXPECT_NE(missing.find("1-234-5-67-89"), std::string::npos) << missing;
    refused({{123456789, rawPid}}, levels());
    refused({{rawPid, rawPid}}, levels());
    refused({{rawPid, quarterPid}, {rawPid, quarterPid}}, levels());
    refused({{rawPid, quarterPid}, {quarterPid, rawPid}}, levels());
    auto all = levels();
    all.push_back(stored(602010000, "1m"));
    refused({{rawPid, 602010000}}, all);
}

TEST(Relationships, AreBetweenAveragingLevels) {
    for (const char* interval : {"90s", "1s", "1M", "3M"}) {
        auto all = levels();
        all.push_back(stored(602010000, interval));
        refused({{602010000, outsidePid}}, all);
    }
    auto all = levels();
    Parameter occurrence = stored(602000000, "");
    occurrence.io_type = io_type::occurrence;
    all.push_back(occurrence);
    refused({{602000000, outsidePid}}, all);
    all.back() = constant(602000000, 1.5);
    refused({{602000000, outsidePid}}, all);
    all.back().interval = "1m";
    refused({{602000000, outsidePid}}, all);
}

TEST(Relationships, ACalculatedLevelAggregatesAnotherOneOfItsGroup) {
    const std::string other = refused({{quarterPid, hourlyPid}}, levels());
    EXPECT_NE(other.find("6-010-2-00-00"), std::string::npos)
        << "the quarters come from the minutes: " << other;
    refused({{outsidePid, dailyPid}}, levels());
    auto all = levels();
    all.push_back(computed(602000200, "1h", "[6-020-3-00-00] * 2", {outsidePid}));
    refused({{602000200, dailyPid}, {hourlyPid, dailyPid}, {quarterPid, dailyPid}, {rawPid, dailyPid}}, all);
    EXPECT_NO_THROW(checkRelationships(chain, ParameterSet(levels())));
    EXPECT_NO_THROW(checkRelationships({}, ParameterSet(levels())));
}

TEST(Relationships, OfOneQuantityMayHaveTwoLevelsOfOneLength) {
    auto all = levels();
    all.push_back(aggregate(601130000, "1h", Aggregation::maximum, rawPid));
    std::vector<Relationship> rows = chain;
    rows.push_back({rawPid, 601130000});
    EXPECT_NO_THROW(checkRelationships(rows, ParameterSet(all)));
}

TEST(Relationships, AreReplacedWholeOrNotAtAllAndGoWithTheirParameters) {
    RelatedSite demo;
    const auto count = [&] { return demo.config().queryNumber("SELECT count(*) FROM relationship"); };
    expectError(ErrorKind::badParameter, [&] {
        replaceRelationships(demo.config(),
                             std::vector<Relationship>{{rawPid, outsidePid}, {rawPid, rawPid}});
    });
    EXPECT_EQ(count(), 3);
    replaceRelationships(demo.config(), std::vector<Relationship>{{rawPid, outsidePid}});
    EXPECT_EQ(count(), 1);
    replaceParameters(demo.config(), levels());
    EXPECT_EQ(count(), 0);
}

// Whether two parameters share a group, by walking the rows.
bool connected(const std::vector<Relationship>& rows, Pid from, Pid to) {
    std::vector<Pid> reached{from};
    for (std::size_t i = 0; i < reached.size(); ++i)
        for (const Relationship& r : rows)
            for (const auto& [a, b] : {std::pair(r.pid, r.related), std::pair(r.related, r.pid)})
                if (a == reached[i] && std::find(reached.begin(), reached.end(), b) == reached.end())
                    reached.push_back(b);
    return std::find(reached.begin(), reached.end(), to) != reached.end();
}

TEST(Relationships, GroupsAreWhatIsConnectedInRandomGraphs) {
    std::mt19937 random(23);
    const auto pidOf = [](int i) { return Pid{610000000 + i * 100000 + (i % 2 == 0 ? 10000 : 30000)}; };
    constexpr int nodes = 14;
    for (int trial = 0; trial < 30; ++trial) {
        DemoSite demo;
        Database& config = demo.site.database(DatabaseKind::config);
        std::vector<Parameter> all;
        all.reserve(nodes);
        for (int i = 0; i < nodes; ++i) all.push_back(stored(pidOf(i), i % 2 == 0 ? "1m" : "1h"));
        std::vector<Relationship> rows;
        for (int a = 0; a < nodes; a += 2)
            for (int b = 1; b < nodes; b += 2)
                if (random() % 6 == 0)
                    rows.push_back(random() % 2 == 0 ? Relationship{pidOf(a), pidOf(b)}
                                                     : Relationship{pidOf(b), pidOf(a)});
        std::shuffle(rows.begin(), rows.end(), random);
        replaceParameters(config, all);
        replaceRelationships(config, rows);
        demo.site.flushCache();
        for (int a = 0; a < nodes; ++a) {
            const ParameterRelationship* r = demo.site.relationship(pidOf(a));
            for (int b = 0; b < nodes; ++b) {
                const bool together =
                    r != nullptr &&
                    r->detail_xml->find("PID=\"" + std::to_string(pidOf(b)) + "\"") != std::string::npos;
                const bool expected = a == b ? r != nullptr : connected(rows, pidOf(a), pidOf(b));
                ASSERT_EQ(together, expected) << a << " and " << b;
            }
        }
    }
}

TEST(Relationships, RowsThatNobodyWroteAreDamage) {
    for (const char* change : {"related_pid = 123456789", "related_pid = pid", "pid = 2147483648"}) {
        RelatedSite demo;
        demo.config().execute("PRAGMA foreign_keys = OFF");
        demo.config().execute(
            ("UPDATE relationship SET " + std::string(change) + " WHERE pid = 601010000").c_str());
        const std::string sentence =
            expectError(ErrorKind::databaseDamaged, [&] { (void)demo.site.relationship(rawPid); });
        EXPECT_NE(sentence.find("config.db"), std::string::npos) << sentence;
    }
}

}  // namespace
}  // namespace vtdn::store::test

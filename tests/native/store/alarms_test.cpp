// The alarm log: what was written is there, newest first, for every program.

#include "store/alarms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "child.h"
#include "demo_site.h"
#include "expect_error.h"
#include "store/value.h"

namespace vtdn::store::test {
namespace {

Alarm alarmAt(Time time, std::string message = "text") {
    return {0, "DEMO", time, std::move(message), "category", 2, "group", "source"};
}

std::vector<std::string> messages(const std::vector<Alarm>& alarms) {
    std::vector<std::string> all;
    all.reserve(alarms.size());
    for (const Alarm& alarm : alarms) all.push_back(alarm.message);
    return all;
}

using Texts = std::vector<std::string>;

TEST(Alarms, ComeBackAsTheyWereGivenAfterARestart) {
    DemoSite demo;
    std::vector<Alarm> given;
    for (std::int32_t severity = 0; severity <= highestSeverity; ++severity)
        given.push_back({99, "any site", 1000 + severity, std::string("a\0b", 3), "\xF0\x9F\x8F\xAD",
                         severity, std::string(), std::string(longestText, 'x')});
    given.push_back({0, "", earliestTime, "", "", 0, "", ""});
    given.push_back(
        {0, std::string("\0", 1), latestTime, "line 1\r\nline 2\t", "'; DROP TABLE alarm; --", 4, "", ""});
    for (Alarm& alarm : given) alarm.id = demo.site.writeAlarm(alarm);
    EXPECT_EQ(given[0].id, 1) << "the id that was given is not looked at";
    std::sort(given.begin(), given.end(), [](const Alarm& a, const Alarm& b) { return a.time > b.time; });
    EXPECT_EQ(demo.reopen().alarms(), given);
}

TEST(Alarms, OfASeverityOrATimeOutOfRangeOrTooMuchTextAreRefused) {
    DemoSite demo;
    const auto refused = [&](ErrorKind kind, auto change) {
        Alarm alarm = alarmAt(0);
        change(alarm);
        return expectError(kind, [&] { demo.site.writeAlarm(alarm); });
    };
    for (const std::int32_t severity : {-1, 5, 2'147'483'647, -2'147'483'647 - 1}) {
        const std::string sentence =
            refused(ErrorKind::outOfRange, [&](Alarm& alarm) { alarm.severity = severity; });
        EXPECT_NE(sentence.find("severity " + std::to_string(severity)), std::string::npos) << sentence;
    }
    for (const Time time : {earliestTime - 1, latestTime + 1})
        refused(ErrorKind::outOfRange, [&](Alarm& alarm) { alarm.time = time; });
    for (auto member : {&Alarm::site_id, &Alarm::message, &Alarm::category, &Alarm::group, &Alarm::source})
        refused(ErrorKind::badValue,
                [&](Alarm& alarm) { alarm.*member = std::string(longestText + 1, 'x'); });
    EXPECT_TRUE(demo.site.alarms().empty());
}

TEST(Alarms, AreNewestFirstAndThoseOfOneTimeInTheOppositeOrderOfWriting) {
    DemoSite demo;
    for (const auto& [time, message] :
         std::vector<std::pair<Time, std::string>>{{20, "c"}, {10, "a"}, {30, "e"}, {20, "d"}, {10, "b"}})
        demo.site.writeAlarm(alarmAt(time, message));
    EXPECT_EQ(messages(demo.site.alarms()), (Texts{"e", "d", "c", "b", "a"}));
    EXPECT_EQ(messages(demo.site.alarms({.limit = 3})), (Texts{"e", "d", "c"}));
    EXPECT_EQ(messages(demo.site.alarms({.limit = 0})), Texts());
    EXPECT_EQ(messages(demo.site.alarms({.from = 20})), (Texts{"e", "d", "c"}));
    EXPECT_EQ(messages(demo.site.alarms({.to = 20})), (Texts{"b", "a"})) << "the end is not of the span";
    EXPECT_EQ(messages(demo.site.alarms({.from = 20, .to = 30, .limit = 1})), (Texts{"d"}));
    EXPECT_EQ(messages(demo.site.alarms({.from = 20, .to = 20})), Texts());
    expectError(ErrorKind::outOfRange, [&] { (void)demo.site.alarms({.from = 20, .to = 19}); });
    expectError(ErrorKind::outOfRange, [&] { (void)demo.site.alarms({.limit = -1}); });
}

TEST(Alarms, AgreeWithASortedListAfterRandomWrites) {
    DemoSite demo;
    demo.site.database(DatabaseKind::alarm).execute("PRAGMA synchronous = OFF");
    std::mt19937 random(62);
    std::vector<Alarm> model;
    for (int i = 0; i < 300; ++i) {
        Alarm alarm = alarmAt(static_cast<Time>(random() % 50) - 25, std::to_string(i));
        alarm.severity = static_cast<std::int32_t>(random() % 5);
        alarm.id = demo.site.writeAlarm(alarm);
        model.insert(model.begin(), alarm);
    }
    std::stable_sort(model.begin(), model.end(),
                     [](const Alarm& a, const Alarm& b) { return a.time > b.time; });
    for (int trial = 0; trial < 100; ++trial) {
        const Time from = static_cast<Time>(random() % 60) - 30;
        const Time to = from + static_cast<Time>(random() % 40);
        const auto limit = static_cast<std::int32_t>(random() % 60);
        std::vector<Alarm> expected;
        for (const Alarm& alarm : model)
            if (alarm.time >= from && alarm.time < to && expected.size() < static_cast<std::size_t>(limit))
                expected.push_back(alarm);
        ASSERT_EQ(demo.site.alarms({from, to, limit}), expected) << from << " to " << to;
    }
}

TEST(Alarms, OfSeveralProgramsAreAllThere) {
    DemoSite demo;
    const SiteConnections connections = SiteConnections::inFolder(demo.folder.path());
    { const Site gone = std::move(demo.site); }
    std::array<pid_t, 4> children{};
    for (std::size_t program = 0; program < children.size(); ++program)
        children[program] = startChild([&] {
            Site site(connections, "DEMO");
            for (int i = 0; i < 40; ++i) site.writeAlarm(alarmAt(i, std::to_string(program)));
        });
    for (const pid_t child : children) EXPECT_TRUE(succeeded(child));
    const Texts all = messages(Site(connections, "DEMO").alarms());
    ASSERT_EQ(all.size(), 160U);
    for (std::size_t program = 0; program < children.size(); ++program)
        EXPECT_EQ(std::count(all.begin(), all.end(), std::to_string(program)), 40);
}

TEST(Alarms, RowsThatNobodyWroteAreDamage) {
    for (const char* change : {"severity = 5", "severity = -1", "severity = 'x'", "time = 'x'", "time = NULL",
                               "time = 1e300", "time = 999999999999", "message = NULL", "message = 7",
                               "category = x'41'", "alarm_group = 1.5", "source = NULL", "site_id = 1"}) {
        DemoSite demo;
        demo.site.writeAlarm(alarmAt(0));
        Database& db = demo.site.database(DatabaseKind::alarm);
        // The table without what keeps such rows out.
        db.execute(
            "CREATE TABLE loose (id, site_id, time, message, category, severity, alarm_group, source);"
            "INSERT INTO loose SELECT * FROM alarm; DROP TABLE alarm; ALTER TABLE loose RENAME TO alarm;");
        db.execute(("UPDATE alarm SET " + std::string(change)).c_str());
        const std::string sentence =
            expectError(ErrorKind::databaseDamaged, [&] { (void)demo.site.alarms(); });
        EXPECT_NE(sentence.find("alarm.db"), std::string::npos) << change << ": " << sentence;
    }
}

TEST(Alarms, InALogThatStaysLockedAreRefused) {
    DemoSite demo;
    Site other(SiteConnections::inFolder(demo.folder.path()), "DEMO", {.busy_ms = 50});
    Database& held = demo.site.database(DatabaseKind::alarm);
    held.execute("BEGIN IMMEDIATE");
    EXPECT_TRUE(other.alarms().empty()) << "readers do not wait for a writer";
    expectError(ErrorKind::databaseLocked, [&] { other.writeAlarm(alarmAt(0)); });
    held.execute("ROLLBACK");
    other.writeAlarm(alarmAt(0));
    EXPECT_EQ(demo.site.alarms().size(), 1U);
}

}  // namespace
}  // namespace vtdn::store::test

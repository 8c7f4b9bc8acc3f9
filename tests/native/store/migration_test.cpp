// Files of an older version become current ones on opening, in one step, with all that they hold.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>

#include "child.h"
#include "expect_error.h"
#include "old_files.h"
#include "point_site.h"
#include "store/error.h"
#include "store/schema.h"

namespace vtdn::store::test {
namespace {

constexpr std::array newerFiles{"config.db", "alarm.db", "data.db", "data_short_term.db"};

std::int64_t currentVersionOf(std::string_view name) {
    return currentVersion(name == "config.db"  ? DatabaseKind::config
                          : name == "alarm.db" ? DatabaseKind::alarm
                                               : DatabaseKind::data);
}

// A site whose databases are of version 1, where there is another.
struct OldSite {
    TempFolder folder;
    SiteConnections connections = SiteConnections::inFolder(folder.path());

    OldSite() {
        { const Site made = Site::create(connections, "DEMO"); }
        putOld("config.db", configVersion1);
        putOld("alarm.db", alarmVersion1);
        putOld("data.db", dataVersion1);
        putOld("data_short_term.db", dataShortTermVersion1);
    }
    void putOld(const char* name, const char* script) const {
        removeDatabase(folder.file(name));
        makeOld(folder.file(name), script);
    }
    [[nodiscard]] std::int64_t query(const char* name, const char* sql) const {
        return Database(folder.file(name), {}).queryNumber(sql);
    }
};

TEST(Migration, BringsOldFilesUpToDateWithAllThatTheyHold) {
    const OldSite old;
    {
        Site site(old.connections, "DEMO");
        EXPECT_EQ(site.parameters().entries().size(), 4U);
        EXPECT_EQ(site.parameters().get(minutePid).units, "ppm");
        EXPECT_EQ(site.parameters().get(minutePid).parameter_type, 3);
        EXPECT_EQ(site.parameters().get(averagePid).uses, std::vector<Pid>{minutePid});
        EXPECT_EQ(site.parameters().get(limitPid).constant, Value(0.5F));
        EXPECT_EQ(site.monitorCodes().codes().at(12).long_name, "Substitute");
        EXPECT_EQ(site.specialValue(minutePid, 1), SpecialValue());
        EXPECT_TRUE(site.relationships().relationships().empty());
        EXPECT_EQ(site.unitName(5), "");
        EXPECT_TRUE(site.parameterCodes().codes().empty());
        EXPECT_TRUE(site.alarms().empty());
        const Points hours = site.dataPoints(hourPid, hour, earliestTime, latestTime);
        EXPECT_EQ(hours, (Points{{at(1), {1.5F, 3}, "", ""}}));
        const Points minutes = site.dataPoints(minutePid, minute, earliestTime, latestTime);
        EXPECT_EQ(minutes, (Points{{at(1), {1.5F, 3}, "", ""}}));
        EXPECT_TRUE(site.check().empty());
    }
    for (const char* name : newerFiles)
        EXPECT_EQ(old.query(name, "PRAGMA user_version"), currentVersionOf(name)) << name;
}

TEST(Migration, WhatIsNewWorksOnAnOldFile) {
    const OldSite old;
    {
        Site site(old.connections, "DEMO");
        Load load(site);
        load.replaceSpecialValues(std::vector<SpecialValueEntry>{{minutePid, -22, std::string("40CFR75")}});
        load.replaceRelationships(std::vector<Relationship>{{minutePid, averagePid}});
        load.replaceUnits(std::vector<UnitName>{{5, "Boiler"}});
        load.replaceParameterCodes(std::vector<ParameterCodeName>{{3, "SO2", "Sulfur dioxide"}});
        load.commit();
        site.writeAlarm({0, "DEMO", 0, "text", "", 4, "", ""});
        site.setExtra(hourPid, hour, at(1), "hour", editor);
        site.setExtra(minutePid, minute, at(2), "minute", editor);
    }
    Site site(old.connections, "DEMO");
    EXPECT_EQ(site.specialValue(minutePid, -22), SpecialValue(std::string("40CFR75")));
    EXPECT_EQ(site.relationships().relationships().size(), 2U);
    EXPECT_EQ(site.unitName(5), "Boiler");
    EXPECT_EQ(site.parameterCodes().codes().at(3).short_name, "SO2");
    EXPECT_EQ(site.alarms().size(), 1U);
    const Points hours = site.dataPoints(hourPid, hour, earliestTime, latestTime);
    EXPECT_EQ(hours, (Points{{at(1), {1.5F, 3}, "", "hour"}}));
    const Points minutes = site.dataPoints(minutePid, minute, earliestTime, latestTime);
    EXPECT_EQ(minutes, (Points{{at(1), {1.5F, 3}, "", ""}, {at(2), {}, "", "minute"}}));
}

TEST(Migration, DataFilesOfTheSecondVersionKeepTheirTexts) {
    const OldSite old;
    old.putOld("data.db", dataVersion2);
    const std::string downtime = "<Occurrence><Downtime PID=\"504030600\" Excludable=\"0\"/></Occurrence>";
    Site site(old.connections, "DEMO");
    const auto points = [&] { return site.dataPoints(hourPid, hour, earliestTime, latestTime); };
    EXPECT_EQ(points(), (Points{{at(1), {1.5F, 3}, "", "note"}, {at(2), {}, downtime, "note"}}));
    EXPECT_TRUE(site.check().empty());
    const auto listed = [&] { return site.occurrences({.first = at(0), .last = at(5)}); };
    EXPECT_EQ(listed().rows, (std::vector<OccurrenceRow>{{hourPid, hour, at(2), {}, downtime}}))
        << "a text from before there were summaries is looked into";
    EXPECT_TRUE(listed().damages.empty());
    EXPECT_TRUE(site.edits().empty());
    site.setExtra(hourPid, hour, at(2), "another", editor);
    site.saveDataPoint({hourPid, hour, at(1), {}, {}, false, excursionText("fan"), editor});
    EXPECT_EQ(points(),
              (Points{{at(1), {1.5F, 3}, excursionText("fan"), "note"}, {at(2), {}, downtime, "another"}}));
    EXPECT_EQ(listed().rows.size(), 2U);
    EXPECT_EQ(site.edits().size(), 2U);
    EXPECT_TRUE(site.check().empty());
}

TEST(Migration, ANewFileAndAMigratedOneHaveTheSameTables) {
    const OldSite old;
    const DemoSite fresh;
    { const Site site(old.connections, "DEMO"); }
    for (const char* name : newerFiles) {
        const auto tables = [name](const TempFolder& folder) {
            Database db(folder.file(name), {});
            Statement rows(db, "SELECT name || ' ' || sql FROM sqlite_schema WHERE sql IS NOT NULL");
            std::vector<std::string> all;
            while (rows.step()) all.push_back(rows.text(0));
            std::sort(all.begin(), all.end());
            return all;
        };
        EXPECT_EQ(tables(old.folder), tables(fresh.folder)) << name;
    }
}

TEST(Migration, OneThatFailsHalfWayLeavesTheFileAsItWas) {
    const OldSite old;
    Database(old.folder.file("config.db"), {}).execute("CREATE TABLE unit (x)");  // in the way
    EXPECT_THROW((void)Site(old.connections, "DEMO"), Error);
    EXPECT_EQ(old.query("config.db", "PRAGMA user_version"), 1);
    EXPECT_EQ(old.query("config.db", "SELECT count(*) FROM sqlite_schema WHERE name = 'special_value'"), 0);
    Database(old.folder.file("config.db"), {}).execute("DROP TABLE unit");
    EXPECT_NO_THROW((void)Site(old.connections, "DEMO"));
}

TEST(Migration, WaitsForAnotherProgramAndIsRefusedAfterTheWait) {
    const OldSite old;
    Database other(old.folder.file("config.db"), {});
    other.execute("BEGIN IMMEDIATE");
    const std::string sentence =
        expectError(ErrorKind::databaseLocked, [&] { (void)Site(old.connections, "DEMO", {.busy_ms = 50}); });
    EXPECT_NE(sentence.find("config.db"), std::string::npos) << sentence;
    other.execute("ROLLBACK");
    EXPECT_NO_THROW((void)Site(old.connections, "DEMO", {.busy_ms = 50}));
}

TEST(Migration, ProgramsThatOpenAnOldSiteAtOnceAllSucceed) {
    for (int trial = 0; trial < 5; ++trial) {
        const OldSite old;
        std::array<pid_t, 6> children{};
        for (pid_t& child : children)
            child = startChild([&] { (void)Site(old.connections, "DEMO").alarms(); });
        for (const pid_t child : children) EXPECT_TRUE(succeeded(child));
        EXPECT_EQ(old.query("config.db", "PRAGMA user_version"), 2);
    }
}

TEST(Migration, OfAFileThatMustNotBeWrittenIsRefusedInPlainWords) {
    const OldSite old;
    // Held open, so that the files beside it are there and a reader needs to make none.
    Database holder(old.folder.file("config.db"), {});
    (void)holder.queryNumber("SELECT count(*) FROM site");
    for (const auto& entry : std::filesystem::directory_iterator(old.folder.path()))
        chmod(entry.path().c_str(), 0444);
    chmod(old.folder.path().c_str(), 0755);
    asNobody([&] {
        const std::string sentence = expectError(ErrorKind::databaseReadOnly, [&] {
            (void)openDatabase(DatabaseKind::config, old.folder.file("config.db"));
        });
        EXPECT_NE(sentence.find("older version"), std::string::npos) << sentence;
    });
    EXPECT_EQ(holder.queryNumber("PRAGMA user_version"), 1);
}

}  // namespace
}  // namespace vtdn::store::test

// Data points that are damaged, locked, read-only or shared: what is stored is never lost on the way.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>

#include "child.h"
#include "expect_error.h"
#include "point_site.h"
#include "store/schema.h"

namespace vtdn::store::test {
namespace {

TEST(DataPointSafety, ADamagedTextIsNoticedRefusedAndLeftAsItIs) {
    for (const char* change : {"extra = 'other'",
                               "occurrence = 'other'",
                               "extra = occurrence || extra, occurrence = ''",
                               "occurrence = replace(occurrence, 'fan', 'fun')",
                               "time = time + 3600",
                               "time = time + 1",
                               "checksum = checksum + 1",
                               "checksum = -1",
                               "checksum = 'x'",
                               "checksum = NULL",
                               "extra = NULL",
                               "extra = 7",
                               "occurrence = x'41'",
                               "occurrence = 1.5",
                               "occurrence = NULL",
                               "parts = 0",
                               "parts = 2",
                               "parts = parts + 4",
                               "parts = -1",
                               "parts = 16",
                               "parts = NULL",
                               "parts = 'x'",
                               "excursion_pid = excursion_pid + 1",
                               "excursion_pid = 'x'",
                               "downtime_pid = 7",
                               "downtime_pid = 5000000000",
                               "downtime_pid = NULL"}) {
        PointSite demo;
        demo.site.write(hourPid, at(1), {{1.5F, 3}});
        demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
        demo.writeOccurrence(hourPid, hour, at(1), excursionText("fan"));
        demo.writeOccurrence(hourPid, hour, at(4), excursionText("sound"));
        const Points before = demo.site.dataPoints(hourPid, hour, at(0), at(5));
        // The table without what keeps such rows out.
        Database& db = demo.site.database(DatabaseKind::data);
        db.execute(
            "CREATE TABLE loose (series, time, occurrence, extra, checksum, parts, excursion_pid, "
            "downtime_pid, PRIMARY KEY (series, time));"
            "INSERT INTO loose SELECT * FROM data_point_text;"
            "CREATE TABLE backup AS SELECT * FROM data_point_text;"
            "DROP TABLE data_point_text;"
            "ALTER TABLE loose RENAME TO data_point_text;");
        db.execute(("UPDATE data_point_text SET " + std::string(change) + " WHERE extra <> ''").c_str());
        const std::string sentence = expectError(
            ErrorKind::databaseDamaged, [&] { (void)demo.site.dataPoints(hourPid, hour, at(0), at(5)); });
        EXPECT_NE(sentence.find("data.db"), std::string::npos) << change << ": " << sentence;
        const OccurrenceList list = demo.site.occurrences({.first = at(0), .last = at(5)});
        ASSERT_EQ(list.rows.size(), 1U) << change;
        EXPECT_EQ(list.rows[0].text, excursionText("sound")) << change;
        EXPECT_EQ(list.damages, std::vector<std::string>{sentence}) << change;
        const Time found = db.queryNumber("SELECT min(time) FROM data_point_text");
        if (found == at(1) || found == at(2)) {
            const auto refused = [&](const auto& call) { expectError(ErrorKind::databaseDamaged, call); };
            for (const char* text : {"new", ""})
                refused([&] { demo.site.setExtra(hourPid, hour, found, text, editor); });
            refused([&] { demo.writeOccurrence(hourPid, hour, found, excursionText("new")); });
            refused([&] { demo.writeOccurrence(hourPid, hour, found, ""); });
            refused([&] { (void)demo.site.findDataPoint(hourPid, hour, found, at(5)); });
            refused([&] {
                Load load(demo.site);
                load.writeOccurrence(hourPid, found, excursionOf("new"), editor);
            });
        }
        EXPECT_EQ(demo.site.check(), list.damages) << change;
        EXPECT_EQ(demo.site.read(hourPid, at(1)), (Item{1.5F, 3})) << "values do not suffer";
        db.execute("DELETE FROM data_point_text; INSERT INTO data_point_text SELECT * FROM backup;");
        EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(0), at(5)), before) << change;
        EXPECT_EQ(demo.site.edits().size(), 3U) << "a write that was refused is no edit";
    }
}

TEST(DataPointSafety, AnOccurrenceThatWasMovedToAnotherTagIsNoticed) {
    PointSite demo;
    demo.writeOccurrence(hourPid, hour, at(1), excursionText("fan"));
    demo.writeOccurrence(occurrencePid, hour, at(2), excursionText("sound"));
    Database& db = demo.site.database(DatabaseKind::data);
    db.execute("UPDATE data_point_text SET series = 2 WHERE series = 1");
    const OccurrenceList list = demo.site.occurrences({.first = at(0), .last = at(5)});
    EXPECT_EQ(list.rows.size(), 1U);
    ASSERT_EQ(list.damages.size(), 1U);
    EXPECT_NE(list.damages[0].find("2007-03-25 01:00"), std::string::npos) << list.damages[0];
    EXPECT_EQ(demo.site.check(), list.damages);
}

TEST(DataPointSafety, ATextThatIsNoOccurrenceIsReportedAndNothingIsWrittenBesideIt) {
    PointSite demo;
    demo.writeOccurrence(hourPid, hour, at(1), excursionText("sound"));
    Database& db = demo.site.database(DatabaseKind::data);
    // A row as it was written before there were summaries, with the checksum of then.
    db.execute(
        "INSERT INTO data_point_text (series, time, occurrence, extra, checksum) "
        "VALUES (1, 3383953200, 'none', '', 4008209717)");
    const OccurrenceList list = demo.site.occurrences({.first = at(0), .last = at(5)});
    EXPECT_EQ(list.rows.size(), 1U);
    ASSERT_EQ(list.damages.size(), 1U);
    EXPECT_NE(list.damages[0].find("2007-03-25 03:00"), std::string::npos) << list.damages[0];
    EXPECT_EQ(demo.site.check(), list.damages);
    expectError(ErrorKind::databaseDamaged, [&] { demo.site.setExtra(hourPid, hour, at(3), "x", editor); });
    expectError(ErrorKind::databaseDamaged, [&] { demo.writeOccurrence(hourPid, hour, at(3), ""); });
    EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(3), at(3)).at(0).occurrence, "none")
        << "it can still be seen";
}

TEST(DataPointSafety, OccurrencesBesideDamagedValuesAreReportedAndOthersListed) {
    PointSite demo;
    const Time far = timeOf({2008, 3, 25, 0, 0, 0});  // in another block of values
    for (const Time time : {at(1), at(2), far}) {
        demo.site.write(hourPid, time, {{1.5F, 3}});
        demo.writeOccurrence(hourPid, hour, time, excursionText("fan"));
    }
    demo.site.database(DatabaseKind::data)
        .execute("UPDATE chunk SET data = x'01' WHERE id = (SELECT min(id) FROM chunk)");
    const OccurrenceList list = demo.site.occurrences({.first = at(0), .last = far});
    ASSERT_EQ(list.rows.size(), 1U);
    EXPECT_EQ(list.rows[0], (OccurrenceRow{hourPid, hour, far, {1.5F, 3}, excursionText("fan")}));
    ASSERT_EQ(list.damages.size(), 1U) << "one for the block";
    EXPECT_NE(list.damages[0].find("5-040-3-00-00"), std::string::npos) << list.damages[0];
    const auto refused = [&](const DataPointSave& save) {
        expectError(ErrorKind::databaseDamaged, [&] { demo.site.saveDataPoint(save); });
    };
    refused({hourPid, hour, at(1), Value(2.5F), {}, true, "", editor});
    refused({hourPid, hour, at(1), {}, 7, true, "", editor});
    EXPECT_EQ(demo.site.database(DatabaseKind::data).queryNumber("SELECT count(*) FROM data_point_text"), 3);
}

TEST(DataPointSafety, ADamagedEditIsNoticed) {
    for (const char* change :
         {"time = time + 3600", "parts = 8", "parts = 16", "parts = 0", "edited = edited + 1",
          "source = 'other'", "user = 'other'", "source = user, user = source", "checksum = checksum + 1",
          "series = 2", "series = 99", "time = 'x'", "source = NULL", "edited = NULL"}) {
        PointSite demo;
        demo.writeOccurrence(hourPid, hour, at(1), excursionText("fan"));
        demo.writeOccurrence(occurrencePid, hour, at(1), excursionText("fan"));
        Database& db = demo.site.database(DatabaseKind::data);
        db.execute(
            "PRAGMA foreign_keys = OFF;"
            "CREATE TABLE loose (id, series, time, parts, edited, source, user, checksum);"
            "INSERT INTO loose SELECT * FROM edit; DROP TABLE edit; ALTER TABLE loose RENAME TO edit;");
        EXPECT_EQ(demo.site.edits().size(), 2U);
        db.execute(("UPDATE edit SET " + std::string(change) + " WHERE id = 1").c_str());
        const std::string sentence =
            expectError(ErrorKind::databaseDamaged, [&] { (void)demo.site.edits(); });
        EXPECT_EQ(demo.site.check(), std::vector<std::string>{sentence}) << change;
    }
}

TEST(DataPointSafety, ATextThatBelongsToNoParameterIsNoticedByTheCheck) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    Database& db = demo.site.database(DatabaseKind::data);
    db.execute("PRAGMA foreign_keys = OFF; UPDATE data_point_text SET series = 99");
    EXPECT_EQ(demo.site.check().size(), 1U);
}

TEST(DataPointSafety, ADamagedValueIsRefusedAndTheTextsAreKept) {
    PointSite demo;
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    demo.site.database(DatabaseKind::data).execute("UPDATE chunk SET data = x'01'");
    const auto list = [&] { return demo.site.dataPoints(hourPid, hour, at(0), at(5)); };
    const std::string sentence = expectError(ErrorKind::databaseDamaged, [&] { (void)list(); });
    EXPECT_NE(sentence.find("5-040-3-00-00"), std::string::npos) << sentence;
    demo.site.setExtra(hourPid, hour, at(1), "another", editor);
    demo.site.database(DatabaseKind::data).execute("DELETE FROM chunk");
    EXPECT_EQ(list(), (Points{{at(1), {}, "", "another"}}));
}

TEST(DataPointSafety, InADatabaseThatStaysLockedTextsAreReadAndNotWritten) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    Site other(SiteConnections::inFolder(demo.folder.path()), "DEMO", {.busy_ms = 50});
    Database& held = demo.site.database(DatabaseKind::data);
    held.execute("BEGIN IMMEDIATE");
    EXPECT_EQ(other.dataPoints(hourPid, hour, at(1), at(1)).size(), 1U) << "readers do not wait for a writer";
    expectError(ErrorKind::databaseLocked, [&] { other.setExtra(hourPid, hour, at(1), "new", editor); });
    const DataPointSave save{hourPid, hour, at(1), {}, {}, false, excursionText("fan"), editor};
    expectError(ErrorKind::databaseLocked, [&] { other.saveDataPoint(save); });
    EXPECT_TRUE(other.occurrences({.first = at(0), .last = at(5)}).rows.empty());
    held.execute("ROLLBACK");
    other.saveDataPoint(save);
    EXPECT_EQ(demo.site.occurrences({.first = at(0), .last = at(5)}).rows.size(), 1U);
    EXPECT_TRUE(other.setExtra(hourPid, hour, at(1), "new", editor));
    EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(1), at(1)).at(0).extra, "new");
}

TEST(DataPointSafety, InFilesThatMustNotBeWrittenTextsAreReadAndNotWritten) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    // The site stays open, so that the files beside its databases are there and a reader needs to make none.
    for (const auto& entry : std::filesystem::directory_iterator(demo.folder.path()))
        chmod(entry.path().c_str(), 0444);
    chmod(demo.folder.path().c_str(), 0755);
    asNobody([&] {
        Site other = demo.reopen();
        EXPECT_EQ(other.dataPoints(hourPid, hour, at(1), at(1)).at(0).extra, "extra");
        expectError(ErrorKind::databaseReadOnly,
                    [&] { other.setExtra(hourPid, hour, at(1), "new", editor); });
    });
    EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(1), at(1)).at(0).extra, "extra");
}

TEST(DataPointSafety, ProgramsThatWriteValuesAndTextsAtOnceLoseNothing) {
    PointSite demo;
    const SiteConnections connections = SiteConnections::inFolder(demo.folder.path());
    { const Site gone = std::move(demo.site); }
    constexpr int count = 60;
    std::array<pid_t, 3> children{};
    for (std::size_t program = 0; program < children.size(); ++program)
        children[program] = startChild([&] {
            Site site(connections, "DEMO");
            for (int i = 0; i < count; ++i) {
                if (program == 0)
                    site.write(minutePid, at(1, i), {{static_cast<float>(i), i}});
                else  // both of the others write every text
                    site.setExtra(minutePid, minute, at(1, i), std::to_string(i), editor);
            }
        });
    for (const pid_t child : children) EXPECT_TRUE(succeeded(child));
    const Points points = Site(connections, "DEMO").dataPoints(minutePid, minute, at(1), at(1, count - 1));
    ASSERT_EQ(points.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(points[static_cast<std::size_t>(i)],
                  (DataPoint{at(1, i), {static_cast<float>(i), i}, "", std::to_string(i)}));
}

}  // namespace
}  // namespace vtdn::store::test

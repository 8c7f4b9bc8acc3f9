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
    for (const char* change :
         {"extra = 'other'", "occurrence = 'other'", "extra = occurrence || extra, occurrence = ''",
          "time = time + 3600", "time = time + 1", "checksum = checksum + 1", "checksum = -1",
          "checksum = 'x'", "checksum = NULL", "extra = NULL", "extra = 7", "occurrence = x'41'",
          "occurrence = 1.5"}) {
        PointSite demo;
        demo.site.write(hourPid, at(1), {{1.5F, 3}});
        demo.site.setExtra(hourPid, hour, at(1), "extra");
        demo.writeOccurrence(hourPid, hour, at(1), "occurrence");
        const Points before = demo.site.dataPoints(hourPid, hour, at(0), at(5));
        // The table without what keeps such rows out.
        Database& db = demo.site.database(DatabaseKind::data);
        db.execute(
            "CREATE TABLE loose (series, time, occurrence, extra, checksum, PRIMARY KEY (series, time));"
            "INSERT INTO loose SELECT * FROM data_point_text;"
            "CREATE TABLE backup AS SELECT * FROM data_point_text;"
            "DROP TABLE data_point_text;"
            "ALTER TABLE loose RENAME TO data_point_text;");
        db.execute(("UPDATE data_point_text SET " + std::string(change)).c_str());
        const std::string sentence = expectError(
            ErrorKind::databaseDamaged, [&] { (void)demo.site.dataPoints(hourPid, hour, at(0), at(5)); });
        EXPECT_NE(sentence.find("data.db"), std::string::npos) << change << ": " << sentence;
        const Time found = db.queryNumber("SELECT time FROM data_point_text");
        if (found == at(1) || found == at(2)) {
            expectError(ErrorKind::databaseDamaged, [&] { demo.site.setExtra(hourPid, hour, found, "new"); });
            expectError(ErrorKind::databaseDamaged, [&] { demo.site.setExtra(hourPid, hour, found, ""); });
        }
        EXPECT_EQ(demo.site.check().size(), 1U) << change;
        EXPECT_EQ(demo.site.read(hourPid, at(1)), (Item{1.5F, 3})) << "values do not suffer";
        db.execute("DELETE FROM data_point_text; INSERT INTO data_point_text SELECT * FROM backup;");
        EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(0), at(5)), before) << change;
    }
}

TEST(DataPointSafety, ATextThatBelongsToNoParameterIsNoticedByTheCheck) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra");
    Database& db = demo.site.database(DatabaseKind::data);
    db.execute("PRAGMA foreign_keys = OFF; UPDATE data_point_text SET series = 99");
    EXPECT_EQ(demo.site.check().size(), 1U);
}

TEST(DataPointSafety, ADamagedValueIsRefusedAndTheTextsAreKept) {
    PointSite demo;
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.setExtra(hourPid, hour, at(1), "extra");
    demo.site.database(DatabaseKind::data).execute("UPDATE chunk SET data = x'01'");
    const auto list = [&] { return demo.site.dataPoints(hourPid, hour, at(0), at(5)); };
    const std::string sentence = expectError(ErrorKind::databaseDamaged, [&] { (void)list(); });
    EXPECT_NE(sentence.find("5-040-3-00-00"), std::string::npos) << sentence;
    demo.site.setExtra(hourPid, hour, at(1), "another");
    demo.site.database(DatabaseKind::data).execute("DELETE FROM chunk");
    EXPECT_EQ(list(), (Points{{at(1), {}, "", "another"}}));
}

TEST(DataPointSafety, InADatabaseThatStaysLockedTextsAreReadAndNotWritten) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra");
    Site other(SiteConnections::inFolder(demo.folder.path()), "DEMO", {.busy_ms = 50});
    Database& held = demo.site.database(DatabaseKind::data);
    held.execute("BEGIN IMMEDIATE");
    EXPECT_EQ(other.dataPoints(hourPid, hour, at(1), at(1)).size(), 1U) << "readers do not wait for a writer";
    expectError(ErrorKind::databaseLocked, [&] { other.setExtra(hourPid, hour, at(1), "new"); });
    held.execute("ROLLBACK");
    EXPECT_TRUE(other.setExtra(hourPid, hour, at(1), "new"));
    EXPECT_EQ(demo.site.dataPoints(hourPid, hour, at(1), at(1)).at(0).extra, "new");
}

TEST(DataPointSafety, InFilesThatMustNotBeWrittenTextsAreReadAndNotWritten) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra");
    // The site stays open, so that the files beside its databases are there and a reader needs to make none.
    for (const auto& entry : std::filesystem::directory_iterator(demo.folder.path()))
        chmod(entry.path().c_str(), 0444);
    chmod(demo.folder.path().c_str(), 0755);
    asNobody([&] {
        Site other = demo.reopen();
        EXPECT_EQ(other.dataPoints(hourPid, hour, at(1), at(1)).at(0).extra, "extra");
        expectError(ErrorKind::databaseReadOnly, [&] { other.setExtra(hourPid, hour, at(1), "new"); });
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
                    site.setExtra(minutePid, minute, at(1, i), std::to_string(i));
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

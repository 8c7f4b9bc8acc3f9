// Database files: made whole, opened only when they are what they should be, and refused with the reason.

#include "store/database.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <random>

#include "child.h"
#include "demo_site.h"
#include "expect_error.h"
#include "items.h"
#include "store/connection.h"
#include "store/schema.h"

namespace vtdn::store::test {
namespace {

constexpr OpenOptions impatient{.busy_ms = 50};

void writeFile(const std::string& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
}

std::string readFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string openRefused(ErrorKind kind, DatabaseKind database, const std::string& file) {
    std::string sentence = expectError(kind, [&] { (void)openDatabase(database, file, impatient); });
    EXPECT_NE(sentence.find(file), std::string::npos) << "the sentence names the file: " << sentence;
    return sentence;
}

TEST(Database, OfEveryKindIsMadeAndOpened) {
    TempFolder folder;
    for (const DatabaseKind kind : {DatabaseKind::alarm, DatabaseKind::config, DatabaseKind::data,
                                    DatabaseKind::dataShortTerm, DatabaseKind::realtime}) {
        const std::string file = folder.file(std::string(nameOf(kind)) + ".db");
        { const Database made = createDatabase(kind, file, "S"); }
        Database opened = openDatabase(kind, file);
        EXPECT_EQ(opened.queryNumber("PRAGMA user_version"), currentVersion(kind));
        EXPECT_EQ(opened.queryNumber("PRAGMA synchronous"), 2) << "FULL";
        EXPECT_EQ(opened.queryNumber("PRAGMA foreign_keys"), 1);
        EXPECT_EQ(Statement(opened, "PRAGMA journal_mode").step(), true);
        Statement mode(opened, "PRAGMA journal_mode");
        ASSERT_TRUE(mode.step());
        EXPECT_EQ(mode.text(0), "wal");
    }
}

TEST(Database, NamesOfFilesMayHoldAnyCharacter) {
    TempFolder folder;
    const std::string file = folder.file("M\xC3\xBChle; 5 'ost' \xF0\x9F\x8F\xAD.db");
    { const Database made = createDatabase(DatabaseKind::data, file, "S"); }
    EXPECT_NO_THROW((void)openDatabase(DatabaseKind::data, file));
}

TEST(Database, OneThatIsMissingIsRefusedAndNotMade) {
    TempFolder folder;
    openRefused(ErrorKind::databaseMissing, DatabaseKind::data, folder.file("none.db"));
    openRefused(ErrorKind::databaseMissing, DatabaseKind::data, folder.file("none/none.db"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("none.db")));
    expectError(ErrorKind::databaseMissing,
                [&] { (void)createDatabase(DatabaseKind::data, folder.file("none/none.db"), "S"); });
    openRefused(ErrorKind::databaseReadOnly, DatabaseKind::data, folder.path());
}

TEST(Database, AFileThatExistsIsNotMadeAgainAndNotTouched) {
    TempFolder folder;
    writeFile(folder.file("notes.txt"), "do not lose");
    expectError(ErrorKind::alreadyExists,
                [&] { (void)createDatabase(DatabaseKind::data, folder.file("notes.txt"), "S"); });
    EXPECT_EQ(readFile(folder.file("notes.txt")), "do not lose");
}

TEST(Database, AFileOfAnotherKindIsRefused) {
    TempFolder folder;
    writeFile(folder.file("text.db"), std::string(10'000, 'x'));
    openRefused(ErrorKind::notASiteDatabase, DatabaseKind::data, folder.file("text.db"));
    writeFile(folder.file("empty.db"), "");
    openRefused(ErrorKind::notASiteDatabase, DatabaseKind::data, folder.file("empty.db"));
    { Database(folder.file("other.db"), {.create = true}).execute("CREATE TABLE t (x)"); }
    openRefused(ErrorKind::notASiteDatabase, DatabaseKind::data, folder.file("other.db"));
    { const Database made = createDatabase(DatabaseKind::config, folder.file("config.db"), "S"); }
    const std::string sentence =
        openRefused(ErrorKind::notASiteDatabase, DatabaseKind::data, folder.file("config.db"));
    EXPECT_NE(sentence.find("kind config where one of kind data"), std::string::npos) << sentence;
}

TEST(Database, OneOfANewerProgramIsRefused) {
    TempFolder folder;
    { createDatabase(DatabaseKind::data, folder.file("data.db"), "S").execute("PRAGMA user_version = 99"); }
    const std::string sentence =
        openRefused(ErrorKind::databaseNewer, DatabaseKind::data, folder.file("data.db"));
    EXPECT_NE(sentence.find("99"), std::string::npos) << sentence;
    { Database(folder.file("data.db"), {}).execute("PRAGMA user_version = 0"); }
    openRefused(ErrorKind::databaseDamaged, DatabaseKind::data, folder.file("data.db"));
}

TEST(Database, OneThatIsLockedIsRefusedAfterTheWait) {
    DemoSite demo;
    Site other(SiteConnections::inFolder(demo.folder.path()), "DEMO", impatient);
    Database& held = demo.site.database(DatabaseKind::dataShortTerm);
    held.execute("BEGIN IMMEDIATE");
    (void)other.read(minutePid, 0);  // readers do not wait for a writer
    expectError(ErrorKind::databaseLocked, [&] { other.write(minutePid, 0, {{1.0F, 1}}); });
    held.execute("ROLLBACK");
    EXPECT_NO_THROW(other.write(minutePid, 0, {{1.0F, 1}}));
    { Site gone = std::move(other); }
    held.execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
    const std::string file = demo.folder.file("data_short_term.db");
    openRefused(ErrorKind::databaseLocked, DatabaseKind::dataShortTerm, file);
}

TEST(Database, OneThatIsReadOnlyIsReadAndItsWritesAreRefused) {
    auto demo = std::make_unique<DemoSite>();
    demo->site.write(minutePid, 0, {{1.5F, 1}});
    const SiteConnections connections = SiteConnections::inFolder(demo->folder.path());
    for (const auto& entry : std::filesystem::directory_iterator(demo->folder.path()))
        chmod(entry.path().c_str(), 0444);
    chmod(demo->folder.path().c_str(), 0755);
    asNobody([&] {
        Site site(connections, "DEMO");
        EXPECT_EQ(site.read(minutePid, 0), (Item{1.5F, 1}));
        expectError(ErrorKind::databaseReadOnly, [&] { site.write(minutePid, 0, {{2.5F, 1}}); });
        expectError(ErrorKind::databaseReadOnly, [&] { Load load(site); });
    });
    // Without the files beside it that readers share, not even reading is possible for one who may not make
    // them.
    const std::string file = demo->folder.file("alone.db");
    { const Database made = createDatabase(DatabaseKind::data, file, "S"); }
    chmod(file.c_str(), 0444);
    chmod(demo->folder.path().c_str(), 0555);
    asNobody([&] { openRefused(ErrorKind::databaseReadOnly, DatabaseKind::data, file); });
    chmod(file.c_str(), 0000);
    asNobody([&] { openRefused(ErrorKind::databaseReadOnly, DatabaseKind::data, file); });
    chmod(demo->folder.path().c_str(), 0755);
}

TEST(Site, MadeAnewLeavesNothingBehindWhenItFails) {
    TempFolder folder;
    writeFile(folder.file("realtime.db"), "in the way");
    expectError(ErrorKind::alreadyExists,
                [&] { (void)Site::create(SiteConnections::inFolder(folder.path()), "S"); });
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path())) ++files;
    EXPECT_EQ(files, 1);
    SiteConnections twice = SiteConnections::inFolder(folder.path());
    twice.realtime = twice.data;
    expectError(ErrorKind::alreadyExists, [&] { (void)Site::create(twice, "S"); });
    EXPECT_FALSE(std::filesystem::exists(folder.file("data.db")));
}

TEST(Site, DatabasesOfAnotherSiteOrInTheWrongPlaceAreRefused) {
    DemoSite demo;
    TempFolder folder;
    { const Site made = Site::create(SiteConnections::inFolder(folder.path()), "OTHER"); }
    const SiteConnections mine = SiteConnections::inFolder(demo.folder.path());
    const SiteConnections others = SiteConnections::inFolder(folder.path());
    expectError(ErrorKind::notASiteDatabase, [&] { Site(mine, "OTHER"); });
    for (const auto member : {&SiteConnections::alarm, &SiteConnections::config, &SiteConnections::data,
                              &SiteConnections::data_short_term, &SiteConnections::realtime}) {
        SiteConnections mixed = mine;
        mixed.*member = others.*member;
        expectError(ErrorKind::notASiteDatabase, [&] { Site(mixed, ""); });
        mixed.*member = Connection::format(folder.file("none.db"));
        expectError(ErrorKind::databaseMissing, [&] { Site(mixed, ""); });
        mixed.*member = "Driver=SQLite";
        expectError(ErrorKind::malformedConnection, [&] { Site(mixed, ""); });
    }
    EXPECT_EQ(Site(others, "").siteId(), "OTHER");
    SiteConnections swapped = mine;
    std::swap(swapped.alarm, swapped.realtime);
    expectError(ErrorKind::notASiteDatabase, [&] { Site(swapped, ""); });
    expectError(ErrorKind::malformedConnection, [&] { Site({}, ""); });
}

// The first intervals of the damaged site have a text as well, which together fill most of a page.
constexpr std::int32_t texts = 28;
std::string textOf(std::int32_t interval) {
    return std::to_string(interval) + std::string(230, 'x');
}
// Their edits fill a page, too.
const EditOrigin origin{editor.when, std::string(230, 'y'), editor.user};

// What a reader of a damaged site is told.
struct Outcome {
    bool refused = false;  // opening or reading was
    bool same = true;      // everything that was read is what was written
    bool found = false;    // the check found something
};

Outcome lookAt(const std::string& folder, const std::vector<Item>& expected) {
    Outcome outcome;
    try {
        Site site(SiteConnections::inFolder(folder), "DEMO", impatient);
        outcome.found = !site.check().empty();
        store::Run run;
        const auto count = static_cast<std::int32_t>(expected.size());
        site.read(minutePid, Span::define(0, count, Interval::parse("1m")), run);
        for (std::int32_t i = 0; i < count; ++i)
            outcome.same = outcome.same && run.item(i) == expected[static_cast<std::size_t>(i)];
        std::vector<DataPoint> points;
        points.reserve(texts);
        for (std::int32_t i = 0; i < texts; ++i)
            points.push_back({Time{i} * 60, expected[static_cast<std::size_t>(i)], "", textOf(i)});
        outcome.same = outcome.same &&
                       site.dataPoints(minutePid, Interval::parse("1m"), 0, Time{texts - 1} * 60) == points;
        const std::vector<Edit> edits = site.edits();
        outcome.same = outcome.same && edits.size() == texts;
        for (std::size_t i = 0; i < edits.size(); ++i)  // newest first
            outcome.same = outcome.same && edits[i].origin == origin &&
                           edits[i].time == static_cast<Time>(edits.size() - 1 - i) * 60;
    } catch (const Error&) {
        outcome.refused = true;
    }
    return outcome;
}

TEST(Damage, FlippedBitsInTheDataFileNeverCrashAndWrongValuesNeverGoUnnoticed) {
    TempFolder folder;
    const std::int32_t count = 20 * slotsPerChunk;
    std::vector<Item> expected(static_cast<std::size_t>(count));
    std::mt19937 random(1);
    for (Item& item : expected)
        item = {static_cast<float>(random() % 1000) / 10, random() % 100 == 0 ? 12 : 1};
    {
        Site site = Site::create(SiteConnections::inFolder(folder.path()), "DEMO");
        replaceParameters(site.database(DatabaseKind::config), demoParameters());
        site.write(minutePid, Span::define(0, count, Interval::parse("1m")), runOf(expected));
        for (std::int32_t i = 0; i < texts; ++i)
            site.setExtra(minutePid, Interval::parse("1m"), Time{i} * 60, textOf(i), origin);
    }
    const std::string file = folder.file("data_short_term.db");
    const std::string whole = readFile(file);
    ASSERT_TRUE(lookAt(folder.path(), expected).same);
    int refused = 0;
    int found = 0;
    int harmless = 0;
    const int trials = 400;
    for (int trial = 0; trial < trials; ++trial) {
        std::string changed = whole;
        // Every fourth trial aims at the pages that hold structure rather than values, or cuts the file
        // short.
        if (trial % 20 == 0)
            changed.resize(random() % whole.size());
        else if (trial % 4 == 0)
            changed[random() % 12'288] ^= static_cast<char>(1 << random() % 8);
        else
            changed[random() % whole.size()] ^= static_cast<char>(1 << random() % 8);
        writeFile(file, changed);
        const Outcome outcome = lookAt(folder.path(), expected);
        ASSERT_TRUE(outcome.refused || outcome.found || outcome.same) << "trial " << trial;
        ++(outcome.refused ? refused : outcome.found ? found : harmless);
        for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(file + suffix);
    }
    std::printf("%d trials: %d refused, %d found by the check, %d without effect\n", trials, refused, found,
                harmless);
    EXPECT_GT(refused, trials / 2);
}

}  // namespace
}  // namespace vtdn::store::test

// The DAHS directory: entries come back, ids are unique, and several programs can use it at once.

#include "store/directory.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <limits>
#include <set>

#include "expect_error.h"
#include "temp_folder.h"

namespace vtdn::store::test {
namespace {

Dahs example(std::int32_t id) {
    return {id,
            "Barry unit 5",
            "Barry, unit 5 (CEM)",
            "BARRY5",
            "C:\\Vantor",
            "C:\\Vantor\\System",
            {"Driver=SQLite;Database=a", "Driver=SQLite;Database=b", "c", "d", "e"},
            "C:\\Templates; more"};
}

TEST(Directory, EntriesComeBackAsTheyWereGiven) {
    TempFolder home;
    Directory directory = Directory::openOrCreate(home.file("new/home"));
    EXPECT_TRUE(directory.list().empty());
    EXPECT_EQ(directory.add(example(7)), 7);
    EXPECT_EQ(Directory::open(home.file("new/home")).get(7), example(7));
    EXPECT_FALSE(directory.find(8));
}

TEST(Directory, GivesTheNextFreeIdOrTheOneThatIsAskedFor) {
    TempFolder home;
    Directory directory = Directory::openOrCreate(home.path());
    EXPECT_EQ(directory.add(example(0)), 1);
    EXPECT_EQ(directory.add(example(40)), 40);
    EXPECT_EQ(directory.add(example(0)), 41);
    const std::string sentence = expectError(ErrorKind::alreadyExists, [&] { directory.add(example(40)); });
    EXPECT_NE(sentence.find("40"), std::string::npos);
    expectError(ErrorKind::outOfRange, [&] { directory.add(example(-1)); });
    const std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(directory.add(example(highest)), highest);
    expectError(ErrorKind::outOfRange, [&] { directory.add(example(0)); });
    EXPECT_EQ(directory.list().size(), 4U);
    EXPECT_EQ(directory.list().front().id, 1);
}

TEST(Directory, EntriesAreChangedAndRemoved) {
    TempFolder home;
    Directory directory = Directory::openOrCreate(home.path());
    directory.add(example(7));
    Dahs changed = example(7);
    changed.description = "Other";
    directory.update(changed);
    EXPECT_EQ(directory.get(7), changed);
    directory.remove(7);
    for (const auto id : {7, 0, -5}) {
        expectError(ErrorKind::unknownDahs, [&] { (void)directory.get(id); });
        expectError(ErrorKind::unknownDahs, [&] { directory.remove(id); });
        expectError(ErrorKind::unknownDahs, [&] { directory.update(example(id)); });
    }
}

TEST(Directory, OneThatIsMissingOrNoneIsRefused) {
    TempFolder home;
    expectError(ErrorKind::databaseMissing, [&] { (void)Directory::open(home.path()); });
    { const Database other = createDatabase(DatabaseKind::data, home.file("directory.db"), "S"); }
    expectError(ErrorKind::notASiteDatabase, [&] { (void)Directory::open(home.path()); });
    expectError(ErrorKind::notASiteDatabase, [&] { (void)Directory::openOrCreate(home.path()); });
}

TEST(Directory, ManyProgramsCanMakeItAndAddToItAtOnce) {
    TempFolder home;
    constexpr int programs = 6;
    constexpr int entries = 10;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = fork();
        ASSERT_NE(child, -1);
        if (child == 0) {
            int added = 0;
            try {
                for (int i = 0; i < entries; ++i)
                    added += Directory::openOrCreate(home.path()).add(example(0)) > 0;
            } catch (const std::exception& e) {
                std::fprintf(stderr, "%s\n", e.what());
            }
            _exit(added == entries ? 0 : 1);
        }
    }
    for (int program = 0; program < programs; ++program) {
        int status = 0;
        wait(&status);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    std::set<std::int32_t> ids;
    for (const Dahs& dahs : Directory::open(home.path()).list()) ids.insert(dahs.id);
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(programs * entries));
    EXPECT_EQ(*ids.rbegin(), programs * entries);
}

}  // namespace
}  // namespace vtdn::store::test

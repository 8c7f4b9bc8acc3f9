#include <gtest/gtest.h>

#include "client/cli/failure.h"
#include "client/site/sites.h"
#include "import_fixture.h"
#include "store/error.h"

namespace vtdn::client {
namespace {

namespace fs = std::filesystem;
using test::Import;
using test::TestFolder;

TEST_F(Import, LoadsParametersCodesAndValues) {
    folder_.writePlant();
    const ImportResult result = import();
    ASSERT_TRUE(result.problems.empty()) << result.problems[0].text();
    EXPECT_EQ(result.dahs.id, 7);
    EXPECT_EQ(result.dahs.site_id, "MILL");
    EXPECT_EQ(result.dahs.description, "Boiler 1, paper mill");
    EXPECT_EQ(result.parameters, 5u);
    EXPECT_EQ(result.monitorCodes, 2u);
    EXPECT_EQ(result.values, 7u);

    store::Site site = open();
    EXPECT_EQ(site.siteId(), "MILL");
    EXPECT_EQ(site.read(103030000, at(1, 1, 0)), (store::Item{212.4, 1}));
    EXPECT_EQ(site.read(103030000, at(1, 1, 1)), (store::Item{{}, 9}));
    EXPECT_EQ(site.read(103030000, at(1, 1, 2)), (store::Item{48.2, 0}));
    EXPECT_EQ(site.read(105030000, at(1, 1, 1)), store::Item());
    EXPECT_EQ(site.read(105030000, at(1, 1, 2)), (store::Item{std::string("N/A"), 0}));
    EXPECT_EQ(site.read(101010000, at(2, 1, 0, 1)), (store::Item{18.0, 0}));
    EXPECT_EQ(site.read(190500000, at(1, 1, 0)), (store::Item{0.2, 0}));
    EXPECT_DOUBLE_EQ(store::numberOf(site.read(105130200, at(1, 1, 0)).value).value(), 0.174 * 212.4);
    EXPECT_EQ(site.monitorCodes().codes().at(1).rank, 2);
    EXPECT_EQ(site.monitorCodes().codes().at(9).rank, 9);
    EXPECT_TRUE(site.check().empty());
}

TEST_F(Import, ListsEveryBadRowAndLoadsNothing) {
    folder_.writePlant();
    folder_.write("values/2024-03.csv",
                  "time,1-030-3-00-00,1-030-3-00-00 mc\n"
                  "2024-03-01 00:30,1,1\n"
                  "2024-03-01 01:00,12 ppm,1\n"
                  "2024-03-01 02:00,1,2\n"
                  "2024-02-30 00:00,1,1\n"
                  "2024-03-01 02:00,1,1\n"
                  "2024-03-01 02:00,1,1\n");
    const ImportResult result = import();
    ASSERT_EQ(result.problems.size(), 5u);
    EXPECT_EQ(
        result.problems[0].text(),
        "values/2024-03.csv:2: column \"time\": 2024-03-01 00:30 is not on the 1h interval of 1-030-3-00-00");
    EXPECT_EQ(result.problems[1].column, "1-030-3-00-00");
    EXPECT_EQ(result.problems[2].text(),
              "values/2024-03.csv:4: column \"1-030-3-00-00 mc\": monitor_codes.csv has no code 2");
    EXPECT_EQ(result.problems[3].line, 5u);
    EXPECT_EQ(result.problems[4].line, 7u);
    EXPECT_FALSE(result.moreProblems);
    EXPECT_TRUE(store::Directory::open(home()).list().empty());
    EXPECT_EQ(siteFolders(), 0u);
}

TEST_F(Import, StopsListingAtTheLimit) {
    folder_.writePlant();
    std::string rows = "time,1-030-3-00-00\n";
    for (int i = 0; i < 100; ++i) rows += "soon,1\n";
    folder_.write("values/2024-03.csv", rows);
    const ImportResult result = import();
    EXPECT_EQ(result.problems.size(), 20u);
    EXPECT_TRUE(result.moreProblems);
}

TEST_F(Import, ACheckChangesNothing) {
    folder_.writePlant();
    ImportRequest request;
    request.folder = folder_.site();
    request.checkOnly = true;
    const ImportResult result = importSite(home(), request);
    EXPECT_TRUE(result.problems.empty());
    EXPECT_EQ(result.values, 7u);
    EXPECT_FALSE(fs::exists(folder_.home()));
}

TEST_F(Import, ASecondTimeNeedsToBeAskedFor) {
    folder_.writePlant();
    import();
    EXPECT_THROW(import(), Failure);
    folder_.write("values/2024-01.csv", "time,1-030-3-00-00\n2024-01-01 00:00,5\n");
    const ImportResult result = import(true);
    EXPECT_TRUE(result.updated);
    store::Site site = open();
    EXPECT_EQ(site.read(103030000, at(1, 1, 0)), (store::Item{5.0, 0}));
    EXPECT_EQ(site.read(103030000, at(1, 1, 2)), (store::Item{48.2, 0}));
}

TEST_F(Import, AnUpdateWithABadRowLeavesTheSiteAsItWas) {
    folder_.writePlant();
    import();
    folder_.write("parameters.csv",
                  "pid,name,interval,io_type\n1-030-3-00-00,Other "
                  "name,1h,38\n1-010-1-00-00,Load,1m,38\n105030000,NOx,1h,38\n");
    folder_.write("values/2024-01.csv", "time,1-030-3-00-00\n2024-01-01 00:00,5\n2024-01-01 00:30,6\n");
    const ImportResult result = import(true);
    EXPECT_EQ(result.problems.size(), 1u);
    EXPECT_FALSE(result.updated);
    store::Site site = open();
    EXPECT_EQ(site.parameters().get(103030000).name, "Heat input");
    EXPECT_EQ(site.read(103030000, at(1, 1, 0)), (store::Item{212.4, 1}));
}

TEST_F(Import, FillsASiteThatWasMadeEmpty) {
    createSite(home(), {7, "MILL", "", ""});
    folder_.writePlant();
    EXPECT_TRUE(import().updated);
    EXPECT_EQ(open().parameters().entries().size(), 5u);
}

TEST_F(Import, WithoutANumberTheNextFreeOneIsTaken) {
    createSite(home(), {41, "A", "", ""});
    folder_.writePlant();
    folder_.write("site.csv", "key,value\nsite_id,MILL\n");
    EXPECT_EQ(import().dahs.id, 42);
}

TEST_F(Import, ALeftOverFolderOfAFormerSiteIsNotTouched) {
    folder_.writePlant();
    import();
    EXPECT_TRUE(removeSite(home(), 7, false).empty());
    EXPECT_EQ(siteFolders(), 1u);
    const ImportResult again = import();
    EXPECT_EQ(siteFolders(), 2u);
    EXPECT_NE(again.dahs.connections.data.find("7-2"), std::string::npos);
}

TEST_F(Import, TellsHowFarItIs) {
    folder_.writePlant();
    ImportRequest request;
    request.folder = folder_.site();
    std::uintmax_t last = 0;
    std::uintmax_t total = 0;
    request.progress = [&](std::uintmax_t done, std::uintmax_t of) {
        EXPECT_GE(done, last);
        last = done;
        total = of;
    };
    importSite(home(), request);
    EXPECT_GT(total, 0u);
    EXPECT_EQ(last, total);
}

TEST_F(Import, AFolderThatIsNotThereIsAnEnvironmentFailure) {
    try {
        import();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::environment);
    }
}

TEST_F(Import, AParameterIsBlamedForItsOwnMistakeOnly) {
    folder_.writePlant();
    folder_.write("parameters.csv",
                  "pid,name,interval,io_type,aggregation,formula,uses\n"
                  "1-030-3-00-00,Heat,1h,38,,,\n"
                  "1-001-3-00-00,a,1h,10,,[1-002-3-00-00],1-002-3-00-00\n"
                  "1-002-3-00-00,b,1h,10,,[1-003-3-00-00] *,1-003-3-00-00\n"
                  "1-003-3-00-00,c,7m,38,,,\n"
                  "1-004-3-00-00,d,1h,10,,[1-005-3-00-00],1-005-3-00-00\n"
                  "1-005-3-00-00,e,1h,10,,[1-004-3-00-00],1-004-3-00-00\n"
                  "1-006-3-00-00,f,1d,10,sum,,1-030-3-00-00\n"
                  "1-050-3-00-00,g,1h,38,,,\n"
                  "1-010-1-00-00,h,1m,38,,,\n");
    const ImportResult result = import();
    std::vector<std::string> places;
    for (const ImportProblem& problem : result.problems)
        places.push_back(std::to_string(problem.line) + " " + problem.column);
    // Line 3 uses what line 4 gets wrong; lines 6 and 7 use each other, which is one mistake.
    EXPECT_EQ(places, (std::vector<std::string>{"4 formula", "5 interval", "6 "}));
}

TEST(Sites, AreMadeListedAndRemovedWithTheirFiles) {
    const TestFolder folder;
    const std::string home = folder.home().string();
    const store::Dahs first = createSite(home, {{}, "A", "first", "The first"});
    EXPECT_EQ(first.id, 1);
    EXPECT_EQ(createSite(home, {5, "B", "", ""}).id, 5);
    EXPECT_EQ(createSite(home, {{}, "C", "", ""}).id, 6);
    EXPECT_THROW(createSite(home, {5, "D", "", ""}), Failure);
    auto directory = store::Directory::open(home);
    ASSERT_EQ(directory.list().size(), 3u);
    EXPECT_EQ(directory.get(1).complete_name, "The first");
    EXPECT_TRUE(removeSite(home, 1, true).empty());
    EXPECT_EQ(directory.list().size(), 2u);
    EXPECT_FALSE(fs::exists(folder.home() / "sites" / "1"));
    EXPECT_TRUE(fs::exists(folder.home() / "sites" / "5"));
    EXPECT_THROW(removeSite(home, 1, true), store::Error);
}

TEST(Sites, RemovingKeepsWhatTheUserPutIntoTheFolder) {
    const TestFolder folder;
    const std::string home = folder.home().string();
    createSite(home, {1, "A", "", ""});
    const auto note = folder.home() / "sites" / "1" / "note.txt";
    std::ofstream(note) << "mine";
    removeSite(home, 1, true);
    EXPECT_TRUE(fs::exists(note));
    EXPECT_FALSE(fs::exists(folder.home() / "sites" / "1" / "data.db"));
}

}  // namespace
}  // namespace vtdn::client

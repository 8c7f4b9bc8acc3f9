// Occurrences in site files: what is written, what stays, and what is refused.
#include "import_fixture.h"

namespace vtdn::client {
namespace {

using store::Occurrence;

constexpr store::Pid tag = 105030000;
constexpr store::Pid excursions = 105300100;
constexpr store::Pid downtimes = 105400100;
constexpr store::Pid limit = 190500000;

class ImportOccurrences : public test::Import {
  protected:
    static constexpr const char* parameters =
        "pid,name,units,format,interval,io_type,value\n"
        "1-050-3-00-00,NOx rate,lb/mmBtu,0.000,1h,38,\n"
        "1-030-3-00-00,Heat input,mmBtu,,1h,38,\n"
        "1-010-1-00-00,Load,MW,,1m,38,\n"
        "1-070-5-00-00,Coal,ton,,1M,38,\n"
        "1-905-0-00-00,NOx limit,lb/mmBtu,0.00,,4,0.20\n"
        "1-906-0-00-00,Other limit,,,,34,12\n"
        "1-053-0-01-00,NOx rate excursions,,,,31,\n"
        "1-054-0-01-00,NOx rate downtimes,,,1h,31,\n"
        "1-055-0-01-00,Load downtimes,,,,31,\n";
    static constexpr const char* specialValues =
        "pid,id,type,value\n"
        "1-053-0-01-00,-21,integer,105030000\n"
        "1-053-0-01-00,-3,integer,3\n"
        "1-053-0-01-00,-13,integer,3600\n"
        "1-053-0-01-00,1003,integer,190500000\n"
        "1-054-0-01-00,-21,integer,105030000\n"
        "1-054-0-01-00,-3,integer,4\n"
        "1-054-0-01-00,-13,integer,3600\n"
        "1-055-0-01-00,-21,integer,101010000\n"
        "1-055-0-01-00,-3,integer,4\n"
        "1-055-0-01-00,-13,integer,60\n";

    void writeSite(const std::string& rows) const {
        folder_.write("site.csv", "key,value\ndahs_id,7\n");
        folder_.write("monitor_codes.csv", "code,short_name\n3,SUB\n");
        folder_.write("parameters.csv", parameters);
        folder_.write("special_values.csv", specialValues);
        folder_.write("values/hours.csv",
                      "time,1-050-3-00-00,1-050-3-00-00 mc\n"
                      "2024-01-01 00:00,0.3,\n2024-01-01 01:00,0.4,3\n2024-01-01 02:00,,3\n");
        writeRows(rows);
    }
    void writeRows(const std::string& rows) const {
        folder_.write("occurrences.csv",
                      "pid,start,count,category,reason,action,excludable,limit,limit_pid\n" + rows);
    }
    ImportResult importBy(const std::string& user, store::Time when) {
        ImportRequest request;
        request.folder = folder_.site();
        request.update = true;
        request.editUser = user;
        request.editTime = when;
        return importSite(home(), request);
    }
    /// All that the site has of a tag, by time.
    static std::map<store::Time, Occurrence> read(store::Site& site, store::Pid pid = tag) {
        const store::OccurrenceList list =
            site.occurrences({.first = at(1, 1, 0) - 400 * 86400, .last = at(12, 31, 23)});
        EXPECT_TRUE(list.damages.empty());
        std::map<store::Time, Occurrence> found;
        for (const store::OccurrenceRow& row : list.rows)
            if (row.pid == pid) found[row.time] = store::parseOccurrence(row.text);
        return found;
    }
    static store::Excursion excursion(std::string category = {}, std::string text = "0.2 lb/mmBtu",
                                      store::Pid pid = limit) {
        store::Excursion part;
        part.pid = excursions;
        part.category = std::move(category);
        part.limit = std::move(text);
        part.limit_pid = pid;
        return part;
    }
    static store::OccurrencePart downtime(std::string category = {}, store::Pid pid = downtimes) {
        store::OccurrencePart part;
        part.pid = pid;
        part.category = std::move(category);
        return part;
    }
    static std::vector<std::string> texts(const ImportResult& result) {
        std::vector<std::string> all;
        for (const ImportProblem& problem : result.problems) all.push_back(problem.text());
        return all;
    }
    /// The one problem of a row on line 2.
    std::string problemOf(const std::string& row) {
        writeSite(row + "\n");
        const auto all = texts(import());
        return all.size() == 1 ? all[0] : std::to_string(all.size()) + " problems";
    }
    /// The one problem when a line of the special values is another one.
    std::string problemWith(const std::string& line, const std::string& other) {
        writeSite("");
        std::string all = specialValues;
        const auto place = all.find(line);
        EXPECT_NE(place, std::string::npos);
        folder_.write("special_values.csv", all.replace(place, line.size(), other));
        const auto found = texts(import());
        return found.size() == 1 ? found[0] : std::to_string(found.size()) + " problems";
    }
};

TEST_F(ImportOccurrences, EachIntervalOfARowGetsTheOccurrence) {
    writeSite(
        "1-053-0-01-00,2024-01-01 00:00,3,Startup/shutdown,\"Start, \xC3\xA4\",Waited,1,,\n"
        "105500100,2024-01-01 00:01:00,2,Unknown causes,,,0,,\n");
    const ImportResult result = import();
    ASSERT_TRUE(result.problems.empty()) << result.problems[0].text();
    EXPECT_EQ(result.occurrences, 5u);

    store::Site site = open();
    store::Excursion part = excursion("Startup/shutdown");
    part.reason = "Start, \xC3\xA4";
    part.action = "Waited";
    part.excludable = true;
    const Occurrence hour{part, {}};
    EXPECT_EQ(read(site), (std::map<store::Time, Occurrence>{
                              {at(1, 1, 0), hour}, {at(1, 1, 1), hour}, {at(1, 1, 2), hour}}));
    const Occurrence minute{{}, downtime("Unknown causes", 105500100)};
    EXPECT_EQ(read(site, 101010000),
              (std::map<store::Time, Occurrence>{{at(1, 1, 0, 1), minute}, {at(1, 1, 0, 2), minute}}));
    EXPECT_TRUE(site.check().empty());
}

TEST_F(ImportOccurrences, ValuesAndCodesOfTheTagStay) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,4,,,,,,\n");
    ASSERT_TRUE(import().problems.empty());
    store::Site site = open();
    EXPECT_EQ(site.read(tag, at(1, 1, 0)), (store::Item{0.3, 0}));
    EXPECT_EQ(site.read(tag, at(1, 1, 1)), (store::Item{0.4, 3}));
    EXPECT_EQ(site.read(tag, at(1, 1, 2)), (store::Item{{}, 3}));
    EXPECT_EQ(site.read(tag, at(1, 1, 3)), store::Item());
    EXPECT_EQ(read(site).size(), 4u);
}

TEST_F(ImportOccurrences, AnExcursionAndADowntimeOfOneIntervalAreOneOccurrence) {
    writeSite(
        "1-054-0-01-00,2024-01-01 03:00,4,d,,,,,\n"
        "1-053-0-01-00,2024-01-01 05:00,4,e,,,,,\n"
        "1-053-0-01-00,2024-01-01 01:00,2,f,,,,,\n");
    const ImportResult result = import();
    ASSERT_TRUE(result.problems.empty()) << result.problems[0].text();
    EXPECT_EQ(result.occurrences, 8u);
    store::Site site = open();
    const Occurrence early{excursion("f"), {}};
    const Occurrence down{{}, downtime("d")};
    const Occurrence both{excursion("e"), downtime("d")};
    const Occurrence late{excursion("e"), {}};
    EXPECT_EQ(read(site), (std::map<store::Time, Occurrence>{{at(1, 1, 1), early},
                                                             {at(1, 1, 2), early},
                                                             {at(1, 1, 3), down},
                                                             {at(1, 1, 4), down},
                                                             {at(1, 1, 5), both},
                                                             {at(1, 1, 6), both},
                                                             {at(1, 1, 7), late},
                                                             {at(1, 1, 8), late}}));
}

TEST_F(ImportOccurrences, ALimitIsTheOneOfTheRowOrOfTheParameter) {
    writeSite(
        "1-053-0-01-00,2024-01-01 00:00,,,,,,,\n"
        "1-053-0-01-00,2024-01-01 01:00,,,,,,0.3 lb,\n"
        "1-053-0-01-00,2024-01-01 02:00,,,,,,,1-906-0-00-00\n"
        "1-053-0-01-00,2024-01-01 03:00,,,,,,0.3 lb,1-030-3-00-00\n");
    ASSERT_TRUE(import().problems.empty());
    store::Site site = open();
    EXPECT_EQ(read(site),
              (std::map<store::Time, Occurrence>{{at(1, 1, 0), {excursion("", "0.2 lb/mmBtu", limit), {}}},
                                                 {at(1, 1, 1), {excursion("", "0.3 lb", 0), {}}},
                                                 {at(1, 1, 2), {excursion("", "12", 190600000), {}}},
                                                 {at(1, 1, 3), {excursion("", "0.3 lb", 103030000), {}}}}));
}

TEST_F(ImportOccurrences, WithoutALimitOfTheParameterThereIsNone) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,,,,,,,\n");
    std::string without = specialValues;
    const std::string line = "1-053-0-01-00,1003,integer,190500000\n";
    folder_.write("special_values.csv", without.erase(without.find(line), line.size()));
    ASSERT_TRUE(import().problems.empty());
    store::Site site = open();
    EXPECT_EQ(read(site).at(at(1, 1, 0)), (Occurrence{excursion("", "", 0), {}}));
}

TEST_F(ImportOccurrences, TheSheetMayHaveOnlyTheColumnsThatItNeedsAndComeFromASpreadsheet) {
    writeSite("");
    folder_.write("occurrences.csv", "\xEF\xBB\xBFstart,pid\r\n2024-01-01 07:00,1-054-0-01-00\r\n");
    ASSERT_TRUE(import().problems.empty());
    store::Site site = open();
    EXPECT_EQ(read(site), (std::map<store::Time, Occurrence>{{at(1, 1, 7), {{}, downtime()}}}));
}

TEST_F(ImportOccurrences, EachOneThatIsWrittenHasAnEdit) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,2,,,,,,\n");
    ASSERT_TRUE(importBy("ann", at(6, 1, 12)).problems.empty());
    store::Site site = open();
    const auto edits = site.edits({.pid = tag});
    ASSERT_EQ(edits.size(), 2u);
    for (const store::Edit& edit : edits) {
        EXPECT_EQ(edit.origin, (store::EditOrigin{at(6, 1, 12), "import", "ann"}));
        EXPECT_EQ(edit.parts, store::EditedParts::occurrence);
    }
    EXPECT_EQ(edits[0].time, at(1, 1, 1));
    EXPECT_EQ(edits[1].time, at(1, 1, 0));
}

TEST_F(ImportOccurrences, ToImportThemAgainChangesNothing) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,2,e,r,a,1,,\n1-054-0-01-00,2024-01-01 01:00,2,,,,,,\n");
    ASSERT_TRUE(importBy("ann", at(6, 1, 12)).problems.empty());
    const auto before = [&] {
        store::Site site = open();
        return std::pair(read(site), site.edits());
    }();
    EXPECT_EQ(before.second.size(), 3u);
    const ImportResult again = importBy("bob", at(6, 2, 12));
    EXPECT_TRUE(again.updated);
    EXPECT_EQ(again.occurrences, 3u);
    store::Site site = open();
    EXPECT_EQ(read(site), before.first);
    EXPECT_EQ(site.edits(), before.second);
}

TEST_F(ImportOccurrences, AnUpdateReplacesThoseOfItsIntervalsAndKeepsAllOthers) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,3,e,,,,,\n1-054-0-01-00,2024-01-01 01:00,1,d,,,,,\n");
    ASSERT_TRUE(import().problems.empty());
    writeRows("1-054-0-01-00,2024-01-01 01:00,1,other,,,,,\n");
    ASSERT_TRUE(importBy("bob", at(6, 2, 12)).updated);
    store::Site site = open();
    const Occurrence old{excursion("e"), {}};
    EXPECT_EQ(read(site),
              (std::map<store::Time, Occurrence>{
                  {at(1, 1, 0), old}, {at(1, 1, 1), {{}, downtime("other")}}, {at(1, 1, 2), old}}));
    EXPECT_EQ(site.edits({.limit = 1})[0].origin.user, "bob");
    EXPECT_EQ(site.edits().size(), 4u);
}

TEST_F(ImportOccurrences, AnUpdateWithoutTheFileKeepsAll) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,3,e,,,,,\n");
    ASSERT_TRUE(import().problems.empty());
    std::filesystem::remove(folder_.site() / "occurrences.csv");
    const ImportResult result = import(true);
    EXPECT_TRUE(result.updated);
    EXPECT_EQ(result.occurrences, 0u);
    store::Site site = open();
    EXPECT_EQ(read(site).size(), 3u);
}

TEST_F(ImportOccurrences, ARefusedUpdateWritesNone) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,1,e,,,,,\n");
    ASSERT_TRUE(import().problems.empty());
    writeRows("1-053-0-01-00,2024-01-01 00:00,2,x,,,,,\n1-053-0-01-00,2024-01-01 05:00,0,x,,,,,\n");
    EXPECT_EQ(import(true).problems.size(), 1u);
    store::Site site = open();
    EXPECT_EQ(read(site), (std::map<store::Time, Occurrence>{{at(1, 1, 0), {excursion("e"), {}}}}));
    EXPECT_EQ(site.edits().size(), 1u);
}

TEST_F(ImportOccurrences, ACheckCountsThemAndWritesNothing) {
    writeSite("1-053-0-01-00,2024-01-01 00:00,1000,e,,,,,\n");
    ImportRequest request;
    request.folder = folder_.site();
    request.checkOnly = true;
    const ImportResult result = importSite(home(), request);
    EXPECT_TRUE(result.problems.empty());
    EXPECT_EQ(result.occurrences, 1000u);
    EXPECT_FALSE(std::filesystem::exists(folder_.home()));
}

TEST_F(ImportOccurrences, ARowIsRefusedForEachThingThatIsWrongWithIt) {
    writeSite("1-053-0-01-00,soon,0,,,,2,,1-999-0-00-00\n1-099-0-00-00,2024-01-01 00:00,x,,,,,,\n");
    const std::string counts = " is no count; it has to be a whole number from 1 to 2000000";
    const std::string times = " is no time; times look like 2007-03-25 06:00 or 2007-03-25 06:00:30";
    const std::string unknown = "parameters.csv has no parameter ";
    EXPECT_EQ(texts(import()),
              (std::vector<std::string>{
                  "occurrences.csv:2: column \"excludable\": \"2\" is no flag; it has to be 0 or 1",
                  "occurrences.csv:2: column \"count\": \"0\"" + counts,
                  "occurrences.csv:2: column \"start\": \"soon\"" + times,
                  "occurrences.csv:2: column \"limit_pid\": " + unknown + "1-999-0-00-00",
                  "occurrences.csv:3: column \"pid\": " + unknown + "1-099-0-00-00",
                  "occurrences.csv:3: column \"count\": \"x\"" + counts}));
}

TEST_F(ImportOccurrences, AMessageSaysWhatIsWrong) {
    EXPECT_EQ(
        problemOf("1-050-3-00-00,2024-01-01 00:00,,,,,,,"),
        "occurrences.csv:2: column \"pid\": 1-050-3-00-00 is not an occurrence parameter (I/O type 31)");
    EXPECT_EQ(
        problemOf("1-053-0-01-00,2024-01-01 00:30,,,,,,,"),
        "occurrences.csv:2: column \"start\": 2024-01-01 00:30 is not on the 1h interval of 1-050-3-00-00");
    EXPECT_EQ(problemOf("1-053-0-01-00,9999-12-31 23:00,2,,,,,,").substr(0, 34),
              "occurrences.csv:2: column \"count\":");
    EXPECT_EQ(problemOf("1-054-0-01-00,2024-01-01 00:00,,,,,,0.2,"),
              "occurrences.csv:2: column \"limit\": this has to be empty for a downtime, which has no limit");
    EXPECT_EQ(problemOf("1-053-0-01-00,2024-01-01 00:00,,,,,,,1-030-3-00-00"),
              "occurrences.csv:2: column \"limit\": the limit is missing; 1-030-3-00-00 is no constant that "
              "it could "
              "be taken from");
    EXPECT_EQ(problemOf("1-053-0-01-00,2024-01-01 00:00,,,,,,,x"),
              "occurrences.csv:2: column \"limit_pid\": \"x\" is no PID; PIDs look like 5-040-3-00-00 or "
              "504030000");
    EXPECT_EQ(problemOf("1-053-0-01-00,2024-01-01 00:00,,," + std::string(1001, 'x') + ",,,,"),
              "occurrences.csv:2: column \"reason\": the text has 1001 characters; 1000 are the most");
}

TEST_F(ImportOccurrences, RowsOfOneTagAndTypeMustNotOverlap) {
    writeSite(
        "1-053-0-01-00,2024-01-01 04:00,3,,,,,,\n"
        "1-053-0-01-00,2024-01-01 06:00,1,,,,,,\n"
        "1-053-0-01-00,2024-01-01 02:00,3,,,,,,\n"
        "1-053-0-01-00,2024-01-01 00:00,48,,,,,,\n"
        "1-053-0-01-00,2024-01-01 07:00,1,,,,,,\n"
        "1-053-0-01-00,2024-01-01 03:00,1,,,,,,\n"
        "1-054-0-01-00,2024-01-01 04:00,3,,,,,,\n"
        "1-055-0-01-00,2024-01-01 04:00,3,,,,,,\n");
    const auto found = texts(import());
    ASSERT_EQ(found.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(found[i],
                  "occurrences.csv:" + std::to_string(i + 3) +
                      ": column \"start\": line 2 has an excursion of 1-050-3-00-00 with some of the "
                      "same intervals already");
}

TEST_F(ImportOccurrences, SpecialValuesOfAnOccurrenceParameterAreChecked) {
    EXPECT_EQ(
        problemWith("1-055-0-01-00,-21,integer,101010000\n", ""),
        "special_values.csv: the occurrence parameter 1-055-0-01-00 needs the special value -21, the PID of "
        "the tag whose data points carry its occurrences");
    EXPECT_EQ(
        problemWith("-21,integer,101010000", "-21,integer,190500000"),
        "special_values.csv:9: column \"value\": the special value -21 of the occurrence parameter "
        "1-055-0-01-00 has to be the PID of a parameter with stored values (I/O type 38); 1-905-0-00-00 is "
        "none");
    EXPECT_EQ(problemWith("-21,integer,101010000", "-21,integer,5"),
              "special_values.csv:9: column \"value\": the special value -21 of the occurrence parameter "
              "1-055-0-01-00 is 5, which is no PID of parameters.csv");
    EXPECT_EQ(problemWith("-21,integer,101010000", "-21,number,101010000"),
              "special_values.csv:9: column \"value\": the special value -21 of the occurrence parameter "
              "1-055-0-01-00 has to be of the type integer");
    EXPECT_EQ(problemWith("-3,integer,3", "-3,integer,5"),
              "special_values.csv:3: column \"value\": the special value -3 of the occurrence parameter "
              "1-053-0-01-00 is 5; it has to be 3 for excursions or 4 for downtimes");
    EXPECT_EQ(problemWith("-13,integer,60", "-13,integer,3600"),
              "special_values.csv:11: column \"value\": the special value -13 of the occurrence parameter "
              "1-055-0-01-00 is 3600; it has to be 60, the interval of the tag 1-010-1-00-00 in seconds");
    EXPECT_EQ(problemWith("-21,integer,101010000", "-21,integer,107050000"),
              "special_values.csv:11: column \"value\": the special value -13 of the occurrence parameter "
              "1-055-0-01-00 is 60; the tag 1-070-5-00-00 has an interval of months, which has no length in "
              "seconds");
    EXPECT_EQ(problemWith("1003,integer,190500000", "1003,integer,105030000"),
              "special_values.csv:5: column \"value\": the special value 1003 of the occurrence parameter "
              "1-053-0-01-00 has to be the PID of a constant (I/O type 4 or 34); 1-050-3-00-00 is none");
    EXPECT_EQ(problemWith("1-055-0-01-00,-21", "1-055-0-01-00,1003,integer,190500000\n1-055-0-01-00,-21"),
              "special_values.csv:9: column \"value\": the special value 1003 of the occurrence parameter "
              "1-055-0-01-00 is for excursions; a downtime has no limit");
    EXPECT_EQ(problemWith("-3,integer,3", "-3,integer,x"),
              "special_values.csv:3: column \"value\": \"x\" is no integer; it has to be a whole number from "
              "-2147483648 to 2147483647");
}

TEST_F(ImportOccurrences, TheSameNumbersOfOtherParametersAreTheSitesOwn) {
    writeSite("");
    folder_.write(
        "special_values.csv",
        std::string(specialValues) + "1-050-3-00-00,-21,text,anything\n1-030-3-00-00,1003,boolean,true\n");
    EXPECT_EQ(texts(import()), std::vector<std::string>{});
}

TEST_F(ImportOccurrences, AnOccurrenceParameterHasNoValuesOfItsOwn) {
    writeSite("");
    folder_.write("values/more.csv", "time,1-054-0-01-00\n2024-01-01 00:00,1\n");
    EXPECT_EQ(
        texts(import()),
        std::vector<std::string>{"values/more.csv:1: column \"1-054-0-01-00\": 1-054-0-01-00 is a constant, "
                                 "calculated or occurrence parameter, and has no values of its own"});
}

TEST_F(ImportOccurrences, AMisspeltFileIsRefusedWithTheNameThatWasMeant) {
    writeSite("");
    folder_.write("occurrence.csv", "pid,start\n");
    const auto found = texts(import());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_NE(found[0].find("\"occurrences.csv\""), std::string::npos) << found[0];
}

}  // namespace
}  // namespace vtdn::client

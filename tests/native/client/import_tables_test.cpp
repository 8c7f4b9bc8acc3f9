// What site files say beside parameters and values: types, special values, relationships, names.
#include "import_fixture.h"

namespace vtdn::client {
namespace {

using store::SpecialValue;

class ImportTables : public test::Import {
  protected:
    void writeTables() const {
        folder_.writePlant();
        folder_.write("parameters.csv",
                      "pid,name,interval,io_type,value,aggregation,formula,uses,type\n"
                      "1-030-1-00-00,Heat of the minute,1m,38,,,,,3\n"
                      "1-030-3-00-00,Heat input,1h,38,,,,,\n"
                      "1-050-3-00-00,NOx rate,1h,38,,,,,3\n"
                      "1-010-1-00-00,Load,1m,38,,,,,45\n"
                      "1-905-0-00-00,NOx limit,,4,0.20,,,,0\n"
                      "1-030-3-02-00,Heat from minutes,1h,10,,average,,1-030-1-00-00,3\n"
                      "1-030-4-02-00,Heat of the day,1d,10,,sum,,1-030-3-02-00,\n"
                      "1-051-3-02-00,NOx mass,1h,10,,,[1-050-3-00-00] * 2,1-050-3-00-00,\n"
                      "1-070-5-00-00,Coal,1M,38,,,,,\n");
        folder_.write("special_values.csv",
                      "value,pid,type,id\n"
                      "40CFR75,1-050-3-00-00,text,-22\n"
                      "true,105030000,boolean,-117\n"
                      "false,1-050-3-00-00,boolean,-25\n"
                      "101030000,1-050-3-00-00,integer,1001\n"
                      "-2147483648,1-050-3-00-00,integer,2147483647\n"
                      "1,1-050-3-00-00,number,5\n"
                      ",1-050-3-00-00,text,6\n"
                      ",1-050-3-00-00,null,7\n"
                      "\"1,2\",1-905-0-00-00,text,-22\n");
        folder_.write("relationships.csv",
                      "pid,related_pid\n"
                      "1-030-3-02-00,1-030-1-00-00\n"
                      "103040200,103030200\n");
        folder_.write("units.csv", "unit,name\n1,Boiler \xC3\x84\n19,\"Boiler, old\"\n");
        folder_.write("parameter_codes.csv", "code,short_name,long_name\n7,SO2,Sulfur dioxide\n32767,NOX,\n");
    }
    /// Line and column of each problem.
    static std::vector<std::string> places(const ImportResult& result) {
        std::vector<std::string> places;
        for (const ImportProblem& problem : result.problems)
            places.push_back(std::to_string(problem.line) + " " + problem.column);
        return places;
    }
    static std::vector<store::Pid> related(store::Site& site) {
        std::vector<store::Pid> pids;
        for (const auto& [pid, relationship] : site.relationships().relationships()) pids.push_back(pid);
        return pids;
    }
};

TEST_F(ImportTables, AreReadBackFromTheSiteAsTheyWereWritten) {
    writeTables();
    const ImportResult result = import();
    ASSERT_TRUE(result.problems.empty()) << result.problems[0].text();

    store::Site site = open();
    EXPECT_EQ(site.paramsOfType(3), (std::vector<store::Pid>{103010000, 103030200, 105030000}));
    EXPECT_EQ(site.paramsOfType(45), std::vector<store::Pid>{101010000});
    EXPECT_EQ(site.parameters().get(103030000).parameter_type, 0);
    EXPECT_EQ(site.specialValue(105030000, -22), SpecialValue(std::string("40CFR75")));
    EXPECT_EQ(site.specialValue(105030000, -117), SpecialValue(true));
    EXPECT_EQ(site.specialValue(105030000, -25), SpecialValue(false));
    EXPECT_EQ(site.specialValue(105030000, 1001), SpecialValue(101030000));
    EXPECT_EQ(site.specialValue(105030000, 2147483647), SpecialValue(INT32_MIN));
    EXPECT_EQ(site.specialValue(105030000, 5), SpecialValue(1.0));
    EXPECT_EQ(site.specialValue(105030000, 6), SpecialValue(std::string()));
    EXPECT_EQ(site.specialValue(105030000, 7), SpecialValue());
    EXPECT_EQ(site.specialValue(190500000, -22), SpecialValue(std::string("1,2")));
    EXPECT_EQ(site.specialValue(190500000, -25), SpecialValue());
    EXPECT_EQ(related(site), (std::vector<store::Pid>{103010000, 103030200, 103040200}));
    EXPECT_EQ(site.relationship(103010000)->interval_unit, "n");
    EXPECT_EQ(site.relationship(103040200)->interval_unit, "d");
    EXPECT_EQ(site.unitName(1), "Boiler \xC3\x84");
    EXPECT_EQ(site.unitName(19), "Boiler, old");
    EXPECT_EQ(site.unitName(2), "");
    EXPECT_EQ(site.parameterCodes().codes().at(7), (store::ParameterCodeName{7, "SO2", "Sulfur dioxide"}));
    EXPECT_EQ(site.parameterCodes().codes().size(), 2u);
    EXPECT_TRUE(site.check().empty());
}

TEST_F(ImportTables, MayAllBeAbsent) {
    folder_.writePlant();
    ASSERT_TRUE(import().problems.empty());
    store::Site site = open();
    EXPECT_EQ(site.parameters().get(105030000).parameter_type, 0);
    EXPECT_EQ(site.specialValue(105030000, -22), SpecialValue());
    EXPECT_TRUE(site.relationships().relationships().empty());
    EXPECT_TRUE(site.parameterCodes().codes().empty());
    EXPECT_EQ(site.unitName(1), "");
}

TEST_F(ImportTables, AnUpdatePutsThoseOfTheFilesInThePlaceOfAll) {
    writeTables();
    import();
    folder_.write("special_values.csv", "pid,id,type,value\n1-030-3-00-00,-25,boolean,true\n");
    folder_.write("relationships.csv", "pid,related_pid\n1-030-3-02-00,1-030-1-00-00\n");
    folder_.write("units.csv", "unit,name\n2,Turbine\n");
    folder_.write("parameter_codes.csv", "code,short_name\n1,CO2\n");
    const ImportResult result = import(true);
    ASSERT_TRUE(result.problems.empty()) << result.problems[0].text();
    EXPECT_TRUE(result.updated);

    store::Site site = open();
    EXPECT_EQ(site.specialValue(103030000, -25), SpecialValue(true));
    EXPECT_EQ(site.specialValue(105030000, -22), SpecialValue());
    EXPECT_EQ(related(site), (std::vector<store::Pid>{103010000, 103030200}));
    EXPECT_EQ(site.unitName(1), "");
    EXPECT_EQ(site.unitName(2), "Turbine");
    EXPECT_EQ(site.parameterCodes().codes().size(), 1u);
    EXPECT_EQ(site.read(103030000, at(1, 1, 0)), (store::Item{212.4, 1}));
}

TEST_F(ImportTables, AnUpdateEmptiesWhatHasNoFileAnyMore) {
    writeTables();
    import();
    for (const char* name : {"special_values.csv", "relationships.csv", "units.csv", "parameter_codes.csv",
                             "values/2024-01.csv", "values/2024-02.csv"})
        std::filesystem::remove(folder_.site() / name);
    ASSERT_TRUE(import(true).updated);
    store::Site site = open();
    EXPECT_EQ(site.specialValue(105030000, -22), SpecialValue());
    EXPECT_TRUE(site.relationships().relationships().empty());
    EXPECT_TRUE(site.parameterCodes().codes().empty());
    EXPECT_EQ(site.unitName(1), "");
    EXPECT_EQ(site.read(103030000, at(1, 1, 0)), (store::Item{212.4, 1}));
}

TEST_F(ImportTables, ARefusedUpdateLeavesThemAsTheyWere) {
    writeTables();
    import();
    folder_.write("units.csv", "unit,name\n2,Turbine\n");
    folder_.write("special_values.csv", "pid,id,type,value\n1-030-3-00-00,-25,boolean,yes\n");
    EXPECT_EQ(import(true).problems.size(), 1u);
    store::Site site = open();
    EXPECT_EQ(site.unitName(1), "Boiler \xC3\x84");
    EXPECT_EQ(site.unitName(2), "");
    EXPECT_EQ(site.specialValue(105030000, -22), SpecialValue(std::string("40CFR75")));
    EXPECT_EQ(related(site).size(), 3u);
}

TEST_F(ImportTables, EveryCellOfASpecialValueIsChecked) {
    writeTables();
    folder_.write("special_values.csv",
                  "pid,id,type,value\n"
                  "1-099-3-00-00,x,boolean,1\n"
                  "1-050-3-00-00,1,text,a\n"
                  "1-050-3-00-00,1,flag,a\n"
                  "1-050-3-00-00,2,integer,2.0\n");
    const ImportResult result = import();
    EXPECT_EQ(places(result),
              (std::vector<std::string>{"2 pid", "2 id", "2 value", "4 type", "4 id", "5 value"}));
    EXPECT_EQ(result.problems[0].text(),
              "special_values.csv:2: column \"pid\": parameters.csv has no parameter 1-099-3-00-00");
}

TEST_F(ImportTables, EachParameterThatDoesNotFollowItsGroupIsNamedOnce) {
    writeTables();
    folder_.write("relationships.csv",
                  "pid,related_pid\n"
                  "1-030-3-02-00,1-030-1-00-00\n"
                  "1-030-4-02-00,1-030-1-00-00\n"    // its source is in the group by way of the first row
                  "1-051-3-02-00,1-030-4-02-00\n"    // a formula
                  "1-010-1-00-00,1-051-3-02-00\n"    // the same formula again
                  "1-050-3-00-00,1-070-5-00-00\n"    // months
                  "1-050-3-00-00,1-030-3-00-00\n"    // the same interval
                  "1-905-0-00-00,1-030-3-00-00\n");  // a constant
    const ImportResult result = import();
    EXPECT_EQ(places(result), (std::vector<std::string>{"6 ", "7 ", "8 ", "4 "}));
    EXPECT_NE(result.problems[3].text().find("relationships.csv:4: The parameter 1-051-3-02-00 "),
              std::string::npos)
        << result.problems[3].text();
}

TEST_F(ImportTables, AnAggregationHasToBeOfItsOwnGroup) {
    writeTables();
    folder_.write("relationships.csv",
                  "pid,related_pid\n"
                  "1-030-3-02-00,1-030-1-00-00\n"
                  "1-050-3-00-00,1-030-4-02-00\n");
    EXPECT_EQ(places(import()), std::vector<std::string>{"3 "});
}

TEST_F(ImportTables, AMistakeInAParameterIsNotToldAgainWithItsRelationship) {
    folder_.writePlant();
    folder_.write("parameters.csv",
                  "pid,name,interval,io_type,aggregation,formula,uses\n"
                  "1-010-1-00-00,a,1m,38,,,\n"
                  "1-030-3-00-00,b,1x,38,,,\n"
                  "1-050-3-00-00,c,1h,10,,[1-010-1-00-00] *,1-010-1-00-00\n"
                  "1-051-3-02-00,d,1h,10,sum,,\n"
                  "1-905-0-00-00,e,,4,,,\n");
    folder_.write("relationships.csv",
                  "pid,related_pid\n"
                  "1-010-1-00-00,1-030-3-00-00\n"
                  "1-010-1-00-00,1-051-3-02-00\n"
                  "1-051-3-02-00,1-999-3-00-00\n");
    std::filesystem::remove_all(folder_.site() / "values");
    const ImportResult result = import();
    std::vector<std::string> files;
    for (const ImportProblem& problem : result.problems) files.push_back(problem.file);
    EXPECT_EQ(std::count(files.begin(), files.end(), "relationships.csv"), 1)
        << result.problems.back().text();
    EXPECT_EQ(result.problems.back().line, 4u);
}

TEST_F(ImportTables, AMisspeltFileIsRefusedWithTheNameThatWasMeant) {
    writeTables();
    folder_.write("special_value.csv", "pid,id,type,value\n");
    const ImportResult result = import();
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_NE(result.problems[0].text().find("\"special_values.csv\""), std::string::npos);
}

}  // namespace
}  // namespace vtdn::client

// The names of units and of parameter codes.

#include <gtest/gtest.h>

#include "demo_site.h"
#include "expect_error.h"

namespace vtdn::store::test {
namespace {

TEST(Units, ComeBackAfterARestartAndOthersHaveNoName) {
    DemoSite demo;
    Database& config = demo.site.database(DatabaseKind::config);
    EXPECT_EQ(demo.site.unitName(0), "");
    replaceUnits(
        config, std::vector<UnitName>{{0, "Common"}, {19, std::string("a\0b \xF0\x9F\x8F\xAD", 8)}, {5, ""}});
    Site other = demo.reopen();
    EXPECT_EQ(other.unitName(0), "Common");
    EXPECT_EQ(other.unitName(19), std::string("a\0b \xF0\x9F\x8F\xAD", 8));
    for (const std::int32_t unit : {5, 1, -1, 20, 2'147'483'647}) EXPECT_EQ(other.unitName(unit), "");
    EXPECT_EQ(demo.site.unitName(0), "") << "kept until the cache is flushed";
    demo.site.flushCache();
    EXPECT_EQ(demo.site.unitName(0), "Common");
}

TEST(Units, OutsideTheirRangeOrGivenTwiceAreRefusedAndNothingChanges) {
    DemoSite demo;
    Database& config = demo.site.database(DatabaseKind::config);
    replaceUnits(config, std::vector<UnitName>{{5, "Boiler"}});
    for (const std::vector<UnitName>& units :
         {std::vector<UnitName>{{-1, "x"}}, {{20, "x"}}, {{1, "a"}, {1, "b"}}}) {
        const std::string sentence = expectError(ErrorKind::outOfRange, [&] { replaceUnits(config, units); });
        EXPECT_NE(sentence.find("unit " + std::to_string(units[0].unit)), std::string::npos) << sentence;
    }
    EXPECT_EQ(demo.site.unitName(5), "Boiler");
    EXPECT_EQ(UnitTable::load(config).units().size(), 1U);
}

TEST(ParameterCodes, ComeBackAfterARestart) {
    DemoSite demo;
    const std::vector<ParameterCodeName> codes{
        {0, "", "None"}, {32'767, "SO2", std::string("Sulfur\0dioxide \xE2\x82\x82", 18)}};
    replaceParameterCodes(demo.site.database(DatabaseKind::config), codes);
    Site other = demo.reopen();
    ASSERT_EQ(other.parameterCodes().codes().size(), 2U);
    EXPECT_EQ(other.parameterCodes().codes().at(0), codes[0]);
    EXPECT_EQ(other.parameterCodes().codes().at(32'767), codes[1]);
}

TEST(ParameterCodes, OutsideTheirRangeOrGivenTwiceAreRefusedAndNothingChanges) {
    DemoSite demo;
    Database& config = demo.site.database(DatabaseKind::config);
    replaceParameterCodes(config, std::vector<ParameterCodeName>{{3, "SO2", ""}});
    for (const std::vector<ParameterCodeName>& codes :
         {std::vector<ParameterCodeName>{{-1, "", ""}}, {{32'768, "", ""}}, {{5, "a", ""}, {5, "b", ""}}})
        expectError(ErrorKind::outOfRange, [&] { replaceParameterCodes(config, codes); });
    EXPECT_EQ(demo.site.parameterCodes().codes().size(), 1U);
}

TEST(Configuration, RowsThatNobodyWroteAreDamage) {
    for (const char* change : {"INSERT INTO unit VALUES (20, 'x')", "INSERT INTO unit VALUES (-1, 'x')",
                               "INSERT INTO parameter_code VALUES (32768, '', '')",
                               "INSERT INTO parameter_code VALUES (-1, '', '')",
                               "UPDATE parameter SET constant_kind = 9 WHERE pid = 590500000",
                               "UPDATE parameter SET constant = 'x' WHERE pid = 590500000",
                               "UPDATE parameter SET calculation = 'median' WHERE pid = 504030200"}) {
        DemoSite demo;
        demo.site.database(DatabaseKind::config).execute(change);
        const std::string sentence =
            expectError(ErrorKind::databaseDamaged, [&] { (void)demo.site.configuration(); });
        EXPECT_NE(sentence.find("config.db"), std::string::npos) << sentence;
    }
}

TEST(Load, TakesAllMetadataAndLeavesNoneOfItWhenItIsNotCommitted) {
    DemoSite demo;
    const auto fill = [&](Load& load) {
        load.replaceUnits(std::vector<UnitName>{{5, "Boiler"}});
        load.replaceMonitorCodes(std::vector<MonitorCodeName>{{12, "SUB", "Substitute", 500}});
        load.replaceParameterCodes(std::vector<ParameterCodeName>{{3, "SO2", ""}});
        load.replaceParameters(demoParameters());
        load.replaceSpecialValues(std::vector<SpecialValueEntry>{{minutePid, 1001, hourPid}});
        load.replaceRelationships(std::vector<Relationship>{{minutePid, averagePid}});
    };
    Site other = demo.reopen();
    const auto known = [&] {
        other.flushCache();
        const bool all = other.unitName(5) == "Boiler" && other.monitorCodes().contains(12) &&
                         other.parameterCodes().codes().contains(3) &&
                         other.specialValue(minutePid, 1001) == SpecialValue(hourPid) &&
                         other.relationship(averagePid) != nullptr;
        const bool any = !other.unitName(5).empty() || other.monitorCodes().contains(12) ||
                         other.parameterCodes().codes().contains(3) ||
                         other.specialValue(minutePid, 1001) != SpecialValue() ||
                         other.relationship(averagePid) != nullptr;
        return all ? "all" : any ? "some" : "none";
    };
    {
        Load load(demo.site);
        fill(load);
        EXPECT_EQ(demo.site.unitName(5), "Boiler") << "the site that loads sees what it has loaded";
        EXPECT_STREQ(known(), "none");
    }
    EXPECT_EQ(demo.site.unitName(5), "");
    EXPECT_STREQ(known(), "none");
    {
        Load load(demo.site);
        fill(load);
        load.commit();
    }
    EXPECT_STREQ(known(), "all");
}

}  // namespace
}  // namespace vtdn::store::test

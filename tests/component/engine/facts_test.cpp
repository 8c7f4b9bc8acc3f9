// Facts about a site: special values, relationships, names, and the cache of all that.
#include "special_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

class EngineFacts : public OnSpecialFunctions {
  protected:
    [[nodiscard]] com::Variant specialValue(LONG pid, LONG id) const { return param(pid).specialValue(id); }
    [[nodiscard]] std::wstring name(engine::CodeName which, LONG code, bool longName) const {
        return std::wstring(engine.utils().name(which, code, longName).view());
    }
};

}  // namespace

TEST_F(EngineFacts, SpecialValuesKeepTheirTypes) {
    giveSpecialValues({{hourPid, -22, "40CFR75"s},
                       {hourPid, -25, true},
                       {hourPid, -114, false},
                       {hourPid, -32, 1},
                       {hourPid, 7, 2.5},
                       {hourPid, 8, store::SpecialValue()},
                       {hourPid, 0, "a\0b \xE2\x80\x93"s}});
    EXPECT_EQ(com::view(specialValue(hourPid, -22).get().bstrVal), L"40CFR75");
    EXPECT_EQ(com::view(specialValue(hourPid, 0).get().bstrVal), L"a\0b \u2013"s);
    const com::Variant yes = specialValue(hourPid, -25);
    ASSERT_EQ(yes.type(), VT_BOOL);
    EXPECT_EQ(yes.get().boolVal, VARIANT_TRUE);
    const com::Variant no = specialValue(hourPid, -114);
    ASSERT_EQ(no.type(), VT_BOOL);
    EXPECT_EQ(no.get().boolVal, VARIANT_FALSE);
    const com::Variant whole = specialValue(hourPid, -32);
    ASSERT_EQ(whole.type(), VT_I4);
    EXPECT_EQ(whole.get().lVal, 1);
    const com::Variant real = specialValue(hourPid, 7);
    ASSERT_EQ(real.type(), VT_R8);
    EXPECT_EQ(real.get().dblVal, 2.5);
    EXPECT_TRUE(specialValue(hourPid, 8).isNull());
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineFacts, ASpecialValueThatAParameterDoesNotHaveIsNull) {
    giveSpecialValues({{hourPid, -25, true}});
    for (const LONG id : {0L, -22L, LONG_MAX, LONG_MIN})
        EXPECT_TRUE(specialValue(hourPid, id).isNull()) << id;
    EXPECT_TRUE(specialValue(minutePid, -25).isNull());
    EXPECT_TRUE(specialValue(limitPid, -25).isNull());
}

TEST_F(EngineFacts, SpecialValuesSurviveARestartOfTheEngine) {
    giveSpecialValues({{hourPid, -97, "Unit 5"s}});
    engine.close();
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_EQ(com::view(specialValue(hourPid, -97).get().bstrVal), L"Unit 5");
}

TEST_F(EngineFacts, AParameterKnowsItsPidWithoutASite) {
    const engine::Param hours = param(hourPid);
    EXPECT_EQ(hours.pid(), hourPid);
    engine.close();
    EXPECT_EQ(hours.pid(), hourPid);
}

TEST_F(EngineFacts, RelatedParametersTellTheirInterval) {
    configure([](store::Load& load) {
        const std::vector<store::Relationship> related{{minutePid, averagePid},
                                                       {hourPid, store::test::dayMaximumPid}};
        load.replaceRelationships(related);
    });
    const auto minutes = param(minutePid).relationship();
    ASSERT_TRUE(minutes);
    EXPECT_EQ(minutes.intervalCount(), 1);
    EXPECT_EQ(minutes.text(&DIRelationship::get_IntervalUnit).view(), L"n");
    EXPECT_EQ(param(averagePid).relationship().text(&DIRelationship::get_IntervalUnit).view(), L"h");
    EXPECT_EQ(param(store::test::dayMaximumPid).relationship().text(&DIRelationship::get_IntervalUnit).view(),
              L"d");
}

TEST_F(EngineFacts, ARelationshipNamesAllItsLevels) {
    configure([](store::Load& load) {
        const std::vector<store::Relationship> related{{averagePid, minutePid}};
        load.replaceRelationships(related);
    });
    const com::Bstr xml = param(averagePid).relationship().text(&DIRelationship::get_DetailXML);
    EXPECT_EQ(xml.view().find(L"<Relationship"), 0U);
    const auto shorter = xml.view().find(L"504010000");
    const auto longer = xml.view().find(L"504030200");
    EXPECT_NE(shorter, std::wstring::npos);
    EXPECT_NE(longer, std::wstring::npos);
    EXPECT_LT(shorter, longer);
    EXPECT_EQ(param(minutePid).relationship().text(&DIRelationship::get_DetailXML).view(), xml.view());
}

TEST_F(EngineFacts, AParameterWithoutOtherLevelsHasNoRelationship) {
    DIRelationship* none = reinterpret_cast<DIRelationship*>(1);
    EXPECT_EQ(param(hourPid).get()->get_Relationship(&none), S_OK);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineFacts, ARelationshipOutlivesItsEngine) {
    configure([](store::Load& load) {
        const std::vector<store::Relationship> related{{averagePid, minutePid}};
        load.replaceRelationships(related);
    });
    const auto relationship = param(averagePid).relationship();
    engine.close();
    EXPECT_EQ(relationship.intervalCount(), 1);
    EXPECT_EQ(relationship.text(&DIRelationship::get_IntervalUnit).view(), L"h");
}

TEST_F(EngineFacts, NamesOfMonitorCodesAreLongOrShort) {
    configure([](store::Load& load) {
        const std::vector<store::MonitorCodeName> codes{{0, "OK", "No code", 0},
                                                        {12, "MODC 12", "Maximum \xE2\x80\x93", 1}};
        load.replaceMonitorCodes(codes);
    });
    EXPECT_EQ(engine.utils().highest(&DIUtils::get_MaxMC), 12);
    EXPECT_EQ(name(&DIUtils::MCName, 12, true), L"Maximum \u2013");
    EXPECT_EQ(name(&DIUtils::MCName, 12, false), L"MODC 12");
    EXPECT_EQ(name(&DIUtils::MCName, 0, true), L"No code");
    for (const LONG unknown : {11L, 13L, -1L, LONG_MAX, LONG_MIN}) {
        EXPECT_EQ(name(&DIUtils::MCName, unknown, true), L"") << unknown;
        EXPECT_EQ(name(&DIUtils::MCName, unknown, false), L"") << unknown;
    }
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineFacts, AnyTruthAsksForTheLongName) {
    configure([](store::Load& load) {
        const std::vector<store::MonitorCodeName> codes{{1, "short", "long", 0}};
        load.replaceMonitorCodes(codes);
    });
    com::Bstr text;
    EXPECT_EQ(engine.utils().get()->MCName(1, 1, text.receive()), S_OK);
    EXPECT_EQ(text.view(), L"long");
}

TEST_F(EngineFacts, NamesOfParameterCodesAreLongOrShort) {
    configure([](store::Load& load) {
        const std::vector<store::ParameterCodeName> codes{{40, "SO2", "SO2 mass"}};
        load.replaceParameterCodes(codes);
    });
    EXPECT_EQ(engine.utils().highest(&DIUtils::get_MaxPC), 40);
    EXPECT_EQ(name(&DIUtils::PCName, 40, true), L"SO2 mass");
    EXPECT_EQ(name(&DIUtils::PCName, 40, false), L"SO2");
    for (const LONG unknown : {0L, 39L, 41L, -1L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(name(&DIUtils::PCName, unknown, true), L"") << unknown;
}

TEST_F(EngineFacts, ASiteWithoutCodesHasCodeZeroAsItsHighest) {
    EXPECT_EQ(engine.utils().highest(&DIUtils::get_MaxMC), 0);
    EXPECT_EQ(engine.utils().highest(&DIUtils::get_MaxPC), 0);
    EXPECT_EQ(name(&DIUtils::PCName, 0, true), L"");
}

TEST_F(EngineFacts, UnitsHaveNamesOrNone) {
    configure([](store::Load& load) {
        const std::vector<store::UnitName> units{{0, "Common"}, {5, "Barry 5"}, {19, "Last"}};
        load.replaceUnits(units);
    });
    EXPECT_EQ(engine.utils().unitName(0).view(), L"Common");
    EXPECT_EQ(engine.utils().unitName(5).view(), L"Barry 5");
    EXPECT_EQ(engine.utils().unitName(19).view(), L"Last");
    for (const LONG unknown : {1L, 18L, 20L, -1L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(engine.utils().unitName(unknown).view(), L"") << unknown;
}

TEST_F(EngineFacts, TheSiteIdIsThatOfTheOpenSite) {
    EXPECT_EQ(engine.text(&DIEngine::get_SiteID).view(), L"DEMO");
    engine.close();
    EXPECT_EQ(engine.text(&DIEngine::get_SiteID).view(), L"");
}

TEST_F(EngineFacts, WhatAnotherProgramConfiguredIsSeenAfterTheCacheIsFlushed) {
    EXPECT_EQ(param(hourPid).text(&DIParam::get_MeasUnits).view(), L"");
    EXPECT_EQ(engine.utils().unitName(5).view(), L"");
    {
        store::Site site(connections(), "DEMO");
        store::Load load(site);
        auto all = store::test::demoParameters();
        all[1].units = "lb/hr";
        load.replaceParameters(all);
        const std::vector<store::UnitName> units{{5, "Barry 5"}};
        load.replaceUnits(units);
        load.commit();
    }
    const engine::Param before = param(hourPid);
    EXPECT_EQ(before.text(&DIParam::get_MeasUnits).view(), L"") << "Kept until it is flushed";
    engine.params().flushCache();
    EXPECT_EQ(before.text(&DIParam::get_MeasUnits).view(), L"lb/hr");
    EXPECT_EQ(engine.utils().unitName(5).view(), L"Barry 5");
}

TEST_F(EngineFacts, WithoutASiteThereIsNothingToFlush) {
    engine.close();
    engine.params().flushCache();
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineFacts, NamesAndFactsNeedASite) {
    const engine::Param hours = param(hourPid);
    const engine::Utils utils = engine.utils();
    engine.close();
    const std::vector<std::function<void()>> calls{
        [&] { static_cast<void>(utils.highest(&DIUtils::get_MaxMC)); },
        [&] { static_cast<void>(utils.highest(&DIUtils::get_MaxPC)); },
        [&] { static_cast<void>(utils.name(&DIUtils::MCName, 0, true)); },
        [&] { static_cast<void>(utils.name(&DIUtils::PCName, 0, true)); },
        [&] { static_cast<void>(utils.unitName(0)); },
        [&] { static_cast<void>(hours.specialValue(-25)); },
        [&] { static_cast<void>(hours.relationship()); },
    };
    for (const auto& call : calls) {
        const Failure failure = failureOf(call);
        EXPECT_EQ(failure.number, 91);
        EXPECT_EQ(heard.take(), std::vector{failure.description});
    }
}

TEST_F(EngineFacts, AParameterThatIsGoneIsRefused) {
    const engine::Param months = param(monthPid);
    configure([](store::Load& load) {
        auto all = store::test::demoParameters();
        std::erase_if(all, [](const store::Parameter& p) { return p.pid == monthPid; });
        load.replaceParameters(all);
    });
    EXPECT_EQ(failureOf([&] { static_cast<void>(months.specialValue(1)); }).number, 9);
    EXPECT_EQ(failureOf([&] { static_cast<void>(months.relationship()); }).number, 9);
    EXPECT_EQ(heard.take().size(), 2U);
}

TEST_F(EngineFacts, NullPointersAreRefused) {
    const auto utils = engine.utils();
    EXPECT_EQ(utils.get()->get_MaxMC(nullptr), E_POINTER);
    EXPECT_EQ(utils.get()->get_MaxPC(nullptr), E_POINTER);
    EXPECT_EQ(utils.get()->MCName(0, VARIANT_TRUE, nullptr), E_POINTER);
    EXPECT_EQ(utils.get()->PCName(0, VARIANT_TRUE, nullptr), E_POINTER);
    EXPECT_EQ(utils.get()->UnitName(0, nullptr), E_POINTER);
    const engine::Param hours = param(hourPid);
    EXPECT_EQ(hours.get()->get_PID(nullptr), E_POINTER);
    EXPECT_EQ(hours.get()->SpecialValue(1, nullptr), E_POINTER);
    EXPECT_EQ(hours.get()->get_Relationship(nullptr), E_POINTER);
    EXPECT_EQ(engine.get()->get_SiteID(nullptr), E_POINTER);
    EXPECT_EQ(engine.get()->get_AlarmWriter(nullptr), E_POINTER);
}

}  // namespace vtdn::embedded::test

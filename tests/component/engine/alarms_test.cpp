// The alarm log, written through the engine and read from the store.
#include <cmath>

#include "on_engine.h"
#include "store/alarms.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

struct Given {
    std::wstring siteId = L"DEMO";
    DATE at = hour(1.5);
    std::wstring message = L"High";
    std::wstring category = L"Limit";
    LONG severity = 2;
    std::wstring group = L"Stack";
    std::wstring source = L"Test";
};

class EngineAlarms : public OnEngine {
  protected:
    void write(const Given& given) const {
        const com::Bstr siteId(given.siteId);
        const com::Bstr message(given.message);
        const com::Bstr category(given.category);
        const com::Bstr group(given.group);
        const com::Bstr source(given.source);
        engine.alarmWriter().writeAlarm(
            siteId, {given.at, message.get(), category.get(), given.severity, group.get(), source.get()});
    }
    Failure refused(const Given& given) {
        Failure failure = failureOf([&] { write(given); });
        EXPECT_NE(failure.number, 0);
        EXPECT_EQ(heard.take(), std::vector{failure.description});
        return failure;
    }
    [[nodiscard]] std::vector<store::Alarm> log() const {
        return store::Site(connections(), "DEMO").alarms();
    }
};

}  // namespace

TEST_F(EngineAlarms, AnAlarmIsInTheLogWithAllThatWasSaid) {
    write({L"DEMO", hour(1.5), L"SO2 high \u2013 \U0001F3ED", L"Limit", 4, L"Stack", L"a\0b"s});
    const auto all = log();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].site_id, "DEMO");
    EXPECT_EQ(all[0].time, store::timeOf({2007, 3, 25, 1, 30, 0}));
    EXPECT_EQ(all[0].message, "SO2 high \xE2\x80\x93 \xF0\x9F\x8F\xAD");
    EXPECT_EQ(all[0].category, "Limit");
    EXPECT_EQ(all[0].severity, 4);
    EXPECT_EQ(all[0].group, "Stack");
    EXPECT_EQ(all[0].source, "a\0b"s);
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineAlarms, EmptyTextsAreKeptEmptyAndTheSiteIsThisOne) {
    com::check(
        engine.alarmWriter().get()->WriteAlarm(nullptr, hour(1), nullptr, nullptr, 0, nullptr, nullptr));
    const auto all = log();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].site_id, "DEMO");
    EXPECT_EQ(all[0].message + all[0].category + all[0].group + all[0].source, "");
    EXPECT_EQ(all[0].severity, 0);
}

TEST_F(EngineAlarms, SeveritiesGoFromZeroToFour) {
    for (const LONG severity : {0L, 1L, 2L, 3L, 4L}) write({.severity = severity});
    for (const LONG severity : {-1L, 5L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(refused({.severity = severity}).number, 6) << severity;
    EXPECT_EQ(log().size(), 5U);
}

TEST_F(EngineAlarms, DatesThatAreNoneAreRefused) {
    for (const double at : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL})
        EXPECT_EQ(refused({.at = at}).number, 6) << at;
    EXPECT_EQ(log().size(), 0U);
}

TEST_F(EngineAlarms, AlarmsOfAnotherSiteAreRefused) {
    const Failure failure = refused({.siteId = L"OTHER"});
    EXPECT_EQ(failure.number, 5);
    EXPECT_NE(failure.description.find(L"OTHER"), std::wstring::npos) << failure.description;
    EXPECT_NE(failure.description.find(L"DEMO"), std::wstring::npos) << failure.description;
    EXPECT_EQ(refused({.siteId = L"demo"}).number, 5) << "To the letter";
    EXPECT_EQ(log().size(), 0U);
}

TEST_F(EngineAlarms, TextsThatCannotBeKeptAreRefused) {
    const std::wstring half = L"\xD83C";
    const std::wstring tooLong(65536, L'x');
    for (const std::wstring& text : {half, tooLong}) {
        EXPECT_EQ(refused({.message = text}).number, 5);
        EXPECT_EQ(refused({.category = text}).number, 5);
        EXPECT_EQ(refused({.group = text}).number, 5);
        EXPECT_EQ(refused({.source = text}).number, 5);
    }
    EXPECT_EQ(log().size(), 0U);
}

TEST_F(EngineAlarms, AlarmsNeedASite) {
    const auto writer = engine.alarmWriter();
    engine.close();
    const Failure failure = failureOf([&] { writer.writeAlarm(com::Bstr(L"DEMO"), {}); });
    EXPECT_EQ(failure.number, 91);
    EXPECT_EQ(heard.take(), std::vector{failure.description});
}

TEST_F(EngineAlarms, AWriterOutlivesTheClosingOfItsEngine) {
    const auto writer = engine.alarmWriter();
    engine.close();
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    writer.writeAlarm(com::Bstr(L"DEMO"), {hour(1), nullptr, nullptr, 1, nullptr, nullptr});
    EXPECT_EQ(log().size(), 1U);
}

}  // namespace vtdn::embedded::test

// Special values: kept with their kind, refused when they belong to nothing or cannot be kept.

#include "store/special_values.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "demo_site.h"
#include "expect_error.h"

namespace vtdn::store::test {
namespace {

constexpr auto lowest = std::numeric_limits<std::int32_t>::min();
constexpr auto highest = std::numeric_limits<std::int32_t>::max();

Database& configOf(DemoSite& demo) {
    return demo.site.database(DatabaseKind::config);
}

TEST(SpecialValues, ComeBackWithTheirKindAfterARestart) {
    DemoSite demo;
    const std::vector<SpecialValueEntry> entries{
        {minutePid, lowest, false},
        {minutePid, -118, true},
        {minutePid, -32, std::int32_t{1}},
        {minutePid, -22, std::string("40CFR75")},
        {minutePid, 0, std::monostate()},
        {minutePid, 1, 1.0},
        {minutePid, 2, lowest},
        {minutePid, 3, -0.1},
        {minutePid, highest, std::string()},
        {hourPid, -22, std::string("a\0b \xF0\x9F\x8F\xAD", 8)},
        {hourPid, 1, std::int32_t{0}},
        {limitPid, 1, std::string(longestText, 'x')},
    };
    replaceSpecialValues(configOf(demo), entries);
    Site other = demo.reopen();
    EXPECT_EQ(other.configuration().special_values.values().size(), entries.size());
    for (const SpecialValueEntry& entry : entries)
        EXPECT_EQ(other.specialValue(entry.pid, entry.id), entry.value) << entry.id;
    EXPECT_EQ(other.specialValue(minutePid, 4), SpecialValue()) << "none of that id";
    EXPECT_EQ(other.specialValue(monthPid, -22), SpecialValue()) << "none at all";
    expectError(ErrorKind::unknownParameter, [&] { (void)other.specialValue(123456789, -22); });
}

TEST(SpecialValues, AnyDoubleComesBackAsItself) {
    DemoSite demo;
    std::mt19937_64 random(22);
    std::vector<double> numbers{-0.0, std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::max(), 9007199254740993.0};
    while (numbers.size() < 500)
        if (const auto number = std::bit_cast<double>(random()); std::isfinite(number))
            numbers.push_back(number);
    std::vector<SpecialValueEntry> entries(numbers.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i].pid = minutePid;
        entries[i].id = static_cast<std::int32_t>(i);
        entries[i].value.emplace<double>(numbers[i]);
    }
    replaceSpecialValues(configOf(demo), entries);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto& read = demo.site.specialValue(minutePid, static_cast<std::int32_t>(i));
        EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(read)),
                  std::bit_cast<std::uint64_t>(numbers[i]));
    }
}

TEST(SpecialValues, AreReplacedWholeOrNotAtAll) {
    DemoSite demo;
    replaceSpecialValues(configOf(demo),
                         std::vector<SpecialValueEntry>{{minutePid, 1, true}, {hourPid, 2, 2.5}});
    const std::vector<SpecialValueEntry> second{{hourPid, 3, std::int32_t{3}}};
    replaceSpecialValues(configOf(demo), second);
    EXPECT_EQ(demo.site.specialValue(minutePid, 1), SpecialValue());
    EXPECT_EQ(demo.site.specialValue(hourPid, 3), SpecialValue(std::int32_t{3}));
    const double infinite = std::numeric_limits<double>::infinity();
    const auto refused = [&](ErrorKind kind, SpecialValueEntry entry) {
        const std::vector<SpecialValueEntry> entries{{minutePid, 1, true}, std::move(entry)};
        return expectError(kind, [&] { replaceSpecialValues(configOf(demo), entries); });
    };
    const std::string unknown = refused(ErrorKind::badParameter, {123456789, 7, true});
    EXPECT_NE(unknown.find("1-234-5-67-89"), std::string::npos) << unknown;
    EXPECT_NE(unknown.find("special value 7"), std::string::npos) << unknown;
    refused(ErrorKind::badParameter, {minutePid, 1, false});
    refused(ErrorKind::badValue, {minutePid, 2, infinite});
    refused(ErrorKind::badValue, {minutePid, 2, -infinite});
    refused(ErrorKind::badValue, {minutePid, 2, std::nan("")});
    refused(ErrorKind::badValue, {minutePid, 2, std::string(longestText + 1, 'x')});
    EXPECT_EQ(SpecialValueTable::load(configOf(demo)).values().size(), 1U);
    replaceSpecialValues(configOf(demo), {});
    EXPECT_TRUE(SpecialValueTable::load(configOf(demo)).values().empty());
}

TEST(SpecialValues, GoWithTheirParameters) {
    DemoSite demo;
    replaceSpecialValues(configOf(demo), std::vector<SpecialValueEntry>{{minutePid, 1, true}});
    replaceParameters(configOf(demo), demoParameters());
    EXPECT_TRUE(SpecialValueTable::load(configOf(demo)).values().empty());
}

TEST(SpecialValues, AnotherConnectionSeesThemAfterAFlush) {
    DemoSite demo;
    Site other = demo.reopen();
    EXPECT_EQ(other.specialValue(minutePid, 1), SpecialValue());
    replaceSpecialValues(configOf(demo), std::vector<SpecialValueEntry>{{minutePid, 1, true}});
    EXPECT_EQ(other.specialValue(minutePid, 1), SpecialValue());
    other.flushCache();
    EXPECT_EQ(other.specialValue(minutePid, 1), SpecialValue(true));
}

TEST(SpecialValues, RowsThatNobodyWroteAreDamage) {
    for (const char* change : {
             "kind = 5", "kind = -1",                                  // no such kind
             "kind = 0",                                               // null, and a number is there
             "kind = 1, value = 2", "kind = 1, value = 'x'",           // no truth
             "kind = 2, value = 2147483648", "kind = 2, value = 1.5",  // no 32-bit number
             "kind = 2, value = NULL", "kind = 3, value = 1",          // no double
             "kind = 4, value = 1", "kind = 4, value = x'41'",         // no text
             "pid = 2147483648", "id = -2147483649",                   // no 32-bit number
         }) {
        DemoSite demo;
        replaceSpecialValues(configOf(demo), std::vector<SpecialValueEntry>{{minutePid, 1, std::int32_t{1}}});
        configOf(demo).execute("PRAGMA foreign_keys = OFF");
        configOf(demo).execute(("UPDATE special_value SET " + std::string(change)).c_str());
        const std::string sentence =
            expectError(ErrorKind::databaseDamaged, [&] { (void)demo.site.specialValue(minutePid, 1); });
        EXPECT_NE(sentence.find("config.db"), std::string::npos) << sentence;
        EXPECT_NE(sentence.find("special value"), std::string::npos) << sentence;
    }
}

TEST(Site, ListsTheParametersOfAType) {
    DemoSite demo;
    EXPECT_EQ(demo.site.paramsOfType(0).size(), demoParameters().size());
    std::vector<Parameter> all = demoParameters();
    std::swap(all.front(), all.back());
    for (Parameter& p : all)
        if (p.pid == monthPid || p.pid == minutePid || p.pid == limitPid) p.parameter_type = 45;
    all[3].parameter_type = -1;
    replaceParameters(configOf(demo), all);
    EXPECT_TRUE(demo.site.paramsOfType(45).empty()) << "kept until the cache is flushed";
    demo.site.flushCache();
    EXPECT_EQ(demo.site.paramsOfType(45), (std::vector<Pid>{minutePid, monthPid, limitPid}));
    EXPECT_EQ(demo.site.paramsOfType(-1), (std::vector<Pid>{averagePid}));
    EXPECT_TRUE(demo.site.paramsOfType(3).empty());
}

}  // namespace
}  // namespace vtdn::store::test

// Saving and finding data points, and the edits that are recorded with every change.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "expect_error.h"
#include "point_site.h"
#include "store/edits.h"
#include "store/occurrences.h"

namespace vtdn::store::test {
namespace {

DataPoint only(PointSite& demo, Time time = at(1)) {
    return demo.site.dataPoints(hourPid, hour, time, time).at(0);
}

DataPointSave saveOf(const std::string& occurrence) {
    return {hourPid, hour, at(1), {}, {}, true, occurrence, editor};
}

std::vector<EditedParts> partsOf(const std::vector<Edit>& edits) {
    std::vector<EditedParts> parts;
    parts.reserve(edits.size());
    for (const Edit& edit : edits) parts.push_back(edit.parts);
    return parts;
}

TEST(SaveDataPoint, LeavesWhatIsAbsentAsItIs) {
    PointSite demo;
    demo.site.write(hourPid, at(1), {{1.5F, 3}});
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    demo.site.saveDataPoint(saveOf(excursionText("fan")));
    EXPECT_EQ(only(demo), (DataPoint{at(1), {1.5F, 3}, excursionText("fan"), "extra"}));
    DataPointSave save = saveOf(excursionText("belt"));
    save.value = std::string("text");
    demo.site.saveDataPoint(save);
    EXPECT_EQ(only(demo), (DataPoint{at(1), {std::string("text"), 3}, excursionText("belt"), "extra"}));
    save = saveOf(excursionText("belt"));
    save.code = 7;
    demo.site.saveDataPoint(save);
    EXPECT_EQ(only(demo), (DataPoint{at(1), {std::string("text"), 7}, excursionText("belt"), "extra"}));
    save = saveOf("");
    save.value = Value();
    demo.site.saveDataPoint(save);
    EXPECT_EQ(only(demo), (DataPoint{at(1), {Value(), 7}, "", "extra"}));
    EXPECT_TRUE(demo.site.check().empty());
}

TEST(SaveDataPoint, ServesEveryIntervalThatIsStored) {
    PointSite demo;
    const Time first = timeOf({2007, 3, 1, 0, 0, 0});
    const std::vector<std::pair<Pid, Interval>> tags{
        {minutePid, minute}, {hourPid, hour}, {monthPid, month}, {occurrencePid, hour}};
    for (const auto& [pid, interval] : tags) {
        demo.site.saveDataPoint({pid, interval, first, Value(0.5F), 3, true, excursionText("fan"), editor});
        EXPECT_EQ(demo.reopen().findDataPoint(pid, interval, first - 1, first + 1),
                  (DataPoint{first, {0.5F, 3}, excursionText("fan"), ""}));
    }
    EXPECT_EQ(demo.site.database(DatabaseKind::dataShortTerm).queryNumber("SELECT count(*) FROM edit"), 1);
    EXPECT_EQ(demo.site.database(DatabaseKind::data).queryNumber("SELECT count(*) FROM edit"), 3);
}

TEST(SaveDataPoint, MakesADataPointOnlyWhenItMay) {
    PointSite demo;
    DataPointSave save = saveOf(excursionText("fan"));
    save.may_create = false;
    const auto refused = [&] {
        const std::string sentence =
            expectError(ErrorKind::unknownDataPoint, [&] { demo.site.saveDataPoint(save); });
        EXPECT_NE(sentence.find("5-040-3-00-00 at 2007-03-25 01:00"), std::string::npos) << sentence;
        EXPECT_TRUE(demo.site.edits().empty());
    };
    refused();
    demo.site.write(hourPid, at(2), {{1.5F, 3}});
    refused();
    demo.site.write(hourPid, at(1), {{Value(), 3}});
    demo.site.saveDataPoint(save);
    EXPECT_EQ(only(demo), (DataPoint{at(1), {Value(), 3}, excursionText("fan"), ""}));
    demo.site.write(hourPid, at(1), {Item{}});
    save.occurrence = excursionText("belt");
    demo.site.saveDataPoint(save);
    EXPECT_EQ(only(demo).occurrence, excursionText("belt")) << "a text is enough";
    save.occurrence.clear();
    demo.site.saveDataPoint(save);
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, at(1), at(1)).empty());
    expectError(ErrorKind::unknownDataPoint, [&] { demo.site.saveDataPoint(save); });
    save.may_create = true;
    demo.site.saveDataPoint(save);
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, at(1), at(1)).empty()) << "nothing was given";
}

TEST(SaveDataPoint, RefusesWhatCannotBeAndWritesNothingOfIt) {
    PointSite demo;
    const auto refused = [&](ErrorKind kind, const DataPointSave& save) {
        expectError(kind, [&] { demo.site.saveDataPoint(save); });
    };
    const Value value = 1.5F;
    const std::string text = excursionText("fan");
    refused(ErrorKind::unknownParameter, {123456789, hour, at(1), value, 3, true, text, editor});
    for (const Pid pid : {limitPid, averagePid, formulaPid})
        refused(ErrorKind::notWritable, {pid, hour, at(1), value, 3, true, text, editor});
    refused(ErrorKind::badInterval, {hourPid, minute, at(1), value, 3, true, text, editor});
    refused(ErrorKind::badInterval, {bareOccurrencePid, hour, at(1), value, 3, true, text, editor});
    refused(ErrorKind::offBoundary, {hourPid, hour, at(1, 1), value, 3, true, text, editor});
    for (const Time time : {earliestTime - 3600, latestTime + 1}) {
        refused(ErrorKind::outOfRange, {hourPid, hour, time, value, 3, true, text, editor});
        refused(ErrorKind::outOfRange, {hourPid, hour, at(1), value, 3, true, text, {time, "", ""}});
    }
    const std::string longer(longestText + 1, 'x');
    for (const Value& bad :
         {Value(std::numeric_limits<float>::infinity()), Value(std::nan("")), Value(longer)})
        refused(ErrorKind::badValue, {hourPid, hour, at(1), bad, 3, true, text, editor});
    for (const std::string& bad : {std::string("x"), text + " ", excursionText(longer)})
        refused(ErrorKind::badValue, {hourPid, hour, at(1), value, 3, true, bad, editor});
    refused(ErrorKind::badValue, {hourPid, hour, at(1), value, 3, true, text, {at(1), longer, ""}});
    refused(ErrorKind::badValue, {hourPid, hour, at(1), value, 3, true, text, {at(1), "", longer}});
    EXPECT_TRUE(demo.site.dataPoints(hourPid, hour, earliestTime, latestTime).empty());
    EXPECT_TRUE(demo.site.edits().empty());
}

TEST(FindDataPoint, GivesTheFirstThatHasAnythingStored) {
    PointSite demo;
    const auto found = [&](Time from, Time to) { return demo.site.findDataPoint(hourPid, hour, from, to); };
    EXPECT_EQ(found(earliestTime, latestTime), std::nullopt);
    demo.site.write(hourPid, at(3), {{1.5F, 3}});
    demo.site.write(hourPid, at(5), {{2.5F, 3}});
    demo.site.setExtra(hourPid, hour, at(5), "extra", editor);
    demo.site.setExtra(hourPid, hour, at(7), "alone", editor);
    EXPECT_EQ(found(earliestTime, latestTime), (DataPoint{at(3), {1.5F, 3}, "", ""}));
    EXPECT_EQ(found(at(3), at(3)), (DataPoint{at(3), {1.5F, 3}, "", ""}));
    EXPECT_EQ(found(at(3) - 1, at(3) + 1), (DataPoint{at(3), {1.5F, 3}, "", ""}));
    EXPECT_EQ(found(at(3) + 1, at(9)), (DataPoint{at(5), {2.5F, 3}, "", "extra"}));
    EXPECT_EQ(found(at(5) + 1, at(7)), (DataPoint{at(7), {}, "", "alone"}));
    EXPECT_EQ(found(at(5) + 1, at(7) - 1), std::nullopt);
    demo.writeOccurrence(hourPid, hour, at(1), excursionText("fan"));
    EXPECT_EQ(found(at(0), at(9)), (DataPoint{at(1), {}, excursionText("fan"), ""}))
        << "a text before a value";
    expectError(ErrorKind::outOfRange, [&] { (void)found(at(2), at(1)); });
    expectError(ErrorKind::outOfRange, [&] { (void)found(earliestTime - 1, at(1)); });
    expectError(ErrorKind::badInterval,
                [&] { (void)demo.site.findDataPoint(hourPid, minute, at(1), at(2)); });
}

TEST(Edits, SayWhatWasReallyWritten) {
    PointSite demo;
    const auto last = [&] { return demo.site.edits({.limit = 1}).at(0).parts; };
    DataPointSave save{hourPid, hour, at(1), Value(1.5F), 3, true, excursionText("fan"), editor};
    demo.site.saveDataPoint(save);
    EXPECT_EQ(last(), EditedParts::value | EditedParts::code | EditedParts::occurrence);
    demo.site.saveDataPoint(save);
    demo.site.setExtra(hourPid, hour, at(1), "", editor);
    EXPECT_EQ(demo.site.edits().size(), 1U) << "what is there already is not written";
    save.value = Value(2.5F);
    demo.site.saveDataPoint(save);
    EXPECT_EQ(last(), EditedParts::value);
    save.code = 4;
    demo.site.saveDataPoint(save);
    EXPECT_EQ(last(), EditedParts::code);
    save.occurrence.clear();
    demo.site.saveDataPoint(save);
    EXPECT_EQ(last(), EditedParts::occurrence);
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    EXPECT_EQ(last(), EditedParts::extra);
    demo.site.setExtra(hourPid, hour, at(1), "", editor);
    EXPECT_EQ(
        partsOf(demo.site.edits()),
        (std::vector{EditedParts::extra, EditedParts::extra, EditedParts::occurrence, EditedParts::code,
                     EditedParts::value, EditedParts::value | EditedParts::code | EditedParts::occurrence}));
    save.value = Value(0.0);
    demo.site.saveDataPoint(save);
    save.value = Value(-0.0);
    demo.site.saveDataPoint(save);
    EXPECT_EQ(last(), EditedParts::value) << "bits count";
    EXPECT_TRUE(std::signbit(std::get<double>(only(demo).item.value)));
}

TEST(Edits, ComeNewestFirstWithTheirOrigin) {
    PointSite demo;
    const auto edit = [&](Pid pid, const Interval& interval, Time time, Time when,
                          const std::string& source) {
        demo.site.setExtra(pid, interval, time, "x", {when, source, strange});
    };
    edit(hourPid, hour, at(1), 100, "a");
    edit(minutePid, minute, at(1, 1), 300, "b");
    edit(hourPid, hour, at(2), 200, "c");
    edit(hourPid, hour, at(3), 200, "d");
    edit(minutePid, minute, at(5), 50, "");
    const auto sources = [&](const EditFilter& filter) {
        std::string all;
        for (const Edit& found : demo.site.edits(filter)) all += found.origin.source + ".";
        return all;
    };
    EXPECT_EQ(sources({}), "b.d.c.a..");
    EXPECT_EQ(sources({.limit = 2}), "b.d.");
    EXPECT_EQ(sources({.limit = 0}), "");
    EXPECT_EQ(sources({.pid = hourPid}), "d.c.a.");
    EXPECT_EQ(sources({.pid = 123456789}), "");
    EXPECT_EQ(sources({.from = at(1, 1)}), "b.d.c..");
    EXPECT_EQ(sources({.to = at(2)}), "b.a.");
    EXPECT_EQ(sources({.pid = hourPid, .from = at(1), .to = at(3), .limit = 1}), "c.");
    EXPECT_EQ(demo.reopen().edits({.pid = minutePid, .to = at(2)}),
              (std::vector<Edit>{{1, {300, "b", strange}, minutePid, minute, at(1, 1), EditedParts::extra}}));
    expectError(ErrorKind::outOfRange, [&] { (void)sources({.limit = -1}); });
    expectError(ErrorKind::outOfRange, [&] { (void)sources({.from = at(2), .to = at(1)}); });
}

TEST(Load, WritesOccurrencesBesideWhatIsThereAndOnce) {
    PointSite demo;
    demo.site.setExtra(hourPid, hour, at(1), "extra", editor);
    const auto load = [&](const std::string& reason) {
        Load all(demo.site);
        all.append(hourPid, at(1), {1.5F, 3});
        all.writeOccurrence(hourPid, at(1), excursionOf(reason), editor);
        all.writeOccurrence(minutePid, at(2), downtimeOf(reason), editor);
        EXPECT_TRUE(demo.reopen().occurrences({.first = at(0), .last = at(5)}).rows.size() != 1U)
            << "nothing or all";
        all.commit();
    };
    for (int i = 0; i < 2; ++i) {
        load("fan");
        EXPECT_EQ(only(demo), (DataPoint{at(1), {1.5F, 3}, excursionText("fan"), "extra"}));
        EXPECT_EQ(partsOf(demo.site.edits()),
                  (std::vector{EditedParts::occurrence, EditedParts::extra, EditedParts::occurrence}))
            << "repeating it changes nothing";
    }
    load("belt");
    EXPECT_EQ(demo.site.edits().size(), 5U);
    {
        Load undone(demo.site);
        undone.writeOccurrence(hourPid, at(3), excursionOf("gone"), editor);
        undone.writeOccurrence(hourPid, at(1), {}, editor);
    }
    EXPECT_EQ(only(demo).occurrence, excursionText("belt"));
    EXPECT_EQ(demo.site.edits().size(), 5U);
    Load bad(demo.site);
    const auto refused = [&](ErrorKind kind, Pid pid, Time time) {
        expectError(kind, [&] { bad.writeOccurrence(pid, time, excursionOf("fan"), editor); });
    };
    refused(ErrorKind::unknownParameter, 123456789, at(1));
    refused(ErrorKind::notWritable, averagePid, at(1));
    refused(ErrorKind::badInterval, bareOccurrencePid, at(1));
    refused(ErrorKind::offBoundary, hourPid, at(1, 30));
}

}  // namespace
}  // namespace vtdn::store::test

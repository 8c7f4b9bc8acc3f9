// The members of an occurrence's excursion and downtime: each asks for its part first.
#include <string>
#include <vector>

#include "operations/occurrence_members.h"

namespace vtdn::test {
namespace {

TEST_F(OccurrenceMembers, AMemberOfAPartAsksForThePartAndThenForTheFieldOfTheEventFetchedAnew) {
    engine.expectReleases({"Event"});
    const auto withReleases = [](const std::vector<Call>& calls) {
        return std::vector<Call>{calls[0], calls[1], {"release Event"},
                                 calls[2], calls[3], {"release Event"}};
    };
    for (const PartMember& member : members()) {
        engine.expect(withReleases(reading(member)));
        EXPECT_EQ(shownOf(member), member.seen) << member.name;
        engine.verify();
        if (!member.put) continue;
        engine.expect(withReleases(writing(member)));
        EXPECT_EQ(member.put(*occurrence.get()), S_OK) << member.name;
        engine.verify();
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(OccurrenceMembers, WithoutThePartAMemberReadsAsNothingAndIgnoresWhatIsWritten) {
    for (const PartMember& member : members()) {
        for (const bool event : {true, false}) {
            const auto expectNone = [&] {
                engine.expect({{"Occurrence(1).Event", event ? Answer() : Answer::noObject()}});
                if (event) engine.expect({{"Event." + member.has, false}});
            };
            expectNone();
            EXPECT_EQ(shownOf(member), member.none) << member.name;
            engine.verify();
            if (!member.put) continue;
            expectNone();
            EXPECT_EQ(member.put(*occurrence.get()), S_OK) << member.name;
            engine.verify();
        }
        EXPECT_EQ(engine.alive(), untouched());
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(OccurrenceMembers, AnEventThatIsGoneWhenTheFieldIsDueIsError91) {
    for (const PartMember& member : members()) {
        const std::vector<Call> gone = {{"Occurrence(1).Event"},
                                        {"Event." + member.has, true},
                                        {"Occurrence(1).Event", Answer::noObject()}};
        std::wstring ignored;
        engine.expect(gone);
        EXPECT_EQ(takeFailure(member.get(*occurrence.get(), ignored)).result, unsetObject) << member.name;
        if (member.put) {
            engine.expect(gone);
            EXPECT_EQ(takeFailure(member.put(*occurrence.get())).result, unsetObject) << member.name;
        }
        EXPECT_EQ(engine.alive(), untouched());
    }
}

TEST_F(OccurrenceMembers, AnyTrueOfTheEngineOrTheClientIsTrue) {
    const struct {
        std::string name;
        Get<VARIANT_BOOL> get;
        Put<VARIANT_BOOL> put;
    } rows[] = {{"Excursion_Excludable", &I::get_Excursion_Excludable, &I::put_Excursion_Excludable},
                {"Downtime_Excludable", &I::get_Downtime_Excludable, &I::put_Downtime_Excludable}};
    for (const auto& row : rows) {
        const auto expectField = [&](const std::string& field, const Answer& answer) {
            // The part is there by an unusual True, too.
            engine.expect({{"Occurrence(1).Event"},
                           {"Event." + questionFor(row.name), 1},
                           {"Occurrence(1).Event"},
                           {"Event." + field, answer}});
        };
        for (const int answer : {1, 2, 256, -2, 0}) {
            expectField(row.name, answer);
            EXPECT_EQ(read(occurrence, row.get), com::variantBool(answer != 0)) << answer;
        }
        for (const int given : {1, 2, 256, -2, -1, 0}) {
            expectField(row.name + (given != 0 ? " = True" : " = False"), {});
            EXPECT_EQ((occurrence.get()->*row.put)(static_cast<VARIANT_BOOL>(given)), S_OK) << given;
            engine.verify();
        }
    }
}

TEST_F(OccurrenceMembers, TextsTravelUnchanged) {
    using namespace std::string_literals;
    const struct {
        std::string name;
        Get<BSTR> get;
        Put<BSTR> put;
    } rows[] = {{"Excursion_Action", &I::get_Excursion_Action, &I::put_Excursion_Action},
                {"Downtime_Action", &I::get_Downtime_Action, &I::put_Downtime_Action},
                {"Excursion_Reason", &I::get_Excursion_Reason, &I::put_Excursion_Reason},
                {"Downtime_Reason", &I::get_Downtime_Reason, &I::put_Downtime_Reason},
                {"Excursion_Category", &I::get_Excursion_Category, &I::put_Excursion_Category},
                {"Downtime_Category", &I::get_Downtime_Category, &I::put_Downtime_Category},
                {"Excursion_Limit", &I::get_Excursion_Limit, nullptr}};
    for (const auto& row : rows) {
        const auto expectField = [&](const std::string& field, const Answer& answer) {
            engine.expect({{"Occurrence(1).Event"},
                           {"Event." + questionFor(row.name), true},
                           {"Occurrence(1).Event"},
                           {"Event." + field, answer}});
        };
        for (const std::wstring& content : {L""s, L" <a b=\"&amp;\">\r\n\t</a> "s, L"x\0y"s, L"\xD83D\xDE00"s,
                                            std::wstring(100'000, L'z')}) {
            expectField(row.name, Variant::of(std::wstring_view(content)));
            EXPECT_EQ(readText(occurrence, row.get), content) << row.name;
            if (!row.put) continue;
            expectField(row.name + " = '" + com::toUtf8(content) + "'", {});
            EXPECT_EQ((occurrence.get()->*row.put)(Bstr(content).get()), S_OK);
            engine.verify();
        }
        // A null string is an empty one, both ways.
        expectField(row.name, {});
        EXPECT_EQ(readText(occurrence, row.get), L"");
        if (!row.put) continue;
        expectField(row.name + " = ''", {});
        EXPECT_EQ((occurrence.get()->*row.put)(nullptr), S_OK);
    }
}

}  // namespace
}  // namespace vtdn::test

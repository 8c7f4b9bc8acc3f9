// The fixture of the tests of occurrences created or retrieved: the engine's calls when nothing fails.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "operations/occurrences.h"
#include "strict_engine/describe.h"

namespace vtdn::test {

class OnCreatedOccurrences : public OnOccurrences {
  protected:
    static constexpr LONG occPid = 101000501;
    static constexpr const wchar_t* occPidText = L"1-010-0-05-01";
    static constexpr LONG tagPid = 123456789;
    static constexpr const wchar_t* tagPidText = L"1-234-5-67-89";
    static constexpr LONG excursion = 3;
    static constexpr LONG downtime = 4;
    static constexpr DATE when = 39448.25;
    /// One second around.
    static constexpr const char* span = "39448.24998842592, 39448.25001157408";

    /// What the engine has. The members of a row say what differs from a downtime that is not there yet.
    struct Engine {
        Variant tag = Variant::of(tagPid);
        Variant type = Variant::of(downtime);
        Variant seconds = Variant::of(LONG{3600});
        std::string interval = "1h";
        bool found = true;  ///< a data point
        bool hasExcursion = false;
        bool hasDowntime = false;
    };

    /// The engine's calls up to the end of the special values.
    static std::vector<Call> asked(const Engine& has) {
        const std::string param = "Param(101000501).";
        return {{"Engine.Params"},
                {"Params.Exists(101000501)", true},
                {"Params.Item(101000501, -1)"},
                {param + "IOType", 31},
                {param + "SpecialValue(-21)", has.tag},
                {param + "SpecialValue(-3)", has.type},
                {param + "SpecialValue(-13)", has.seconds}};
    }
    static std::vector<Call> lookedFor(const Engine& has) {
        return {{"Engine.SiteID", L"S1"},
                {"Engine.LongTermData"},
                {"LongTerm.FindDataPoint('S1', 123456789, '" + has.interval + "', " + span + ")",
                 has.found ? Answer() : Answer::noObject()}};
    }
    /// The data point that is there gets the part that it lacks; a new one gets its part without a question.
    static std::vector<Call> added(const Engine& has) {
        const LONG type = has.type.get().vt == VT_I4 ? has.type.get().lVal : 0;
        std::vector<Call> calls;
        if (!has.found) calls = {{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}};
        if (type != excursion && type != downtime) return calls;
        const std::string part = type == excursion ? "Excursion" : "Downtime";
        calls.emplace_back(has.found ? "Found.Event" : "Blank.Event");
        if (has.found) {
            const bool there = type == excursion ? has.hasExcursion : has.hasDowntime;
            calls.emplace_back("Event.Has" + part, there);
            if (there) return calls;
        }
        calls.emplace_back("Event.Add" + part);
        calls.emplace_back("Event." + part + "_PID = 101000501");
        return calls;
    }
    static std::vector<Call> saved(const Engine& has, const Answer& answer) {
        const std::string point = has.found ? "Found." : "Blank.";
        return {{"Engine.SiteID", L"S1"},
                {point + "TStamp", when},
                {point + "NValue", 12.5},
                {point + "MC", 1},
                {point + "OccDataXML", L"<o/>"},
                {"Engine.SelectedDahs"},
                {"Dahs.EditUserName", L"operator"},
                {"Engine.LongTermData"},
                {"LongTerm.SaveDataPoint('S1', 123456789, '" + has.interval +
                     "', 39448.25, R8 12.5, I4 1, True, '<o/>', 'OccEdit', 'operator')",
                 answer}};
    }
    static std::vector<Call> readBack(int count) {
        return {
            {"Engine.SiteID", L"S1"},
            {"Engine.LongTermData"},
            {std::string("LongTerm.GetOccurrences('S1', ") + span + ", True, True, 0, True, I4 101000501)"},
            {"Occurrences.Count", count}};
    }
    static std::vector<Call> allCalls(const Engine& has) {
        std::vector<Call> all = asked(has);
        for (const auto& some : {lookedFor(has), added(has), saved(has, true), readBack(1)})
            all.insert(all.end(), some.begin(), some.end());
        all.emplace_back("Occurrences.Item(1)");
        return all;
    }

    /// What the operation gives, which may be no object.
    [[nodiscard]] Occurrence create(DATE time = when) const {
        // Not looked at by the call.
        _OccurrenceDataWrapper* object = reinterpret_cast<_OccurrenceDataWrapper*>(sizeof(void*));
        const HRESULT result = client->CreateOrRetrieveOccurrence(occPid, time, &object);
        EXPECT_EQ(result, S_OK) << takeFailure(result);
        if (FAILED(result)) return nullptr;
        EXPECT_EQ(takeFailure(S_OK), Failure{}) << "an error info was left behind";
        Occurrence occurrence(object);
        if (object) object->Release();
        return occurrence;
    }
    /// The operation succeeds without a word.
    void expectCreated() {
        const Occurrence occurrence = create();
        EXPECT_TRUE(occurrence);
        engine.verify();
        EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine", "Occurrence(1)"}));
        EXPECT_EQ(client.problems(), L"");
    }
    /// The operation gives nothing and says this; nothing of the engine is left.
    void expectNothing(const std::vector<std::wstring>& problems) {
        EXPECT_FALSE(create());
        engine.verify();
        EXPECT_EQ(client.problemTexts(), problems);
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
    static std::wstring trapped(const std::wstring& what) {
        return L"Error in creating/retrieving occurrence data points.  " + what;
    }
};

}  // namespace vtdn::test

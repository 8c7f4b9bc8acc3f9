// Several engines on one site, in one process and in several, and what is left when a process ends.
#include "occurrence_call.h"

namespace vtdn::embedded::test {
namespace {

class EngineSharing : public OnEngine {
  protected:
    /// Runs one test of this program in another process, in the same home folder, and returns its exit code.
    static DWORD runElsewhere(const char* test) {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        std::wstring command = L"\"" + std::wstring(program) +
                               L"\" --gtest_also_run_disabled_tests --gtest_filter=" + com::fromUtf8(test);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &process))
            return GetLastError() + 1000;
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD code = 1;
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hProcess);
        CloseHandle(process.hThread);
        return code;
    }
};

/// The other process: VANTOR_HOME is inherited.
class EngineElsewhere : public testing::Test {
  protected:
    EngineLibrary library;
    engine::Engine engine = engine::Engine::create();
};

}  // namespace

TEST_F(EngineSharing, TwoEnginesOnOneSiteSeeEachOthersWrites) {
    const auto other = engine::Engine::create();
    ASSERT_TRUE(other.setupByDahsId(dahsId));
    for (int h = 0; h < 24; ++h) {
        write(hourPid, hour(h), com::Variant::of(LONG{h}), 1);
        com::Variant value;
        other.params().item(hourPid).dataItem(hour(h)).value(value);
        EXPECT_EQ(value.get().lVal, h);
    }
    engine.close();
    EXPECT_TRUE(other.params().exists(hourPid)) << "Each engine has a binding of its own";
}

TEST_F(EngineSharing, AWriteIsThereInANewProcess) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    write(hourPid, hour(2), com::Variant::of(std::wstring_view(L"N/A")), 8);
    engine.close();
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_ReadsWhatWasWritten"), 0U);
}

TEST_F(EngineSharing, AWriteSurvivesTheKillOfItsProcess) {
    engine.close();
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_WritesAndIsKilled"), 77U);
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_EQ(read(hourPid, hour(3)).get().lVal, 33);
}

TEST_F(EngineSharing, AnotherProcessWritesWhileThisOneHasTheSiteOpen) {
    write(hourPid, hour(3), com::Variant::of(LONG{1}), 1);
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_WritesAndIsKilled"), 77U);
    EXPECT_EQ(read(hourPid, hour(3)).get().lVal, 33);
    write(hourPid, hour(4), com::Variant::of(LONG{4}), 1);
    EXPECT_EQ(read(hourPid, hour(4)).get().lVal, 4);
}

TEST_F(EngineSharing, ARunThatWasStoredAtOnceSurvivesTheKillOfItsProcess) {
    storeMinutes(param(minutePid), 1.5F, 1);
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_StoresADayAndIsKilled"), 77U);
    const auto data = readRun(minutePid, hour(0), 1440, L"m", 1);
    DIDataRun run{};
    ASSERT_TRUE(data.runs().next(1, run));
    EXPECT_EQ(run.count, 1440);
    EXPECT_EQ(run.type, VT_R4);
    EXPECT_EQ(static_cast<const float*>(run.values)[1439], 2.5F);
    EXPECT_EQ(data.item(1440).mc(), 2);
}

TEST_F(EngineSharing, AnExtraValueSurvivesTheKillOfItsProcess) {
    const DataPointManagers managers(engine);
    ASSERT_TRUE(managers.update(Manager::longTerm, {}, hour(3), L"before"));
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_StoresAnExtraValueAndIsKilled"), 77U);
    const auto points = managers.list(Manager::longTerm, {}, hour(3), hour(3));
    ASSERT_TRUE(points);
    EXPECT_EQ(extraOf(points.item(1)), anyText);
}

TEST_F(EngineSharing, ASavedOccurrenceSurvivesTheKillOfItsProcessWithItsEdit) {
    const auto data = engine.longTermData();
    ASSERT_TRUE(
        saved(data, {.at = hour(3), .value = com::Variant::of(2.5F), .occurrence = xmlOf(downtimeOf(1))}));
    EXPECT_EQ(runElsewhere("EngineElsewhere.DISABLED_SavesAnOccurrenceAndIsKilled"), 77U);
    const auto found = listed(data, {});
    ASSERT_TRUE(found);
    ASSERT_EQ(found.count(), 1);
    EXPECT_EQ(textIn(found.item(1)), xmlOf(bothOf(true, false)));
    EXPECT_EQ(found.item(1).value(&DIOccurrence::get_NValue).get().fltVal, 2.5F);
    store::Site site(connections(), "DEMO");
    const auto edits = site.edits();
    ASSERT_EQ(edits.size(), 2U);
    EXPECT_EQ(edits[0].origin.user, "elsewhere");
    EXPECT_EQ(edits[0].parts, store::EditedParts::occurrence);
}

TEST_F(EngineSharing, TwoEnginesSeeEachOthersOccurrences) {
    const auto other = engine::Engine::create();
    ASSERT_TRUE(other.setupByDahsId(dahsId));
    const auto here = engine.longTermData();
    const auto there = other.longTermData();
    for (int h = 0; h < 24; ++h) {
        ASSERT_TRUE(saved(h % 2 ? here : there, {.at = hour(h), .occurrence = xmlOf(downtimeOf(h))}));
        for (const auto& data : {here, there}) {
            EXPECT_EQ(listed(data, {}).count(), h + 1);
            EXPECT_TRUE(foundPoint(data, {}, hour(h), hour(h)));
        }
    }
}

TEST_F(EngineElsewhere, DISABLED_SavesAnOccurrenceAndIsKilled) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    ASSERT_TRUE(saved(
        engine.longTermData(),
        {.at = hour(3), .mayCreate = false, .occurrence = xmlOf(bothOf(true, false)), .user = L"elsewhere"}));
    TerminateProcess(GetCurrentProcess(), 77);
}

TEST_F(EngineElsewhere, DISABLED_StoresAnExtraValueAndIsKilled) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    ASSERT_TRUE(DataPointManagers(engine).update(Manager::longTerm, {}, hour(3), anyText));
    TerminateProcess(GetCurrentProcess(), 77);
}

TEST_F(EngineElsewhere, DISABLED_StoresADayAndIsKilled) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    storeMinutes(engine.params().item(minutePid), 2.5F, 2);
    TerminateProcess(GetCurrentProcess(), 77);
}

TEST_F(EngineElsewhere, DISABLED_ReadsWhatWasWritten) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    const auto param = engine.params().item(hourPid);
    com::Variant value;
    param.dataItem(hour(1)).value(value);
    ASSERT_EQ(value.type(), VT_R4);
    EXPECT_EQ(value.get().fltVal, 2.5F);
    EXPECT_EQ(param.dataItem(hour(1)).mc(), 7);
    param.dataItem(hour(2)).value(value);
    ASSERT_EQ(value.type(), VT_BSTR);
    EXPECT_EQ(com::view(value.get().bstrVal), L"N/A");
}

TEST_F(EngineElsewhere, DISABLED_WritesAndIsKilled) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    storeItem(engine.params().item(hourPid), hour(3), com::Variant::of(LONG{33}), 3);
    TerminateProcess(GetCurrentProcess(), 77);
}

}  // namespace vtdn::embedded::test

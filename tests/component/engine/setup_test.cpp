// Setting an engine up: what is accepted, and what is refused with a sentence.
#include <filesystem>
#include <fstream>

#include "on_engine.h"

namespace vtdn::embedded::test {
namespace {

namespace fs = std::filesystem;

class EngineSetUp : public OnSite {
  protected:
    /// The one message with which a set-up is refused.
    std::wstring refusal(LONG id = dahsId) {
        EXPECT_FALSE(engine.setupByDahsId(id));
        return onlyMessage();
    }
    std::wstring forcedRefusal(std::wstring_view siteId, const store::SiteConnections& at) {
        EXPECT_FALSE(setUpForced(engine, siteId, Connections(at)));
        return onlyMessage();
    }
    std::wstring onlyMessage() {
        const auto all = heard.take();
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? L"" : all.front();
    }
    [[nodiscard]] fs::path file(const char* name) const { return fs::path(home.path()) / name; }

    engine::Engine engine = engine::Engine::create();
    Heard heard{engine};
};

void overwrite(const fs::path& path, std::streamoff at, const std::string& bytes) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(at);
    file << bytes;
}

bool contains(const std::wstring& text, const wchar_t* part) {
    return text.find(part) != std::wstring::npos;
}

std::wstring textOf(const engine::Engine& engine, engine::TextProperty<DISelectedDahs> property) {
    return std::wstring(engine.selectedDahs().text(property).view());
}

}  // namespace

TEST_F(EngineSetUp, ByIdTakesTheEntryOfTheDirectory) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
    EXPECT_EQ(engine.selectedDahs().dahsId(), dahsId);
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_VantorDir), L"C:\\Vantor");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_SystemDir), L"C:\\Vantor\\System");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_DahsCompleteName), L"Demonstration \u00e9");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_SiteID), L"DEMO");
    const Connections at(connections());
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_AlarmConnection), at.alarm.view());
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_ConfigConnection), at.config.view());
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_DataConnection), at.data.view());
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_DataShortTermConnection), at.dataShortTerm.view());
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_RealtimeConnection), at.realtime.view());
}

TEST_F(EngineSetUp, ForcedTakesTheConnectionsAsTheyAreGiven) {
    ASSERT_TRUE(setUpForced(engine, L"DEMO", Connections(connections())));
    EXPECT_TRUE(engine.params().exists(hourPid));
    EXPECT_EQ(engine.selectedDahs().dahsId(), 0);
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_SiteID), L"DEMO");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_DahsCompleteName), L"");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_DataConnection), Connections(connections()).data.view());
}

TEST_F(EngineSetUp, ForcedWithoutASiteIdTakesTheOneOfTheDatabases) {
    ASSERT_TRUE(setUpForced(engine, L"", Connections(connections())));
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_SiteID), L"DEMO");
}

TEST_F(EngineSetUp, AnUnknownIdIsRefused) {
    const std::wstring message = refusal(6);
    EXPECT_TRUE(contains(message, L"6")) << message;
    EXPECT_TRUE(contains(message, L"directory.db")) << message;
    EXPECT_FALSE(contains(refusal(-1), L"VTEngine"));
}

TEST_F(EngineSetUp, AHomeFolderWithoutADirectoryIsRefused) {
    const store::test::TempFolder empty;
    SetEnvironmentVariableW(L"VANTOR_HOME", com::fromUtf8(empty.path()).c_str());
    const std::wstring message = refusal();
    EXPECT_TRUE(contains(message, L"directory.db")) << message;
    EXPECT_FALSE(fs::exists(fs::path(empty.path()) / "directory.db")) << "A refused set-up made a file";
}

TEST_F(EngineSetUp, AMissingDatabaseIsRefusedByName) {
    fs::remove(file("realtime.db"));
    const std::wstring message = refusal();
    EXPECT_TRUE(contains(message, L"realtime.db")) << message;
    EXPECT_FALSE(fs::exists(file("realtime.db"))) << "A refused set-up made a file";
}

TEST_F(EngineSetUp, ADatabaseWithADamagedHeaderIsRefusedByName) {
    overwrite(file("data.db"), 0, std::string(64, '\xFF'));
    EXPECT_TRUE(contains(refusal(), L"data.db"));
}

TEST_F(EngineSetUp, ADatabaseWithDamagedPagesIsRefusedByName) {
    overwrite(file("config.db"), 100,
              std::string(static_cast<std::size_t>(fs::file_size(file("config.db"))) - 100, '\xA5'));
    const std::wstring message = refusal();
    EXPECT_TRUE(contains(message, L"config.db")) << message;
}

TEST_F(EngineSetUp, AnEmptyFileIsRefused) {
    fs::resize_file(file("alarm.db"), 0);
    EXPECT_TRUE(contains(refusal(), L"alarm.db"));
}

TEST_F(EngineSetUp, AFolderInPlaceOfADatabaseIsRefused) {
    fs::remove(file("alarm.db"));
    fs::create_directory(file("alarm.db"));
    EXPECT_TRUE(contains(refusal(), L"alarm.db"));
}

TEST_F(EngineSetUp, ADatabaseOfANewerVersionIsRefused) {
    {
        store::Site site(connections(), "DEMO");
        site.database(store::DatabaseKind::data).execute("PRAGMA user_version = 999");
    }
    const std::wstring message = refusal();
    EXPECT_TRUE(contains(message, L"data.db")) << message;
    EXPECT_TRUE(contains(message, L"newer")) << message;
    EXPECT_TRUE(contains(message, L"999")) << message;
}

TEST_F(EngineSetUp, AForeignDatabaseIsRefused) {
    fs::remove(file("data.db"));
    store::Database(home.file("data.db"), {.create = true}).execute("CREATE TABLE birds (name TEXT)");
    EXPECT_TRUE(contains(refusal(), L"data.db"));
}

TEST_F(EngineSetUp, ADatabaseOfAnotherKindIsRefused) {
    store::SiteConnections at = connections();
    std::swap(at.alarm, at.realtime);
    const std::wstring message = forcedRefusal(L"DEMO", at);
    EXPECT_TRUE(contains(message, L"realtime.db")) << message;
}

TEST_F(EngineSetUp, ADatabaseOfAnotherSiteIsRefused) {
    const store::test::TempFolder other;
    static_cast<void>(store::Site::create(store::SiteConnections::inFolder(other.path()), "OTHER"));
    store::SiteConnections at = connections();
    at.data = store::SiteConnections::inFolder(other.path()).data;
    const std::wstring message = forcedRefusal(L"DEMO", at);
    EXPECT_TRUE(contains(message, L"OTHER")) << message;
    EXPECT_TRUE(contains(message, L"DEMO")) << message;
}

TEST_F(EngineSetUp, ASiteIdThatIsNotTheDatabasesOwnIsRefused) {
    EXPECT_TRUE(contains(forcedRefusal(L"demo", connections()), L"demo"));
}

TEST_F(EngineSetUp, ADatabaseThatAnotherProgramKeepsLockedIsRefused) {
    store::Database holder(home.file("config.db"), {});
    holder.execute("PRAGMA locking_mode = EXCLUSIVE");
    holder.execute("BEGIN EXCLUSIVE");
    const std::wstring message = refusal();
    EXPECT_TRUE(contains(message, L"config.db")) << message;
    EXPECT_TRUE(contains(message, L"locked")) << message;
    holder.execute("ROLLBACK");
}

TEST_F(EngineSetUp, EveryMalformedConnectionStringIsRefusedWithItsText) {
    for (const char* text :
         {"", "   ", "nonsense", "Driver=SQLite", "Database=x.db", "Driver=Other;Database=x.db",
          "Driver=SQLite;Database=", "Driver=SQLite;Database=x.db;Database=y.db",
          "Driver=SQLite;Database=\"x.db", "Driver=SQLite;Colour=red;Database=x.db", ";;;",
          "=;=", "Driver=SQLite;Database=\xC3\xA9 in no folder\\x.db"}) {
        for (auto connection :
             {&store::SiteConnections::alarm, &store::SiteConnections::config, &store::SiteConnections::data,
              &store::SiteConnections::data_short_term, &store::SiteConnections::realtime}) {
            store::SiteConnections at = connections();
            at.*connection = text;
            EXPECT_FALSE(forcedRefusal(L"DEMO", at).empty()) << text;
        }
    }
}

TEST_F(EngineSetUp, SixEmptyTextsAreRefused) {
    EXPECT_FALSE(setUpForced(engine, L"", Connections({})));
    EXPECT_TRUE(contains(onlyMessage(), L"connection string"));
}

TEST_F(EngineSetUp, ARefusedSetUpCanBeTriedAgainAtOnce) {
    static_cast<void>(refusal(6));
    EXPECT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_TRUE(engine.params().exists(hourPid));
}

TEST_F(EngineSetUp, ASecondSetUpIsRefusedAndLeavesTheFirst) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_TRUE(contains(refusal(6), L"DEMO"));
    EXPECT_EQ(engine.selectedDahs().dahsId(), dahsId);
    EXPECT_TRUE(engine.params().exists(hourPid));
}

TEST_F(EngineSetUp, CloseLetsTheFilesGoAndAllowsAnotherSetUp) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    const engine::Params params = engine.params();
    const engine::Param param = params.item(hourPid);
    engine.close();
    EXPECT_FALSE(params.exists(hourPid));
    EXPECT_EQ(failureOf([&] { static_cast<void>(param.ioType()); }).number, 91);
    for (const char* name : {"alarm.db", "config.db", "data.db", "data_short_term.db", "realtime.db"}) {
        std::error_code error;
        fs::rename(file(name), file("moved"), error);
        EXPECT_FALSE(error) << name << ": " << error.message();
        fs::rename(file("moved"), file(name));
    }
    EXPECT_EQ(heard.take().size(), 1U);
    ASSERT_TRUE(setUpForced(engine, L"DEMO", Connections(connections())));
    EXPECT_EQ(param.ioType(), 38) << "A parameter from before serves the site that is open now";
}

TEST_F(EngineSetUp, CloseOnAnEngineThatIsNotSetUpDoesNothing) {
    engine.close();
    engine.close();
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineSetUp, ASiteThatMustNotBeWrittenToIsReadAndAWriteIsRefused) {
    {
        store::Site site(connections(), "DEMO");
        site.write(hourPid, store::timeOf({2007, 3, 25, 5, 0, 0}), {{2.5F, 3}});
    }
    // A handle that nobody may write beside, since rights and attributes do not bind the user root.
    HANDLE holder = CreateFileW(file("data.db").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(engine.setupByDahsId(dahsId));
    const std::wstring note = onlyMessage();
    EXPECT_TRUE(contains(note, L"data.db")) << note;
    EXPECT_FALSE(contains(note, L"config.db")) << note;
    const engine::Param hours = engine.params().item(hourPid);
    com::Variant value;
    hours.dataItem(hour(5)).value(value);
    EXPECT_EQ(value.get().fltVal, 2.5F);
    const Failure failure = failureOf([&] { storeItem(hours, hour(6), com::Variant::of(LONG{1}), 1); });
    EXPECT_EQ(failure.number, 70);
    EXPECT_EQ(onlyMessage(), failure.description);
    EXPECT_TRUE(contains(failure.description, L"data.db")) << failure.description;
    CloseHandle(holder);
}

TEST_F(EngineSetUp, AnEngineThatIsNotSetUpKnowsNothingAndSaysSo) {
    EXPECT_FALSE(engine.params().exists(hourPid));
    EXPECT_FALSE(engine.utils().isKnownMc(0));
    EXPECT_EQ(engine.selectedDahs().dahsId(), 0);
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_SiteID), L"");
    EXPECT_EQ(textOf(engine, &DISelectedDahs::get_AlarmConnection), L"");
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{}) << "Asking is no refusal";

    const Failure failure = failureOf([&] { static_cast<void>(engine.params().item(hourPid)); });
    EXPECT_EQ(failure.number, 91);
    EXPECT_TRUE(contains(failure.description, L"not set up")) << failure.description;
    EXPECT_EQ(onlyMessage(), failure.description);
}

TEST_F(EngineSetUp, AnyClientNameIsTaken) {
    engine.setClientAppName(nullptr);
    engine.setClientAppName(com::Bstr(std::wstring(100000, L'x')).get());
    EXPECT_TRUE(engine.setupByDahsId(dahsId));
}

}  // namespace vtdn::embedded::test

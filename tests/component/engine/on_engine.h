// A site with parameters of every kind and an engine that is set up on it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "demo_site.h"
#include "engine/client.h"
#include "engine/messages.h"
#include "engine_library.h"
#include "store/directory.h"
#include "store/time.h"

namespace vtdn::embedded::test {

using store::test::averagePid;
using store::test::formulaPid;
using store::test::hourPid;
using store::test::limitPid;
using store::test::minutePid;
using store::test::monthPid;

/// The automation date of an hour of 25 March 2007.
inline DATE hour(double h) {
    return 39166.0 + h / 24.0;
}

/// Takes down what an engine says.
class Heard final : public com::EventListener {
  public:
    explicit Heard(const engine::Engine& engine) { engine::listen(sink_, engine, *this); }
    void event(DISPID id, const com::EventArguments& arguments) override {
        const auto description = engine::messageDescription(id, arguments);
        EXPECT_TRUE(description) << "An event that is no message";
        if (description) all_.emplace_back(description->view());
    }
    /// All that was heard since the last call.
    [[nodiscard]] std::vector<std::wstring> take() { return std::exchange(all_, {}); }

  private:
    std::vector<std::wstring> all_;
    com::EventSink sink_;
};

/// A failed call as a client sees it.
struct Failure {
    LONG number = 0;
    std::wstring description;
};

/// The failure with which a call ends; number 0 when it does not fail.
template <class Call>
Failure failureOf(Call&& call) {
    try {
        call();
    } catch (const com::Error& error) {
        return {error.number(), error.description()};
    }
    return {};
}

/// The connection strings of a site as automation texts.
struct Connections {
    explicit Connections(const store::SiteConnections& from)
        : alarm(com::fromUtf8(from.alarm)),
          config(com::fromUtf8(from.config)),
          data(com::fromUtf8(from.data)),
          dataShortTerm(com::fromUtf8(from.data_short_term)),
          realtime(com::fromUtf8(from.realtime)) {}

    com::Bstr alarm, config, data, dataShortTerm, realtime;
};

/// SetupForced as a client calls it.
inline bool setUpForced(const engine::Engine& engine, std::wstring_view siteId, const Connections& at) {
    const com::Bstr id(siteId);
    return engine.setupForced({id.get(), at.alarm.get(), at.config.get(), at.data.get(),
                               at.dataShortTerm.get(), at.realtime.get()});
}

/// Stores one interval as clients do, by special function 6. Throws com::Error.
inline void storeItem(const engine::Param& param, DATE at, IDispatch* item) {
    com::SafeArray arguments = com::SafeArray::of<VARIANT>(2);
    {
        const com::ArrayView<VARIANT> view(arguments.get());
        com::Variant::ofDate(at).detachTo(&view[0]);
        com::Variant::of(item).detachTo(&view[1]);
    }
    static_cast<void>(param.specialFunction(6, arguments));
}
inline void storeItem(const engine::Param& param, DATE at, const com::Variant& value, LONG mc) {
    const auto item = engine::DataItem::create();
    item.putValue(value);
    item.putMc(mc);
    storeItem(param, at, item.get());
}

inline constexpr LONG dahsId = 5;

/// A home folder with a directory that lists one site, DEMO, as DAHS 5. Made once: the tests work on copies.
class Template {
  public:
    static const Template& instance() {
        static const Template made;
        return made;
    }
    void copyTo(const store::test::TempFolder& home) const {
        for (const auto& file : std::filesystem::directory_iterator(home_.path()))
            std::filesystem::copy_file(file.path(),
                                       std::filesystem::path(home.path()) / file.path().filename());
        auto directory = store::Directory::open(home.path());
        auto dahs = directory.get(dahsId);
        dahs.connections = store::SiteConnections::inFolder(home.path());
        directory.update(dahs);
    }

  private:
    Template() {
        store::Dahs dahs;
        dahs.id = dahsId;
        dahs.site_id = "DEMO";
        dahs.complete_name = "Demonstration \xC3\xA9";
        dahs.vantor_dir = "C:\\Vantor";
        dahs.system_dir = "C:\\Vantor\\System";
        dahs.connections = store::SiteConnections::inFolder(home_.path());
        store::Site site = store::Site::create(dahs.connections, dahs.site_id);
        store::replaceParameters(site.database(store::DatabaseKind::config), store::test::demoParameters());
        store::Directory::openOrCreate(home_.path()).add(dahs);
    }

    store::test::TempFolder home_;
};

/// A home folder of its own with the site DEMO, and the engine library.
class OnSite : public testing::Test {
  protected:
    OnSite() {
        Template::instance().copyTo(home);
        SetEnvironmentVariableW(L"VANTOR_HOME", com::fromUtf8(home.path()).c_str());
    }
    ~OnSite() override { SetEnvironmentVariableW(L"VANTOR_HOME", nullptr); }

    [[nodiscard]] store::SiteConnections connections() const {
        return store::SiteConnections::inFolder(home.path());
    }

    store::test::TempFolder home;
    EngineLibrary library;
};

/// The same, with an engine that is set up on it and heard.
class OnEngine : public OnSite {
  protected:
    OnEngine() {
        if (!engine.setupByDahsId(dahsId)) throw std::runtime_error("The engine could not be set up.");
    }

    [[nodiscard]] engine::Param param(LONG pid) const { return engine.params().item(pid); }
    void write(LONG pid, DATE at, const com::Variant& value, LONG mc) const {
        storeItem(param(pid), at, value, mc);
    }
    [[nodiscard]] com::Variant read(LONG pid, DATE at) const {
        com::Variant value;
        param(pid).dataItem(at).value(value);
        return value;
    }
    /// A data array placed and filled.
    [[nodiscard]] engine::DataArray readRun(LONG pid, DATE start, LONG count, std::wstring_view type,
                                            LONG length) const {
        auto data = engine::DataArray::create();
        data.define(start, count, com::Bstr(type), length);
        param(pid).readDataArray(data);
        return data;
    }

    /// A call that must be refused, with one message that says what the error says.
    template <class Call>
    Failure refusedCall(Call&& call) {
        Failure failure = failureOf(call);
        EXPECT_NE(failure.number, 0) << "Not refused";
        EXPECT_EQ(heard.take(), std::vector{failure.description});
        EXPECT_GT(failure.description.size(), 20U);
        return failure;
    }

    engine::Engine engine = engine::Engine::create();
    Heard heard{engine};
};

}  // namespace vtdn::embedded::test

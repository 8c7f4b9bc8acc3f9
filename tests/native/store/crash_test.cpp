// What was acknowledged survives power cuts and kills, a batch is there whole or not at all, and readers
// never see half of one.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "demo_site.h"
#include "items.h"
#include "old_files.h"
#include "power_cut_disk.h"
#include "store/alarms.h"
#include "store/data_points.h"
#include "store/error.h"
#include "store/schema.h"

namespace vtdn::store::test {
namespace {

const SeriesKey minutes{minutePid, Interval::parse("1m")};
constexpr std::int32_t length = 4000;  // intervals that the trials write to: three chunks

// Writes single intervals and runs at random, and knows what must be there.
class Writer {
  public:
    explicit Writer(std::mt19937& random) : random_(random), before_(length), after_(length) {}

    /// One write. Until it returns, either state may be what is stored.
    void writeOnce(SeriesStore& series) {
        const bool run = random_() % 3 != 0;
        const auto first = static_cast<std::size_t>(random_() % length);
        const std::size_t most = length - first;
        const std::size_t count = run ? 1 + random_() % std::min<std::size_t>(most, 2000) : 1;
        ++stamp_;
        const std::vector<Item> items(count, Item{static_cast<float>(stamp_), stamp_});
        const auto mark = [&](std::vector<Item>& state) {
            std::fill_n(state.begin() + static_cast<std::ptrdiff_t>(first), count, items[0]);
        };
        mark(after_);
        series.write(minutes, static_cast<Time>(first) * 60, runOf(items));
        mark(before_);
        ++acknowledged_;
    }

    /// Whether what is stored is what was acknowledged, with or without the write that was under way, and
    /// nothing between. Goes on from there.
    bool agreesWith(SeriesStore& series) {
        store::Run run;
        series.read(minutes, 0, length, run);
        std::vector<Item> stored(length);
        for (std::int32_t i = 0; i < length; ++i) stored[static_cast<std::size_t>(i)] = run.item(i);
        if (stored != before_ && stored != after_) return false;
        before_ = after_ = std::move(stored);
        return true;
    }

    [[nodiscard]] int acknowledged() const { return acknowledged_; }

  private:
    std::mt19937& random_;
    std::vector<Item> before_;
    std::vector<Item> after_;
    MonitorCode stamp_ = 0;
    int acknowledged_ = 0;
};

struct Tally {
    int cuts = 0;
    int writes = 0;
    int lost = 0;  // cuts after which the store was not as it must be
};

// Trials of three power cuts each, one after the other on the same database.
Tally cutPower(int trials, const char* settings) {
    TempFolder folder;
    PowerCutDisk disk;
    const std::string file = folder.file("data.db");
    { const Database made = createDatabase(DatabaseKind::dataShortTerm, file, "S"); }
    const PowerCutDisk::Image fresh = disk.image();
    std::mt19937 random(75'57);
    Tally tally;
    for (int trial = 0; trial < trials; ++trial) {
        disk.restore(fresh);
        Writer writer(random);
        for (int cut = 0; cut < 3; ++cut) {
            disk.cutAfter(1 + static_cast<std::int64_t>(random() % 300));
            try {
                Database db = openDatabase(DatabaseKind::dataShortTerm, file);
                db.execute(settings);
                SeriesStore series(db);
                while (true) writer.writeOnce(series);
            } catch (const Error&) {
                EXPECT_TRUE(disk.isOff()) << "nothing but the power cut may end a write";
            }
            disk.restart(random);
            ++tally.cuts;
            bool good = false;
            try {
                Database db = openDatabase(DatabaseKind::dataShortTerm, file);
                SeriesStore series(db);
                good = writer.agreesWith(series) && (trial % 10 != 0 || series.check().empty());
            } catch (const Error&) {
                // Not even readable any more.
            }
            if (!good) {
                ++tally.lost;
                break;
            }
        }
        tally.writes += writer.acknowledged();
    }
    std::printf("%d power cuts, %d acknowledged writes, %d cuts with loss (%s)\n", tally.cuts, tally.writes,
                tally.lost, settings);
    return tally;
}

// Checkpoints come often, so that the cuts fall into them as well.
TEST(PowerCut, WhatWasAcknowledgedSurvivesAndBatchesAreWhole) {
    const Tally tally = cutPower(700, "PRAGMA wal_autocheckpoint = 12");
    EXPECT_EQ(tally.lost, 0);
    EXPECT_EQ(tally.cuts, 2100);
    EXPECT_GT(tally.writes, tally.cuts);
}

// The same trials must find the loss where there is some.
TEST(PowerCut, WithoutSyncsTheTrialsFindLosses) {
    EXPECT_GT(cutPower(100, "PRAGMA wal_autocheckpoint = 12; PRAGMA synchronous = OFF").lost, 10);
    EXPECT_GT(cutPower(100, "PRAGMA wal_autocheckpoint = 12; PRAGMA synchronous = NORMAL").lost, 10);
}

// Whether the log holds the acknowledged entries and at most the one that was under way besides.
bool holdsAcknowledged(const std::vector<Alarm>& stored, std::size_t acknowledged) {
    if (stored.size() != acknowledged && stored.size() != acknowledged + 1) return false;
    for (std::size_t i = 0; i < stored.size(); ++i)
        if (stored[i].message != std::to_string(stored.size() - i)) return false;
    return true;
}

TEST(PowerCut, AlarmsThatWereAcknowledgedSurvive) {
    TempFolder folder;
    PowerCutDisk disk;
    const std::string file = folder.file("alarm.db");
    { const Database made = createDatabase(DatabaseKind::alarm, file, "S"); }
    std::mt19937 random(62);
    std::size_t acknowledged = 0;
    for (int cut = 0; cut < 300; ++cut) {
        disk.cutAfter(1 + static_cast<std::int64_t>(random() % 40));
        try {
            Database db = openDatabase(DatabaseKind::alarm, file);
            while (true) {
                writeAlarm(db, {0, "S", 0, std::to_string(acknowledged + 1), "", 1, "", ""});
                ++acknowledged;
            }
        } catch (const Error&) {
            EXPECT_TRUE(disk.isOff()) << "nothing but the power cut may end a write";
        }
        disk.restart(random);
        Database db = openDatabase(DatabaseKind::alarm, file);
        const std::vector<Alarm> stored = readAlarms(db, {});
        ASSERT_TRUE(holdsAcknowledged(stored, acknowledged)) << "cut " << cut;
        acknowledged = stored.size();
    }
    EXPECT_GT(acknowledged, 300U);
}

// What of the saves was acknowledged, and at most the one that was under way besides: text, value, code and
// edit of each together.
TEST(PowerCut, DataPointsThatWereAcknowledgedSurviveWithTheirEdits) {
    TempFolder folder;
    PowerCutDisk disk;
    const std::string file = folder.file("data_short_term.db");
    { const Database made = createDatabase(DatabaseKind::dataShortTerm, file, "S"); }
    const auto changeTo = [](int stamp) {
        Occurrence occurrence;
        occurrence.downtime.emplace().reason = std::to_string(stamp);
        return PointChange{.value = static_cast<float>(stamp),
                           .code = stamp,
                           .occurrence = occurrenceText(occurrence),
                           .extra = std::to_string(stamp)};
    };
    std::mt19937 random(63);
    int acknowledged = 0;
    for (int cut = 0; cut < 300; ++cut) {
        disk.cutAfter(1 + static_cast<std::int64_t>(random() % 60));
        try {
            Database db = openDatabase(DatabaseKind::dataShortTerm, file);
            SeriesStore series(db);
            DataPointStore points(db, series);
            while (true) {
                const int next = acknowledged + 1;
                points.write(minutes, next % 10 * 60, changeTo(next), editor);
                acknowledged = next;
            }
        } catch (const Error&) {
            EXPECT_TRUE(disk.isOff()) << "nothing but the power cut may end a write";
        }
        disk.restart(random);
        Database db = openDatabase(DatabaseKind::dataShortTerm, file);
        SeriesStore series(db);
        DataPointStore store(db, series);
        const std::vector<DataPoint> stored = store.list(minutes, 0, 9 * 60);
        int latest = 0;
        for (const DataPoint& point : stored) latest = std::max(latest, point.item.code);
        ASSERT_TRUE(latest == acknowledged || latest == acknowledged + 1) << "cut " << cut;
        ASSERT_EQ(stored.size(), std::min<std::size_t>(10, static_cast<std::size_t>(latest)));
        for (const DataPoint& point : stored) {
            // The latest stamp that was written to this interval.
            const int place = static_cast<int>(point.time / 60);
            const int wanted = latest - (latest - place + 10) % 10;
            const PointChange change = changeTo(wanted);
            ASSERT_EQ(point,
                      (DataPoint{point.time, {*change.value, wanted}, *change.occurrence, *change.extra}))
                << "cut " << cut;
        }
        ASSERT_EQ(db.queryNumber("SELECT count(*) FROM edit"), latest);
        if (cut % 20 == 0) {
            ASSERT_TRUE(store.check().empty());
        }
        acknowledged = latest;
    }
    EXPECT_GT(acknowledged, 300);
}

struct OldFile {
    DatabaseKind kind;
    const char* script;
    const char* tables;  // those that later versions add
    std::int64_t count;
};

class OldFilePowerCut : public testing::TestWithParam<OldFile> {};

TEST_P(OldFilePowerCut, IsBroughtUpToDateWhollyOrNotAtAll) {
    const OldFile& old_file = GetParam();
    TempFolder folder;
    PowerCutDisk disk;
    const std::string file = folder.file("old.db");
    makeOld(file, old_file.script);
    const std::string count_tables =
        std::string("SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND name IN (") +
        old_file.tables + ")";
    const PowerCutDisk::Image old = disk.image();
    std::mt19937 random(2);
    int unchanged = 0;
    int done = 0;
    for (int operations = 1; operations <= 60; ++operations) {
        disk.restore(old);
        disk.cutAfter(operations);
        try {
            (void)openDatabase(old_file.kind, file);
        } catch (const Error&) {
            EXPECT_TRUE(disk.isOff());
        }
        disk.restart(random);
        std::int64_t version = 0;
        {
            Database db(file, {});
            version = db.queryNumber("PRAGMA user_version");
            ASSERT_EQ(db.queryNumber(count_tables.c_str()), version == 1 ? 0 : old_file.count)
                << "after " << operations;
        }
        ++(version == 1 ? unchanged : done);
        Database db = openDatabase(old_file.kind, file);
        if (old_file.kind == DatabaseKind::config) {
            ASSERT_EQ(ParameterSet::load(db).entries().size(), 4U);
        } else {
            ASSERT_EQ(SeriesStore(db).countStored(), 1);
        }
        ASSERT_EQ(db.queryNumber("PRAGMA user_version"), currentVersion(old_file.kind));
    }
    EXPECT_GT(unchanged, 3);
    EXPECT_GT(done, 3);
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, OldFilePowerCut,
    testing::Values(OldFile{DatabaseKind::config, configVersion1,
                            "'special_value', 'relationship', 'unit', 'parameter_code'", 4},
                    OldFile{DatabaseKind::data, dataVersion1, "'data_point_text', 'edit'", 2},
                    OldFile{DatabaseKind::dataShortTerm, dataShortTermVersion1, "'data_point_text', 'edit'",
                            2}),
    [](const auto& old_file) {
        switch (old_file.param.kind) {
            case DatabaseKind::config:
                return "Config";
            case DatabaseKind::data:
                return "Data";
            default:
                return "ShortTerm";
        }
    });

// The child writes the stamp of each acknowledged write to the pipe. Runs and single intervals, one stamp
// each.
[[noreturn]] void writeUntilKilled(const SiteConnections& connections, int pipe, MonitorCode stamp) {
    try {
        Site site(connections, "DEMO");
        const Interval minute = Interval::parse("1m");
        std::vector<Item> items(2000);
        while (true) {
            ++stamp;
            for (Item& item : items) item = {static_cast<float>(stamp), stamp};
            site.write(minutePid, Span::define(0, 2000, minute), runOf(items));
            site.write(minutePid, 5000 * 60, {{static_cast<float>(stamp), stamp}});
            if (write(pipe, &stamp, sizeof stamp) != sizeof stamp) break;
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
    }
    _exit(1);
}

TEST(Kill, WhatWasAcknowledgedSurvivesAndBatchesAreWhole) {
    DemoSite demo;
    const SiteConnections connections = SiteConnections::inFolder(demo.folder.path());
    { const Site gone = std::move(demo.site); }
    std::mt19937 random(1);
    MonitorCode stamp = 0;
    MonitorCode acknowledged = 0;
    int kills = 0;
    for (; kills < 60; ++kills) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        ASSERT_NE(child, -1);
        if (child == 0) writeUntilKilled(connections, ends[1], stamp);
        close(ends[1]);
        std::this_thread::sleep_for(std::chrono::microseconds(5'000 + random() % 60'000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
        for (MonitorCode next; read(ends[0], &next, sizeof next) == sizeof next;) acknowledged = next;
        close(ends[0]);

        Site site(connections, "DEMO");
        store::Run run;
        site.read(minutePid, Span::define(0, 2000, Interval::parse("1m")), run);
        ASSERT_EQ(run.codes().size(), 1U) << "half a batch";
        const MonitorCode batch = run.code(0);
        const MonitorCode single = site.read(minutePid, 5000 * 60).code;
        ASSERT_GE(single, acknowledged);
        ASSERT_GE(batch, single);
        ASSERT_LE(batch, single + 1);
        ASSERT_TRUE(site.check().empty());
        stamp = single;
    }
    std::printf("%d kills, %d batches written\n", kills, stamp);
    EXPECT_GT(stamp, kills) << "the kills fell into writing";
}

TEST(TwoProcesses, AReaderNeverSeesHalfABatchAndNeverGoesBack) {
    DemoSite demo;
    const SiteConnections connections = SiteConnections::inFolder(demo.folder.path());
    { const Site gone = std::move(demo.site); }
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) writeUntilKilled(connections, ends[1], 0);
    close(ends[1]);
    Site site(connections, "DEMO");
    store::Run run;
    MonitorCode last = 0;
    int changes = 0;
    MonitorCode acknowledged = 0;
    for (int reads = 0; reads < 400; ++reads) {
        // What the writer acknowledged before this read began, the read sees.
        if (reads % 4 == 0) {
            ASSERT_EQ(read(ends[0], &acknowledged, sizeof acknowledged), ssize_t{sizeof acknowledged});
        }
        site.read(minutePid, Span::define(0, 2000, Interval::parse("1m")), run);
        ASSERT_EQ(run.codes().size(), 1U) << "half a batch";
        ASSERT_EQ(run.values().size(), 1U);
        ASSERT_GE(run.code(0), last);
        ASSERT_GE(run.code(0), acknowledged);
        changes += run.code(0) != last ? 1 : 0;
        last = run.code(0);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ends[0]);
    EXPECT_GT(changes, 20) << "both were at work at the same time";
}

TEST(TwoProcesses, BothMayWriteAndNoWriteIsLost) {
    DemoSite demo;
    const SiteConnections connections = SiteConnections::inFolder(demo.folder.path());
    { const Site gone = std::move(demo.site); }
    constexpr int programs = 4;
    constexpr int writes = 60;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = fork();
        ASSERT_NE(child, -1);
        if (child != 0) continue;
        try {
            Site site(connections, "DEMO");
            // Every program fills its own intervals of the same chunk.
            for (int i = 0; i < writes; ++i)
                site.write(minutePid, (i * programs + program) * 60, {{static_cast<float>(program), i + 1}});
        } catch (const std::exception& e) {
            std::fprintf(stderr, "%s\n", e.what());
            _exit(1);
        }
        _exit(0);
    }
    for (int program = 0; program < programs; ++program) {
        int status = 0;
        wait(&status);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    Site site(connections, "DEMO");
    for (int i = 0; i < programs * writes; ++i)
        ASSERT_EQ(site.read(minutePid, i * 60), (Item{static_cast<float>(i % programs), i / programs + 1}));
}

}  // namespace
}  // namespace vtdn::store::test

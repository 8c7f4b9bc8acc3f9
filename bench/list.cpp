#include "bench/list.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "bench/memory.h"
#include "bench/timing.h"
#include "bench/year_site.h"
#include "com/variant.h"
#include "store/occurrence.h"

namespace vtdn::bench {
namespace {

constexpr int tags = 10;
constexpr int hours = 10'000;
constexpr std::size_t records = std::size_t{tags} * hours;
constexpr std::int64_t hour = 3600;
constexpr LONG firstTag = 503030000;
constexpr LONG downtimePid = 503030050;

std::int64_t timeOf(int i) {
    return startSeconds + i * hour;
}

double valueOf(int tag, int i) {
    return 100.0 * tag + 0.25 * (i % 400);
}

store::Occurrence downtimeOf(int tag, int i) {
    store::OccurrencePart downtime;
    downtime.pid = downtimePid + tag;
    downtime.category = "Monitor equipment malfunctions";
    downtime.reason = "Sample line of stack " + std::to_string(i % 7);
    downtime.action = "Cleaned and recalibrated";
    downtime.excludable = i % 3 == 0;
    store::Occurrence occurrence;
    occurrence.downtime = downtime;
    return occurrence;
}

void makeSite(const store::SiteConnections& connections) {
    store::Site site = store::Site::create(connections, siteId);
    store::Load load(site);
    std::vector<store::Parameter> list(tags);
    for (int tag = 0; tag < tags; ++tag) {
        list[static_cast<std::size_t>(tag)].pid = firstTag + tag;
        list[static_cast<std::size_t>(tag)].name = "Hour " + std::to_string(tag);
        list[static_cast<std::size_t>(tag)].interval = "1h";
    }
    load.replaceParameters(list);
    for (int tag = 0; tag < tags; ++tag) {
        for (int i = 0; i < hours; ++i) {
            load.append(firstTag + tag, timeOf(i), {valueOf(tag, i), 6});
            load.writeOccurrence(firstTag + tag, timeOf(i), downtimeOf(tag, i),
                                 {.when = timeOf(i), .source = "bench", .user = {}});
        }
    }
    load.commit();
}

/// What one would write without a store: a row for each record, clustered by tag and time.
class Rows {
  public:
    explicit Rows(const char* file) {
        sqlite3* opened = nullptr;
        const int result = sqlite3_open(file, &opened);
        db_.reset(opened);
        need(result);
        run("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA locking_mode = EXCLUSIVE; "
            "PRAGMA cache_size = -262144; CREATE TABLE record (pid INTEGER, time INTEGER, value REAL, "
            "code INTEGER, text TEXT, PRIMARY KEY (pid, time)) WITHOUT ROWID; BEGIN IMMEDIATE");
        const Statement insert = prepare("INSERT INTO record VALUES (?, ?, ?, ?, ?)");
        for (int tag = 0; tag < tags; ++tag) {
            for (int i = 0; i < hours; ++i) {
                const std::string text = store::occurrenceText(downtimeOf(tag, i));
                sqlite3_bind_int(insert.get(), 1, firstTag + tag);
                sqlite3_bind_int64(insert.get(), 2, timeOf(i));
                sqlite3_bind_double(insert.get(), 3, valueOf(tag, i));
                sqlite3_bind_int(insert.get(), 4, 6);
                sqlite3_bind_text(insert.get(), 5, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
                if (sqlite3_step(insert.get()) != SQLITE_DONE) fail();
                sqlite3_reset(insert.get());
            }
        }
        run("COMMIT");
        select_ = prepare("SELECT pid, time, value, code, text FROM record ORDER BY pid, time");
    }

    struct Record {
        LONG pid;
        std::int64_t time;
        double value;
        LONG code;
        std::string text;
    };
    std::vector<Record> read() {
        std::vector<Record> all;
        while (sqlite3_step(select_.get()) == SQLITE_ROW) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(select_.get(), 4));
            const auto length = static_cast<std::size_t>(sqlite3_column_bytes(select_.get(), 4));
            all.push_back({sqlite3_column_int(select_.get(), 0), sqlite3_column_int64(select_.get(), 1),
                           sqlite3_column_double(select_.get(), 2), sqlite3_column_int(select_.get(), 3),
                           std::string(text, length)});
        }
        sqlite3_reset(select_.get());
        return all;
    }

  private:
    struct Close {
        void operator()(sqlite3* db) const noexcept { sqlite3_close(db); }
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    Statement prepare(const char* sql) {
        sqlite3_stmt* made = nullptr;
        need(sqlite3_prepare_v2(db_.get(), sql, -1, &made, nullptr));
        return Statement(made);
    }
    void run(const char* sql) { need(sqlite3_exec(db_.get(), sql, nullptr, nullptr, nullptr)); }
    void need(int result) const {
        if (result != SQLITE_OK) fail();
    }
    [[noreturn]] void fail() const { throw std::runtime_error(sqlite3_errmsg(db_.get())); }

    std::unique_ptr<sqlite3, Close> db_;
    Statement select_;
};

/// The array of a listing.
struct Listed {
    SAFEARRAY* array;
    explicit Listed(SAFEARRAY* listed) : array(listed) {}
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;
    ~Listed() { SafeArrayDestroy(array); }
};

void needEqual(_OccurrenceDataWrapper& occurrence, int tag, int i) {
    LONG pid = 0;
    com::Bstr reason;
    com::Variant value;
    com::check(occurrence.get_AffectedPID(&pid));
    com::check(occurrence.get_Downtime_Reason(reason.receive()));
    com::check(occurrence.get_NValue(value.receive()));
    if (pid != firstTag + tag || value.type() != VT_R8 || value.get().dblVal != valueOf(tag, i) ||
        com::toUtf8(reason.view()) != downtimeOf(tag, i).downtime->reason)
        com::throwError(E_FAIL, L"an occurrence that was listed differs from what was written");
}

}  // namespace

std::vector<Figure> measureList(const std::wstring& componentFile) {
    std::filesystem::create_directories("occurrences");
    const auto connections = store::SiteConnections::inFolder("occurrences");
    makeSite(connections);
    const OnSite site(componentFile, connections);
    const auto list = [&] {
        SAFEARRAY* array = site.listOfDowntimes(timeOf(0), timeOf(hours));
        if (!array || array->rgsabound[0].cElements != records)
            com::throwError(E_FAIL, L"the list has another length than expected");
        return array;
    };
    double bytes = 0;
    { const Listed first(list()); }
    {
        const double before = allocated();
        const Listed listed(list());
        bytes = (allocated() - before) / static_cast<double>(records);
        auto** elements = bench::elements<_OccurrenceDataWrapper*>(listed.array);
        for (int tag = 0; tag < tags; ++tag)
            for (int i = 0; i < hours; i += 97) needEqual(*elements[tag * hours + i], tag, i);
    }
    Rows rows("records.db");
    const auto [own, raw] = fastest(
        9, [&] { const Listed listed(list()); },
        [&] {
            if (rows.read().size() != records) throw std::runtime_error("the table has lost rows");
        });
    return {
        {"list_100k_over_row_loop", own / raw, over(own * 1e3, raw * 1e3, "ms")},
        {"list_bytes_per_record", bytes, "held by an array of 100,000 occurrences and the engine behind it"}};
}

}  // namespace vtdn::bench

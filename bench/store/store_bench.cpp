// Figures of the store: a year of minutes of one parameter among others, read and written, over the same year
// in a plain SQLite table with one row per value under a clustered key. Prints one JSON object.
//
//   store_bench [folder] [parameters]

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "store/database.h"
#include "store/error.h"
#include "store/site.h"

namespace {

using namespace vtdn::store;

constexpr std::int32_t minutes = 525'600;
constexpr std::int32_t hours = minutes / 60;
constexpr int repeats = 7;

double nanoseconds(auto&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// The best of several runs, per value.
double best(std::int32_t values, auto&& work) {
    double least = 1e300;
    for (int i = 0; i < repeats; ++i) least = std::min(least, nanoseconds(work));
    return least / values;
}

struct Year {
    std::vector<float> values;
    std::vector<MonitorCode> codes;
};

// What an analyzer gives: one decimal, wandering, with a stretch of another code now and then. Each salt is
// another year, so that no write meets the row that is there already.
Year makeYear(std::uint32_t salt) {
    Year year;
    std::uint32_t state = salt * 2654435761U + 1;
    double level = 250;
    while (year.values.size() < static_cast<std::size_t>(minutes)) {
        state = state * 1664525U + 1013904223U;
        const int stretch = 30 + static_cast<int>(state >> 22);
        const MonitorCode code = state % 16 == 0 ? 12 : 1;
        for (int i = 0; i < stretch && year.values.size() < static_cast<std::size_t>(minutes); ++i) {
            state = state * 1664525U + 1013904223U;
            level = std::clamp(level + static_cast<double>(state >> 16) / 6553.6 - 5, 0.0, 1000.0);
            year.values.push_back(static_cast<float>(static_cast<int>(level * 10)) / 10);
            year.codes.push_back(code);
        }
    }
    return year;
}

// The arrays that a client receives, made anew for each read.
struct Arrays {
    std::unique_ptr<float[]> values{new float[minutes]};
    std::unique_ptr<std::int32_t[]> codes{new std::int32_t[minutes]};
    std::unique_ptr<std::int16_t[]> none{new std::int16_t[minutes]};
};

// Keeps the compiler from leaving the work out.
volatile float sink;

class Rows {
  public:
    explicit Rows(const std::string& file) : db_(file, {.create = true}) {
        db_.execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA cache_size = -131072;");
        db_.execute(
            "CREATE TABLE value (pid INTEGER, time INTEGER, value REAL, mc INTEGER, PRIMARY KEY (pid, time)) "
            "WITHOUT ROWID");
    }
    void write(Pid pid, const Year& year) {
        Transaction transaction(db_);
        Statement insert(db_, "INSERT OR REPLACE INTO value VALUES (?, ?, ?, ?)");
        for (std::int32_t i = 0; i < minutes; ++i)
            insert
                .bindAll(pid, std::int64_t{i} * 60,
                         static_cast<double>(year.values[static_cast<std::size_t>(i)]),
                         year.codes[static_cast<std::size_t>(i)])
                .run();
        transaction.commit();
    }
    void read(Pid pid) {
        Arrays arrays;
        Statement select(db_, "SELECT value, mc FROM value WHERE pid = ? AND time >= 0 ORDER BY time");
        select.bindAll(pid);
        for (std::size_t i = 0; select.step(); ++i) {
            arrays.values[i] = static_cast<float>(select.real(0));
            arrays.codes[i] = select.integer(1);
            arrays.none[i] = 0;
        }
        sink = arrays.values[minutes - 1];
    }

  private:
    Database db_;
};

void fillFresh() {
    const Arrays arrays;
    std::fill_n(arrays.values.get(), minutes, 1.5F);
    std::fill_n(arrays.codes.get(), minutes, 1);
    std::fill_n(arrays.none.get(), minutes, std::int16_t{0});
    sink = arrays.values[minutes - 1];
}

void copyOut(const Run& run) {
    const Arrays arrays;
    for (const Run::Values& s : run.values()) {
        const bool single = s.kind == ValueKind::single;
        if (single)
            std::memcpy(&arrays.values[static_cast<std::size_t>(s.first)], run.singles(s).data(),
                        run.singles(s).size_bytes());
        std::fill_n(&arrays.none[static_cast<std::size_t>(s.first)], s.count,
                    static_cast<std::int16_t>(single ? 0 : -1));
    }
    for (const Run::Codes& s : run.codes()) {
        auto* to = &arrays.codes[static_cast<std::size_t>(s.first)];
        if (s.same)
            std::fill_n(to, s.count, s.code);
        else
            std::copy_n(run.codesOf(s).data(), s.count, to);
    }
    sink = arrays.values[minutes - 1];
}

std::uintmax_t sizeOf(const std::string& file) {
    std::error_code ignored;
    return std::filesystem::file_size(file, ignored);
}

int run(const std::string& folder, int parameters) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const Interval minute = Interval::of("m", 1);
    const Span year = Span::define(0, minutes, minute);
    const Pid pid = 100'110'000;

    Rows rows(folder + "/rows.db");
    Site site = Site::create(SiteConnections::inFolder(folder), "BENCH");
    std::vector<Parameter> all;
    for (int i = 0; i < parameters; ++i) {
        Parameter p;
        p.pid = pid + i * 100'000;
        p.name = "Minutes";
        p.interval = minute.text();
        all.push_back(p);
        rows.write(p.pid, makeYear(static_cast<std::uint32_t>(i)));
    }
    Parameter hourly;
    hourly.pid = pid + 30'000;
    hourly.name = "Hours";
    hourly.interval = Interval::of("h", 1).text();
    hourly.io_type = 10;
    hourly.calculation = Aggregation::average;
    hourly.uses = {pid};
    all.push_back(hourly);
    replaceParameters(site.database(DatabaseKind::config), all);
    site.flushCache();
    for (int i = 0; i < parameters; ++i) {
        const Year data = makeYear(static_cast<std::uint32_t>(i));
        site.write(pid + i * 100'000, year, data.values, data.codes);
    }
    site.database(DatabaseKind::dataShortTerm).execute("PRAGMA wal_checkpoint(TRUNCATE)");
    const double bytes = static_cast<double>(sizeOf(folder + "/data_short_term.db")) /
                         (static_cast<double>(minutes) * parameters);

    const double floor = best(minutes, fillFresh);
    const double row_read = best(minutes, [&] { rows.read(pid); });
    const double store_read = best(minutes, [&] {
        const auto lent = site.borrowRun();
        site.read(pid, year, *lent);
        copyOut(*lent);
    });
    Run result;
    const double fresh_read = best(minutes, [&] {
        Run fresh;
        site.read(pid, year, fresh);
        copyOut(fresh);
    });
    const double items_read = best(minutes, [&] {
        site.read(pid, year, result);
        for (std::int32_t i = 0; i < minutes; ++i)
            sink = static_cast<float>(result.code(i)) + std::get<float>(result.value(i));
    });
    std::uint32_t salt = 100;
    Year data;
    double row_write = 1e300;
    double store_write = 1e300;
    double append = 1e300;
    for (int i = 0; i < 3; ++i) {
        data = makeYear(salt++);
        row_write = std::min(row_write, nanoseconds([&] { rows.write(pid, data); }) / minutes);
        data = makeYear(salt++);
        store_write = std::min(
            store_write, nanoseconds([&] { site.write(pid, year, data.values, data.codes); }) / minutes);
        data = makeYear(salt++);
        append = std::min(append, nanoseconds([&] {
                                      Load load(site);
                                      for (std::int32_t k = 0; k < minutes; ++k)
                                          load.append(pid, Time{k} * 60,
                                                      {data.values[static_cast<std::size_t>(k)],
                                                       data.codes[static_cast<std::size_t>(k)]});
                                      load.commit();
                                  }) / minutes);
    }
    const double point_write = best(200, [&] {
        for (int i = 0; i < 200; ++i) site.write(pid, Time{i} * 6000, {{static_cast<float>(++salt), 3}});
    });
    const double point_read = best(200, [&] {
        for (int i = 0; i < 200; ++i) sink = static_cast<float>(site.read(pid, Time{i} * 6000).code);
    });
    const double average =
        best(hours, [&] { site.read(hourly.pid, Span::define(0, hours, Interval::of("h", 1)), result); });

    std::printf(
        "{\n  \"floor_ns\": %.2f,\n  \"row_read_ns\": %.1f,\n  \"store_read_ns\": %.2f,\n  "
        "\"store_read_fresh_run_ns\": "
        "%.2f,\n  \"store_read_by_item_ns\": %.2f,\n  \"row_write_ns\": %.1f,\n  \"store_write_ns\": %.1f,\n "
        " "
        "\"store_append_ns\": %.1f,\n  \"point_write_us\": %.1f,\n  \"point_read_us\": %.1f,\n  "
        "\"hour_average_us\": %.2f,\n  \"year_read_over_floor\": %.2f,\n  \"year_read_over_row_loop\": "
        "%.3f,\n  "
        "\"year_write_over_row_loop\": %.3f,\n  \"file_bytes_per_value\": %.2f\n}\n",
        floor, row_read, store_read, fresh_read, items_read, row_write, store_write, append,
        point_write / 1000, point_read / 1000, average / 1000, store_read / floor, store_read / row_read,
        store_write / row_write, bytes);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::string folder =
            argc > 1 ? argv[1] : (std::filesystem::temp_directory_path() / "store_bench").string();
        const int code = run(folder, argc > 2 ? std::atoi(argv[2]) : 10);
        std::filesystem::remove_all(folder);
        return code;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}

#include "bench/row_table.h"

#include <stdexcept>

namespace vtdn::bench {

RowTable::RowTable(const std::string& file) {
    if (sqlite3_open(file.c_str(), &db_) != SQLITE_OK) fail();
    // The same promises as the store makes, and a cache that holds the whole year.
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = FULL");
    run("PRAGMA locking_mode = EXCLUSIVE");
    run("PRAGMA cache_size = -262144");
    run("CREATE TABLE value (pid INTEGER, time INTEGER, value REAL, code INTEGER, PRIMARY KEY (pid, time)) "
        "WITHOUT ROWID");
    if (sqlite3_prepare_v2(
            db_, "SELECT time, value, code FROM value WHERE pid = ? AND time >= ? AND time < ? ORDER BY time",
            -1, &select_, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(db_, "INSERT OR REPLACE INTO value VALUES (?, ?, ?, ?)", -1, &insert_, nullptr) !=
            SQLITE_OK)
        fail();
}

RowTable::~RowTable() {
    sqlite3_finalize(select_);
    sqlite3_finalize(insert_);
    sqlite3_close(db_);
}

void RowTable::write(std::int32_t pid, std::int64_t start, std::span<const float> values,
                     std::span<const std::int32_t> codes) {
    run("BEGIN IMMEDIATE");
    for (std::size_t i = 0; i < values.size(); ++i) {
        sqlite3_bind_int(insert_, 1, pid);
        sqlite3_bind_int64(insert_, 2, start + static_cast<std::int64_t>(i) * 60);
        sqlite3_bind_double(insert_, 3, static_cast<double>(values[i]));
        sqlite3_bind_int(insert_, 4, codes[i]);
        if (sqlite3_step(insert_) != SQLITE_DONE) fail();
        sqlite3_reset(insert_);
    }
    run("COMMIT");
}

void RowTable::read(std::int32_t pid, std::int64_t start, LONG count, float* values, LONG* codes,
                    VARIANT_BOOL* missing) {
    sqlite3_bind_int(select_, 1, pid);
    sqlite3_bind_int64(select_, 2, start);
    sqlite3_bind_int64(select_, 3, start + std::int64_t{count} * 60);
    LONG rows = 0;
    while (sqlite3_step(select_) == SQLITE_ROW && rows < count) {
        const auto i = (sqlite3_column_int64(select_, 0) - start) / 60;
        const bool isNull = sqlite3_column_type(select_, 1) == SQLITE_NULL;
        values[i] = isNull ? 0.0F : static_cast<float>(sqlite3_column_double(select_, 1));
        codes[i] = sqlite3_column_int(select_, 2);
        missing[i] = isNull ? VARIANT_TRUE : VARIANT_FALSE;
        ++rows;
    }
    sqlite3_reset(select_);
    if (rows != count) throw std::runtime_error("the table holds fewer rows than were written");
}

void RowTable::run(const char* sql) {
    if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void RowTable::fail() const {
    throw std::runtime_error(sqlite3_errmsg(db_));
}

}  // namespace vtdn::bench

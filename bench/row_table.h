// What one would write without a store: a row for each value, clustered by parameter and time.
#pragma once

#include <ole2.h>
#include <sqlite3.h>

#include <cstdint>
#include <span>
#include <string>

namespace vtdn::bench {

class RowTable {
  public:
    explicit RowTable(const std::string& file);
    ~RowTable();
    RowTable(const RowTable&) = delete;
    RowTable& operator=(const RowTable&) = delete;

    /// Adds a run of minutes in one transaction.
    void write(std::int32_t pid, std::int64_t start, std::span<const float> values,
               std::span<const std::int32_t> codes);
    /// Reads a run of minutes with one prepared statement.
    void read(std::int32_t pid, std::int64_t start, LONG count, float* values, LONG* codes,
              VARIANT_BOOL* missing);

  private:
    void run(const char* sql);
    [[noreturn]] void fail() const;

    sqlite3* db_ = nullptr;
    sqlite3_stmt* select_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
};

}  // namespace vtdn::bench

// A thin layer over SQLite: connections, statements and transactions that end themselves. The only part of
// the store that knows which database program stands behind it.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace vtdn::store {

/// A path from UTF-8, whatever the platform's own encoding.
[[nodiscard]] std::filesystem::path pathOf(std::string_view utf8);
[[nodiscard]] std::string utf8Of(const std::filesystem::path& path);

class Statement;

/// How a database file is opened.
struct OpenOptions {
    bool create = false;            ///< make the file; it must not exist unless
    bool may_exist = false;         ///< an existing one is to be opened as well
    std::int32_t busy_ms = 10'000;  ///< how long to wait for another program's lock, in milliseconds
};

/// One connection to one database file, for use by one thread at a time. Every failure is an Error that names
/// the file.
class Database {
  public:
    Database(std::string_view file, const OpenOptions& options);

    [[nodiscard]] const std::string& file() const { return file_; }
    [[nodiscard]] bool isReadOnly() const;
    /// Whether a transaction is open on this connection.
    [[nodiscard]] bool inTransaction() const;

    void execute(const char* sql);
    [[nodiscard]] Statement prepare(std::string_view sql);
    /// The first column of the first row of a query, as a whole number (0 when there is no row).
    [[nodiscard]] std::int64_t queryNumber(const char* sql);
    [[nodiscard]] std::int64_t lastInsertedRow() const;

    /// Throws the Error for a result code of SQLite's.
    [[noreturn]] void fail(int code) const;
    /// Ends the open transaction and undoes it. Never throws: what cannot be undone now is undone on the next
    /// open.
    void rollback() noexcept;
    [[nodiscard]] sqlite3* handle() const { return db_.get(); }

  private:
    struct Closer {
        void operator()(sqlite3* db) const;
    };

    std::string file_;
    std::unique_ptr<sqlite3, Closer> db_;
};

/// What a column of a row holds.
enum class ColumnType { null, integer, real, text, blob };

/// A prepared statement. Parameters are numbered from 1, columns from 0, as in SQLite. Bound texts and blobs
/// are copied.
class Statement {
  public:
    Statement(Database& db, std::string_view sql);

    Statement& bind(int index, std::integral auto number) { return bindNumber(index, std::int64_t{number}); }
    Statement& bind(int index, double number);
    Statement& bind(int index, std::string_view text);
    Statement& bind(int index, std::span<const std::byte> blob);
    Statement& bindNull(int index);

    template <typename... Args>
    Statement& bindAll(const Args&... args) {
        int index = 0;
        (bind(++index, args), ...);
        return *this;
    }

    /// Goes to the next row; false at the end, after which the statement can be bound and stepped anew.
    bool step();
    /// Steps a statement that yields no rows.
    void run();
    void reset();

    [[nodiscard]] ColumnType type(int column) const;
    // Another type than the one asked for is converted as SQLite converts it.
    [[nodiscard]] std::int64_t number(int column) const;
    [[nodiscard]] std::int32_t integer(int column) const { return static_cast<std::int32_t>(number(column)); }
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] std::string text(int column) const;
    // Of a text or a blob as it stands; valid until the next step or reset.
    [[nodiscard]] std::span<const std::byte> blob(int column) const;
    [[nodiscard]] std::string_view view(int column) const;

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    Statement& bindNumber(int index, std::int64_t number);
    void check(int code);

    Database* db_;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// Ends a statement's reading at the end of a block, so that it holds no lock longer than needed.
class ResetAtEnd {
  public:
    explicit ResetAtEnd(Statement& statement) : statement_(statement) {}
    ~ResetAtEnd() { statement_.reset(); }
    ResetAtEnd(const ResetAtEnd&) = delete;
    ResetAtEnd& operator=(const ResetAtEnd&) = delete;

  private:
    Statement& statement_;
};

/// A write transaction: rolled back at the end of the block unless committed. Inside another one it does
/// nothing of its own, and the outer one decides.
class Transaction {
  public:
    explicit Transaction(Database& db);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// When this returns, the outermost transaction is on the disk.
    void commit();

  private:
    Database& db_;
    bool owns_;
};

/// A read transaction: everything read inside it is of one moment, and several reads share one file lock.
/// Inside another transaction it does nothing of its own.
class Snapshot {
  public:
    explicit Snapshot(Database& db);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

  private:
    Database& db_;
    bool owns_;
};

}  // namespace vtdn::store

#include "store/database.h"

#include <sqlite3.h>

#include <array>

#include "store/error.h"

namespace vtdn::store {
namespace {

struct Failure {
    int code;  // SQLite's primary result code
    ErrorKind kind;
    std::string_view what;  // follows the file name
};

constexpr std::array<Failure, 13> failures{{
    {SQLITE_BUSY, ErrorKind::databaseLocked,
     "is locked by another program. Close that program or wait until it is done, then try again."},
    {SQLITE_LOCKED, ErrorKind::databaseLocked,
     "is locked by another use of it in this program. Finish that one, then try again."},
    {SQLITE_CORRUPT, ErrorKind::databaseDamaged, "is damaged. Restore it from a backup."},
    {SQLITE_NOTADB, ErrorKind::notASiteDatabase,
     "is not a database. Check the file name in the connection string."},
    {SQLITE_READONLY, ErrorKind::databaseReadOnly,
     "is read-only. Allow writing to the file and to its folder, then try again."},
    {SQLITE_PERM, ErrorKind::databaseReadOnly,
     "may not be opened by this user. Check the rights on the file."},
    {SQLITE_AUTH, ErrorKind::databaseReadOnly,
     "may not be opened by this user. Check the rights on the file."},
    {SQLITE_CANTOPEN, ErrorKind::databaseReadOnly,
     "cannot be opened. Check that it is a file and that this user may write to it and to its folder."},
    {SQLITE_FULL, ErrorKind::diskFull, "cannot grow because the disk is full. Make room, then try again."},
    {SQLITE_IOERR, ErrorKind::ioFailure,
     "cannot be read or written. Check the disk and the connection to it."},
    {SQLITE_PROTOCOL, ErrorKind::databaseLocked, "is in use by too many programs at once. Try again."},
    {SQLITE_TOOBIG, ErrorKind::badValue, "cannot hold a value of that size."},
    {SQLITE_CONSTRAINT, ErrorKind::badParameter, "does not accept entries that contradict each other."},
}};

// A read or write beyond the end of a file, or one whose checks fail, is damage and not a failing disk.
bool isDamage(int extended) {
    return extended == SQLITE_IOERR_SHORT_READ || extended == SQLITE_IOERR_CORRUPTFS;
}

}  // namespace

std::filesystem::path pathOf(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

void Database::Closer::operator()(sqlite3* db) const {
    sqlite3_close_v2(db);
}

Database::Database(std::string_view file, const OpenOptions& options) : file_(file) {
    std::error_code ignored;
    const auto path = pathOf(file);
    const bool exists = std::filesystem::exists(path, ignored);
    if (options.create && exists && !options.may_exist)
        throw Error(ErrorKind::alreadyExists, "The file " + quote(file_) +
                                                  " exists already. Choose another name or "
                                                  "remove it first.");
    if (!options.create && !exists)
        throw Error(ErrorKind::databaseMissing, "The database " + quote(file_) +
                                                    " does not exist. Check the file "
                                                    "name in the connection string.");
    const auto folder = path.parent_path();
    if (options.create && !folder.empty() && !std::filesystem::is_directory(folder, ignored))
        throw Error(ErrorKind::databaseMissing,
                    "The folder of " + quote(file_) + " does not exist. Make it first.");
    // One thread at a time uses a connection: a lock around each column that is read would only cost.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                      (options.create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* db = nullptr;
    const int code = sqlite3_open_v2(file_.c_str(), &db, flags, nullptr);
    db_.reset(db);
    if (code != SQLITE_OK) fail(code);
    sqlite3_busy_timeout(db, options.busy_ms);
}

bool Database::isReadOnly() const {
    return sqlite3_db_readonly(db_.get(), "main") == 1;
}

bool Database::inTransaction() const {
    return sqlite3_get_autocommit(db_.get()) == 0;
}

void Database::execute(const char* sql) {
    if (const int code = sqlite3_exec(db_.get(), sql, nullptr, nullptr, nullptr); code != SQLITE_OK)
        fail(code);
}

Statement Database::prepare(std::string_view sql) {
    return {*this, sql};
}

std::int64_t Database::queryNumber(const char* sql) {
    Statement statement(*this, sql);
    return statement.step() ? statement.number(0) : 0;
}

std::int64_t Database::lastInsertedRow() const {
    return sqlite3_last_insert_rowid(db_.get());
}

void Database::fail(int code) const {
    const std::string name = "The database " + quote(file_) + " ";
    const int extended = db_ ? sqlite3_extended_errcode(db_.get()) : code;
    if (isDamage(code) || isDamage(extended))
        throw Error(ErrorKind::databaseDamaged, name + "is damaged. Restore it from a backup.");
    if ((code & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
    for (const Failure& failure : failures)
        if (failure.code == (code & 0xFF)) throw Error(failure.kind, name + std::string(failure.what));
    throw Error(ErrorKind::internal, name + "refused an operation: " +
                                         (db_ ? sqlite3_errmsg(db_.get()) : sqlite3_errstr(code)) + ".");
}

void Database::rollback() noexcept {
    sqlite3_exec(db_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(Database& db, std::string_view sql) : db_(&db) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(db_->handle(), sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
    if (code != SQLITE_OK) db_->fail(code);
}

void Statement::check(int code) {
    if (code != SQLITE_OK) db_->fail(code);
}

Statement& Statement::bindNumber(int index, std::int64_t number) {
    check(sqlite3_bind_int64(statement_.get(), index, number));
    return *this;
}

Statement& Statement::bind(int index, double number) {
    check(sqlite3_bind_double(statement_.get(), index, number));
    return *this;
}

Statement& Statement::bind(int index, std::string_view text) {
    // A null pointer would bind NULL.
    check(sqlite3_bind_text64(statement_.get(), index, text.data() == nullptr ? "" : text.data(), text.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(int index, std::span<const std::byte> blob) {
    const std::byte nothing{};
    check(sqlite3_bind_blob64(statement_.get(), index, blob.empty() ? &nothing : blob.data(), blob.size(),
                              SQLITE_TRANSIENT));
    return *this;
}

Statement& Statement::bindNull(int index) {
    check(sqlite3_bind_null(statement_.get(), index));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(statement_.get());
    if (code == SQLITE_ROW) return true;
    reset();
    if (code != SQLITE_DONE) db_->fail(code);
    return false;
}

void Statement::run() {
    if (step()) {
        reset();
        throw Error(ErrorKind::internal, "A statement of the store returned rows where none were expected.");
    }
}

void Statement::reset() {
    sqlite3_reset(statement_.get());
}

ColumnType Statement::type(int column) const {
    switch (sqlite3_column_type(statement_.get(), column)) {
        case SQLITE_INTEGER:
            return ColumnType::integer;
        case SQLITE_FLOAT:
            return ColumnType::real;
        case SQLITE_TEXT:
            return ColumnType::text;
        case SQLITE_BLOB:
            return ColumnType::blob;
        default:
            return ColumnType::null;
    }
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(statement_.get(), column);
}

std::string Statement::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::span<const std::byte> Statement::blob(int column) const {
    const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement_.get(), column));
    return {bytes,
            bytes == nullptr ? 0 : static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::string_view Statement::view(int column) const {
    const auto bytes = blob(column);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Transaction::Transaction(Database& db) : db_(db), owns_(!db.inTransaction()) {
    if (!owns_) return;
    // SQLite would begin a reading transaction and refuse no sooner than the first change.
    if (db_.isReadOnly()) db_.fail(SQLITE_READONLY);
    db_.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (owns_ && db_.inTransaction()) db_.rollback();
}

void Transaction::commit() {
    if (!owns_) return;
    db_.execute("COMMIT");
    owns_ = false;
}

Snapshot::Snapshot(Database& db) : db_(db), owns_(!db.inTransaction()) {
    if (owns_) db_.execute("BEGIN");
}

Snapshot::~Snapshot() {
    // Ending a transaction that has only read cannot lose anything.
    if (owns_ && db_.inTransaction()) db_.rollback();
}

}  // namespace vtdn::store

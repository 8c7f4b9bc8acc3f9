#include "store/schema.h"

#include <array>
#include <span>
#include <string>

#include "store/error.h"

namespace vtdn::store {
namespace {

// Scripts by version: number n brings a database of version n to n + 1. Never change one that has shipped.
using Scripts = std::span<const char* const>;

// One row in each database of a site, so that files of different sites cannot be mixed unnoticed.
#define VTDN_SITE_TABLE "CREATE TABLE site (site_id TEXT NOT NULL) STRICT;"

constexpr const char* directoryScripts[] = {
    R"(CREATE TABLE dahs (
        id INTEGER PRIMARY KEY CHECK (id BETWEEN 1 AND 2147483647),
        description TEXT NOT NULL,
        complete_name TEXT NOT NULL,
        site_id TEXT NOT NULL,
        vantor_dir TEXT NOT NULL,
        system_dir TEXT NOT NULL,
        alarm_connection TEXT NOT NULL,
        config_connection TEXT NOT NULL,
        data_connection TEXT NOT NULL,
        data_short_term_connection TEXT NOT NULL,
        realtime_connection TEXT NOT NULL,
        template_folder TEXT NOT NULL) STRICT;)"};

constexpr const char* siteOnlyScripts[] = {VTDN_SITE_TABLE};

// parameter.constant holds the value of a constant and constant_kind which kind of value it is (ValueKind),
// since a single and a double look the same in a column. special_value has the same with SpecialValueKind.
constexpr const char* configScripts[] = {VTDN_SITE_TABLE R"(
    CREATE TABLE monitor_code (
        code INTEGER PRIMARY KEY,
        short_name TEXT NOT NULL,
        long_name TEXT NOT NULL,
        rank INTEGER NOT NULL) STRICT;
    CREATE TABLE parameter (
        pid INTEGER PRIMARY KEY,
        name TEXT NOT NULL,
        description TEXT NOT NULL,
        format TEXT NOT NULL,
        units TEXT NOT NULL,
        interval TEXT NOT NULL,
        io_type INTEGER NOT NULL,
        parameter_type INTEGER NOT NULL,
        calculation TEXT NOT NULL,
        formula TEXT NOT NULL,
        roll_up TEXT NOT NULL,
        constant_kind INTEGER NOT NULL,
        constant ANY) STRICT;
    CREATE TABLE parameter_use (
        pid INTEGER NOT NULL REFERENCES parameter ON DELETE CASCADE,
        position INTEGER NOT NULL,
        used_pid INTEGER NOT NULL REFERENCES parameter DEFERRABLE INITIALLY DEFERRED,
        PRIMARY KEY (pid, position)) STRICT, WITHOUT ROWID;
    CREATE INDEX parameter_use_by_used ON parameter_use (used_pid);)",
                                         R"(
    CREATE TABLE special_value (
        pid INTEGER NOT NULL REFERENCES parameter ON DELETE CASCADE,
        id INTEGER NOT NULL,
        kind INTEGER NOT NULL,
        value ANY,
        PRIMARY KEY (pid, id)) STRICT, WITHOUT ROWID;
    CREATE TABLE relationship (
        pid INTEGER NOT NULL REFERENCES parameter ON DELETE CASCADE,
        related_pid INTEGER NOT NULL REFERENCES parameter ON DELETE CASCADE,
        PRIMARY KEY (pid, related_pid)) STRICT, WITHOUT ROWID;
    CREATE INDEX relationship_by_related ON relationship (related_pid);
    CREATE TABLE unit (
        unit INTEGER PRIMARY KEY,
        name TEXT NOT NULL) STRICT;
    CREATE TABLE parameter_code (
        code INTEGER PRIMARY KEY,
        short_name TEXT NOT NULL,
        long_name TEXT NOT NULL) STRICT;)"};

// "group" is a word of the query language.
constexpr const char* alarmScripts[] = {VTDN_SITE_TABLE, R"(
    CREATE TABLE alarm (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        site_id TEXT NOT NULL,
        time INTEGER NOT NULL,
        message TEXT NOT NULL,
        category TEXT NOT NULL,
        severity INTEGER NOT NULL CHECK (severity BETWEEN 0 AND 4),
        alarm_group TEXT NOT NULL,
        source TEXT NOT NULL) STRICT;
    CREATE INDEX alarm_by_time ON alarm (time);)"};

// chunk.id is series.id * 2^32 + chunk number + 2^31: chunks lie in the file in the order they are read in,
// and rows of this kind fill their pages, which rows under a key of two columns would not.
// data_point_text has what a data point holds beside value and code, for the few that hold it; parts and what
// follows say what the occurrence text holds, so that a listing reads no XML. edit.edited is when it was
// made.
constexpr const char* dataScripts[] = {VTDN_SITE_TABLE R"(
    CREATE TABLE series (
        id INTEGER PRIMARY KEY,
        pid INTEGER NOT NULL,
        interval TEXT NOT NULL,
        UNIQUE (pid, interval)) STRICT;
    CREATE TABLE chunk (
        id INTEGER PRIMARY KEY,
        data BLOB NOT NULL) STRICT;)",
                                       R"(
    CREATE TABLE data_point_text (
        series INTEGER NOT NULL REFERENCES series,
        time INTEGER NOT NULL,
        occurrence TEXT NOT NULL,
        extra TEXT NOT NULL,
        checksum INTEGER NOT NULL,
        PRIMARY KEY (series, time)) STRICT, WITHOUT ROWID;)",
                                       R"(
    ALTER TABLE data_point_text ADD COLUMN parts INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE data_point_text ADD COLUMN excursion_pid INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE data_point_text ADD COLUMN downtime_pid INTEGER NOT NULL DEFAULT 0;
    CREATE TABLE edit (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        series INTEGER NOT NULL REFERENCES series,
        time INTEGER NOT NULL,
        parts INTEGER NOT NULL,
        edited INTEGER NOT NULL,
        source TEXT NOT NULL,
        user TEXT NOT NULL,
        checksum INTEGER NOT NULL) STRICT;
    CREATE INDEX edit_by_edited ON edit (edited);
    CREATE INDEX edit_by_place ON edit (series, time);)"};

#undef VTDN_SITE_TABLE

struct Schema {
    DatabaseKind kind;
    std::string_view name;
    std::int32_t application;  // SQLite's application_id: four characters
    Scripts scripts;
};

constexpr std::int32_t fourCharacters(const char (&text)[5]) {
    return text[0] << 24 | text[1] << 16 | text[2] << 8 | text[3];
}

// In the order of DatabaseKind.
constexpr std::array<Schema, 6> schemas{{
    {DatabaseKind::directory, "directory", fourCharacters("VTDR"), directoryScripts},
    {DatabaseKind::alarm, "alarm", fourCharacters("VTAL"), alarmScripts},
    {DatabaseKind::config, "config", fourCharacters("VTCF"), configScripts},
    {DatabaseKind::data, "data", fourCharacters("VTDT"), dataScripts},
    {DatabaseKind::dataShortTerm, "data short-term", fourCharacters("VTST"), dataScripts},
    {DatabaseKind::realtime, "realtime", fourCharacters("VTRT"), siteOnlyScripts},
}};

const Schema& schemaOf(DatabaseKind kind) {
    return schemas[static_cast<std::size_t>(kind)];
}

void migrate(Database& db, const Schema& schema, std::int64_t from) {
    for (auto version = static_cast<std::size_t>(from); version < schema.scripts.size(); ++version)
        db.execute(schema.scripts[version]);
    db.execute(("PRAGMA user_version = " + std::to_string(schema.scripts.size())).c_str());
}

// Makes the tables of a database that has none yet, and marks it as one of the kind. False when it has some.
bool makeTables(Database& db, const Schema& schema, std::string_view site_id) {
    Transaction transaction(db);
    if (db.queryNumber("SELECT count(*) FROM sqlite_schema") != 0) return false;
    migrate(db, schema, 0);
    db.execute(("PRAGMA application_id = " + std::to_string(schema.application)).c_str());
    if (schema.kind != DatabaseKind::directory)
        Statement(db, "INSERT INTO site (site_id) VALUES (?)").bindAll(site_id).run();
    transaction.commit();
    return true;
}

void applySettings(Database& db) {
    // FULL: what was acknowledged is on the disk. The cache holds a year of minutes of several parameters.
    db.execute(
        "PRAGMA synchronous = FULL;"
        "PRAGMA foreign_keys = ON;"
        "PRAGMA cell_size_check = ON;"
        "PRAGMA trusted_schema = OFF;"
        "PRAGMA cache_size = -32768;");
}

void checkKind(Database& db, const Schema& schema) {
    const auto application = db.queryNumber("PRAGMA application_id");
    if (application == schema.application) return;
    for (const Schema& other : schemas)
        if (application == other.application)
            throw Error(ErrorKind::notASiteDatabase, "The file " + quote(db.file()) +
                                                         " is a database of kind " + std::string(other.name) +
                                                         " where one of kind " + std::string(schema.name) +
                                                         " is needed. Check the connection strings.");
    throw Error(
        ErrorKind::notASiteDatabase,
        "The file " + quote(db.file()) + " is not a database of this program. Check the connection string.");
}

std::int64_t checkedVersion(Database& db, const Schema& schema) {
    const auto version = db.queryNumber("PRAGMA user_version");
    const auto current = static_cast<std::int64_t>(schema.scripts.size());
    if (version > current)
        throw Error(ErrorKind::databaseNewer,
                    "The database " + quote(db.file()) +
                        " was made by a newer version of this program (its version is " +
                        std::to_string(version) + ", this program knows up to " + std::to_string(current) +
                        "). Install the newer version.");
    if (version < 1)
        throw Error(ErrorKind::databaseDamaged,
                    "The database " + quote(db.file()) + " has no version. Restore it from a backup.");
    return version;
}

}  // namespace

std::string_view nameOf(DatabaseKind kind) {
    return schemaOf(kind).name;
}

std::int32_t currentVersion(DatabaseKind kind) {
    return static_cast<std::int32_t>(schemaOf(kind).scripts.size());
}

void removeDatabase(std::string_view file) noexcept {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        std::error_code ignored;
        std::filesystem::remove(pathOf(std::string(file) + suffix), ignored);
    }
}

Database createDatabase(DatabaseKind kind, std::string_view file, std::string_view site_id) {
    // Outside the block below, which removes the file: one that was there already is not ours.
    std::optional<Database> db(std::in_place, file, OpenOptions{.create = true});
    bool made = false;
    try {
        // A day of minutes as singles fits into one page, so that it is read where it lies.
        db->execute("PRAGMA page_size = 8192");
        db->execute("PRAGMA journal_mode = WAL");
        applySettings(*db);
        made = makeTables(*db, schemaOf(kind), site_id);
    } catch (...) {
        db.reset();
        removeDatabase(file);
        throw;
    }
    if (!made)
        throw Error(ErrorKind::alreadyExists, "Another program has just made the file " + quote(file) + ".");
    return *std::move(db);
}

Database openOrCreateDirectory(std::string_view file) {
    {
        // In the rollback journal's mode, in which a second program that makes the file waits for the first.
        Database db(file, {.create = true, .may_exist = true});
        if (!db.isReadOnly() && db.queryNumber("PRAGMA application_id") == 0)
            makeTables(db, schemaOf(DatabaseKind::directory), {});
    }
    return openDatabase(DatabaseKind::directory, file);
}

Database openDatabase(DatabaseKind kind, std::string_view file, const OpenOptions& options) {
    const Schema& schema = schemaOf(kind);
    Database db(file, options);
    applySettings(db);
    checkKind(db, schema);
    if (checkedVersion(db, schema) < currentVersion(kind)) {
        if (db.isReadOnly())
            throw Error(ErrorKind::databaseReadOnly,
                        "The database " + quote(db.file()) +
                            " was made by an older version of this program and cannot be brought up to date, "
                            "because it is read-only. Allow writing to the file and to its folder once.");
        Transaction transaction(db);
        // Another program may have done it while this one waited for the lock.
        migrate(db, schema, checkedVersion(db, schema));
        transaction.commit();
    }
    return db;
}

}  // namespace vtdn::store

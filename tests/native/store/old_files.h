// Database files as versions 1 and 2 of this program made them.
#pragma once

#include <string>

#include "store/database.h"

namespace vtdn::store::test {

inline constexpr const char* configVersion1 = R"(
    CREATE TABLE site (site_id TEXT NOT NULL) STRICT;
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
    CREATE INDEX parameter_use_by_used ON parameter_use (used_pid);
    INSERT INTO site VALUES ('DEMO');
    INSERT INTO monitor_code VALUES (0, '', 'No code', 0), (12, 'SUB', 'Substitute', 500);
    INSERT INTO parameter VALUES
        (504010000, 'Stored', '', '0.0', 'ppm', '1m', 38, 3, '', '', '', 0, NULL),
        (504030000, 'Stored', '', '0.0', 'lb', '1h', 38, 0, '', '', '', 0, NULL),
        (504030200, 'Average', '', '', 'ppm', '1h', 10, 0, 'average', '', '', 0, NULL),
        (590500000, 'Limit', '', '', '', '', 4, 0, '', '', '', 2, 0.5);
    INSERT INTO parameter_use VALUES (504030200, 0, 504010000);
    PRAGMA application_id = 0x56544346;
    PRAGMA user_version = 1;)";

inline constexpr const char* alarmVersion1 = R"(
    CREATE TABLE site (site_id TEXT NOT NULL) STRICT;
    INSERT INTO site VALUES ('DEMO');
    PRAGMA application_id = 0x5654414C;
    PRAGMA user_version = 1;)";

// Each of these holds the single 1.5 with code 3 in the interval that begins at 2007-03-25 01:00.
inline constexpr const char* dataVersion1 = R"(
    CREATE TABLE site (site_id TEXT NOT NULL) STRICT;
    CREATE TABLE series (
        id INTEGER PRIMARY KEY,
        pid INTEGER NOT NULL,
        interval TEXT NOT NULL,
        UNIQUE (pid, interval)) STRICT;
    CREATE TABLE chunk (
        id INTEGER PRIMARY KEY,
        data BLOB NOT NULL) STRICT;
    INSERT INTO site VALUES ('DEMO');
    INSERT INTO series VALUES (1, 504030000, '1h');
    INSERT INTO chunk VALUES (6442451596,
        x'01005204604f24db0051040201000000c03f0051040000000000010003000000');
    PRAGMA application_id = 0x56544454;
    PRAGMA user_version = 1;)";

inline constexpr const char* dataShortTermVersion1 = R"(
    CREATE TABLE site (site_id TEXT NOT NULL) STRICT;
    CREATE TABLE series (
        id INTEGER PRIMARY KEY,
        pid INTEGER NOT NULL,
        interval TEXT NOT NULL,
        UNIQUE (pid, interval)) STRICT;
    CREATE TABLE chunk (
        id INTEGER PRIMARY KEY,
        data BLOB NOT NULL) STRICT;
    INSERT INTO site VALUES ('DEMO');
    INSERT INTO series VALUES (1, 504010000, '1m');
    INSERT INTO chunk VALUES (6442490110,
        x'01003d0089702a1b003c000201000000c03f003c000000000000010003000000');
    PRAGMA application_id = 0x56545354;
    PRAGMA user_version = 1;)";

// The second has texts beside the values, with their checksums.
inline constexpr const char* dataVersion2 = R"(
    CREATE TABLE site (site_id TEXT NOT NULL) STRICT;
    CREATE TABLE series (
        id INTEGER PRIMARY KEY,
        pid INTEGER NOT NULL,
        interval TEXT NOT NULL,
        UNIQUE (pid, interval)) STRICT;
    CREATE TABLE chunk (
        id INTEGER PRIMARY KEY,
        data BLOB NOT NULL) STRICT;
    CREATE TABLE data_point_text (
        series INTEGER NOT NULL REFERENCES series,
        time INTEGER NOT NULL,
        occurrence TEXT NOT NULL,
        extra TEXT NOT NULL,
        checksum INTEGER NOT NULL,
        PRIMARY KEY (series, time)) STRICT, WITHOUT ROWID;
    INSERT INTO site VALUES ('DEMO');
    INSERT INTO series VALUES (1, 504030000, '1h');
    INSERT INTO chunk VALUES (6442451596,
        x'01005204604f24db0051040201000000c03f0051040000000000010003000000');
    INSERT INTO data_point_text VALUES
        (1, 3383946000, '', 'note', 2377163758),
        (1, 3383949600, '<Occurrence><Downtime PID="504030600" Excludable="0"/></Occurrence>', 'note',
         314681924);
    PRAGMA application_id = 0x56544454;
    PRAGMA user_version = 2;)";

inline void makeOld(const std::string& file, const char* script) {
    Database db(file, {.create = true});
    db.execute("PRAGMA page_size = 8192; PRAGMA journal_mode = WAL;");
    db.execute(script);
}

}  // namespace vtdn::store::test

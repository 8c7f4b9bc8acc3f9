// The kinds of database files, their tables, and how files of an older version become current ones.
#pragma once

#include <cstdint>
#include <string_view>

#include "store/database.h"

namespace vtdn::store {

enum class DatabaseKind { directory, alarm, config, data, dataShortTerm, realtime };

/// "config" and so on, for sentences and file names.
[[nodiscard]] std::string_view nameOf(DatabaseKind kind);
/// The schema version that this program writes.
[[nodiscard]] std::int32_t currentVersion(DatabaseKind kind);

/// Makes an empty database of a kind that belongs to a site (the directory: to none). The file must not
/// exist; when anything fails, none is left behind. Throws alreadyExists, databaseMissing (the folder) and
/// the failures of the file system.
Database createDatabase(DatabaseKind kind, std::string_view file, std::string_view site_id);

/// Removes a closed database and everything beside it that belongs to it. Never throws.
void removeDatabase(std::string_view file) noexcept;

/// Opens the directory, and makes it when there is none. Safe when several programs do so at once.
Database openOrCreateDirectory(std::string_view file);

/// Opens a database of a kind and brings its tables up to the current version. Refuses what is missing,
/// locked, damaged, of another kind, or newer than this program. A file that must not be written is opened
/// for reading.
Database openDatabase(DatabaseKind kind, std::string_view file, const OpenOptions& options = {});

}  // namespace vtdn::store

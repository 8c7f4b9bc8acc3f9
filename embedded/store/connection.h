// Connection strings: key=value;... text that says where a database is.
#pragma once

#include <string>
#include <string_view>

namespace vtdn::store {

/// Keys are Driver and Database, in any case, each exactly once, Driver first or last. Blanks around keys and
/// values do not count. A value that holds a semicolon, a quotation mark or outer blanks stands between
/// double or single quotation marks; the mark itself is then doubled. Empty parts (a trailing semicolon) are
/// skipped.
struct Connection {
    std::string driver;    ///< "SQLite", the one driver there is, spelt so whatever case the text had
    std::string database;  ///< file name, UTF-8; a relative one starts at the program's current folder

    /// Reads a connection string. Throws malformedConnection.
    static Connection parse(std::string_view text);
    /// A connection string for a database file; parse() gives the file name back.
    static std::string format(std::string_view database);
};

}  // namespace vtdn::store

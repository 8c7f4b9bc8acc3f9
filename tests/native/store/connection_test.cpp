// Connection strings: what is read, and what is refused with which words.

#include "store/connection.h"

#include <gtest/gtest.h>

#include "expect_error.h"

namespace vtdn::store::test {
namespace {

TEST(Connection, ReadsDriverAndDatabaseInAnyOrderAndCase) {
    for (const char* text :
         {"Driver=SQLite;Database=C:\\site\\data.db", "DATABASE=C:\\site\\data.db;driver=sqlite",
          " Driver = SQLITE ; Database = C:\\site\\data.db ; ",
          ";;Driver=SQLite;;Database=C:\\site\\data.db;;"}) {
        const Connection c = Connection::parse(text);
        EXPECT_EQ(c.driver, "SQLite") << text;
        EXPECT_EQ(c.database, "C:\\site\\data.db") << text;
    }
}

TEST(Connection, QuotationMarksKeepSemicolonsBlanksAndTheOtherMark) {
    EXPECT_EQ(Connection::parse("Driver=SQLite;Database=\" a;b \"").database, " a;b ");
    EXPECT_EQ(Connection::parse("Driver=SQLite;Database='a\"b'").database, "a\"b");
    EXPECT_EQ(Connection::parse("Driver=SQLite;Database=\"a\"\"b\";").database, "a\"b");
    EXPECT_EQ(Connection::parse("Driver='SQLite';Database='it''s'").database, "it's");
    EXPECT_EQ(Connection::parse("Driver=SQLite;Database=O'Brien.db").database, "O'Brien.db");
    EXPECT_EQ(Connection::parse("Driver=SQLite;Database=a=b").database, "a=b");
}

TEST(Connection, WhatIsFormattedIsReadBackTheSame) {
    for (const char* file : {"data.db", "C:\\Plant; unit 5\\data.db", " leading", "trailing ", "a\"b",
                             "O'Brien", "'q'", "\"", "=;=", "\xC3\xA4\xF0\x9F\x8F\xAD.db"})
        EXPECT_EQ(Connection::parse(Connection::format(file)).database, file);
}

TEST(Connection, RefusesWhatIsMalformed) {
    for (const char* text :
         {"", "  ", ";;", "SQLite", "Driver", "Driver=SQLite", "Database=x", "Driver=;Database=x",
          "Driver=SQLite;Database=", "Driver=SQLite;Database=\"\"", "=x;Driver=SQLite;Database=x",
          "Driver=SQLite;Database=\"x", "Driver=SQLite;Database=\"x\"y", "Driver=SQLite;Database=x\"y",
          "Driver=SQLite;Driver=SQLite;Database=x", "Driver=SQLite;Database=x;database=y",
          "Driver=SQLite;Database=x;Timeout=3"})
        expectError(ErrorKind::malformedConnection, [&] { (void)Connection::parse(text); });
    expectError(ErrorKind::malformedConnection,
                [] { (void)Connection::parse(std::string_view("Driver=SQLite;Database=a\0b", 26)); });
}

TEST(Connection, SaysWhatIsWrong) {
    const auto refused = [](const char* text) {
        return expectError(ErrorKind::malformedConnection, [&] { (void)Connection::parse(text); });
    };
    EXPECT_NE(refused("Driver=Oracle;Database=x").find("\"Oracle\""), std::string::npos);
    EXPECT_NE(refused("Driver=SQLite;Databse=x").find("unknown key \"Databse\""), std::string::npos);
    EXPECT_NE(refused("Driver=SQLite").find("names no Database"), std::string::npos);
    EXPECT_NE(refused("Driver=SQLite;Driver=SQLite;Database=x").find("more than once"), std::string::npos);
}

TEST(Quote, ShowsControlCharactersAndCutsLongTextsBetweenCharacters) {
    EXPECT_EQ(quote("a\nb"), "\"a\\x0ab\"");
    std::string text(79, 'x');
    text += "\xC3\xA4 and more";
    EXPECT_EQ(quote(text), "\"" + std::string(79, 'x') + "...\"");
}

}  // namespace
}  // namespace vtdn::store::test

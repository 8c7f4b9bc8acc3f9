#include "client/import/csv_reader.h"

#include <gtest/gtest.h>

#include <cstring>

namespace vtdn::client {
namespace {

/// Hands a text out in pieces of a size, so that lines end on either side of every border.
ByteSource pieces(std::string text, std::size_t size) {
    return [text = std::move(text), size, done = std::size_t{0}](char* buffer, std::size_t room) mutable {
        const std::size_t n = std::min({size, room, text.size() - done});
        text.copy(buffer, n, done);
        done += n;
        return n;
    };
}

/// Everything that a reader says, one line each.
std::vector<std::string> readAll(const std::string& text, std::size_t size = 1 << 16) {
    CsvReader reader(pieces(text, size));
    std::vector<std::string> said;
    for (;;) {
        switch (reader.next()) {
            case CsvReader::Result::end:
                return said;
            case CsvReader::Result::badLine:
                said.push_back(std::to_string(reader.line()) + "!" + std::to_string(reader.problemField()) +
                               " " + reader.problem());
                break;
            case CsvReader::Result::row: {
                std::string row = std::to_string(reader.line()) + ":";
                for (const auto field : reader.fields()) row += "<" + std::string(field) + ">";
                said.push_back(row);
            }
        }
    }
}

using Lines = std::vector<std::string>;

TEST(CsvReader, SplitsLinesAtCommas) {
    EXPECT_EQ(readAll("a,b,c\n1,,3\n"), (Lines{"1:<a><b><c>", "2:<1><><3>"}));
    EXPECT_EQ(readAll("a,b\n1,2"), (Lines{"1:<a><b>", "2:<1><2>"}));
    EXPECT_EQ(readAll("a\r\nb\r\n"), (Lines{"1:<a>", "2:<b>"}));
    EXPECT_EQ(readAll("a,b\n,\n"), (Lines{"1:<a><b>", "2:<><>"}));
    EXPECT_EQ(readAll(""), Lines{});
}

TEST(CsvReader, TakesAByteOrderMarkAtTheStartOnly) {
    EXPECT_EQ(readAll("\xEF\xBB\xBFtime,x\n1,2\n"), (Lines{"1:<time><x>", "2:<1><2>"}));
    EXPECT_EQ(readAll("x\n\xEF\xBB\xBF\n"), (Lines{"1:<x>", "2:<\xEF\xBB\xBF>"}));
}

TEST(CsvReader, UndoesQuotationMarks) {
    EXPECT_EQ(readAll("a,\"b,c\",\"d \"\"e\"\"\"\n"), (Lines{"1:<a><b,c><d \"e\">"}));
    EXPECT_EQ(readAll("\"\",\"\"\"\",\"\"\"a\"\n"), (Lines{"1:<><\"><\"a>"}));
}

TEST(CsvReader, RefusesWhatIsNoCsv) {
    EXPECT_EQ(readAll("a,b\n\"x,1\ny,2\n"),
              (Lines{"1:<a><b>", "2!1 the quotation mark is not closed on this line", "3:<y><2>"}));
    EXPECT_EQ(readAll("a\n\"x\"y\n")[1], "2!1 there are characters behind the closing quotation mark");
    EXPECT_EQ(readAll("a\nx\"y\n")[1],
              "2!1 a quotation mark stands inside a field that does not begin with one");
    EXPECT_EQ(readAll("a,b\n1,x\ty\n")[1], "2!2 the field holds a control character");
    EXPECT_EQ(readAll("a,b\n1,\"x\ty\"\n")[1], "2!2 the field holds a control character");
    EXPECT_EQ(readAll("a,b\n1\n")[1], "2!0 the line has 1 field and the header 2");
    EXPECT_EQ(readAll("a\n1,2\n")[1], "2!0 the line has 2 fields and the header 1");
    EXPECT_EQ(readAll("a\n\nb\n")[1], "2!0 the line is empty");
    EXPECT_EQ(readAll("a\ncaf\xE9\n")[1],
              "2!0 byte 4 of the line is not UTF-8; save the file as \"CSV UTF-8\"");
    EXPECT_EQ(readAll(std::string("a\nx\0y\n", 6))[1], "2!1 the field holds a control character");
}

TEST(CsvReader, SaysTheSameHoweverTheBytesArrive) {
    const std::string text =
        "\xEF\xBB\xBFtime,\"a, b\",c\r\n1,\"2 \"\"x\"\"\",\xE2\x82\xAC\r\n\r\n\"open,2,3\nlast,2,3";
    const auto whole = readAll(text);
    ASSERT_EQ(whole.size(), 5u);
    for (std::size_t size = 1; size < text.size(); ++size) EXPECT_EQ(readAll(text, size), whole) << size;
}

TEST(CsvReader, PassesOverALineThatIsTooLong) {
    const auto said = readAll("a\n" + std::string(CsvReader::longestLine + 10, 'x') + "\nb\n", 1 << 20);
    ASSERT_EQ(said.size(), 3u);
    EXPECT_TRUE(said[1].starts_with("2!0 the line is longer than")) << said[1];
    EXPECT_EQ(said[2], "3:<b>");
}

TEST(CsvReader, DoesNotKeepAFileWithoutLineEndsInMemory) {
    // 64 MB in one line; the reader may hold no more than a few of its longest lines.
    std::size_t left = 64u << 20;
    std::size_t largestRequest = 0;
    CsvReader reader([&](char* buffer, std::size_t size) {
        largestRequest = std::max(largestRequest, size);
        const std::size_t n = std::min(size, left);
        std::memset(buffer, 'x', n);
        left -= n;
        return n;
    });
    EXPECT_EQ(reader.next(), CsvReader::Result::badLine);
    EXPECT_EQ(reader.next(), CsvReader::Result::end);
    EXPECT_LE(largestRequest, 4 * CsvReader::longestLine);
    EXPECT_EQ(reader.bytesRead(), 64u << 20);
}

}  // namespace
}  // namespace vtdn::client

// Throws texts at the CSV reader that are nearly CSV. Whatever comes, the reader ends, its line numbers grow
// by one, its rows have as many fields as the first one, its fields hold no control characters, and the text
// says the same in pieces of any size.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "client/import/csv_reader.h"
#include "client/text/utf8.h"

namespace vtdn::client {
namespace {

struct Line {
    CsvReader::Result result;
    std::vector<std::string> fields;
    std::string problem;
    bool operator==(const Line&) const = default;
};

std::vector<Line> readInPieces(std::string_view text, std::size_t piece) {
    std::size_t done = 0;
    CsvReader reader([&](char* buffer, std::size_t room) {
        const std::size_t n = std::min({piece, room, text.size() - done});
        text.copy(buffer, n, done);
        done += n;
        return n;
    });
    std::vector<Line> lines;
    for (;;) {
        const auto result = reader.next();
        if (result == CsvReader::Result::end) return lines;
        if (reader.line() != lines.size() + 1) throw std::logic_error("line numbers do not count");
        Line line{result, {}, {}};
        if (result == CsvReader::Result::row)
            line.fields.assign(reader.fields().begin(), reader.fields().end());
        else
            line.problem = reader.problem();
        lines.push_back(std::move(line));
    }
}

void checkText(std::string_view text) {
    const std::vector<Line> lines = readInPieces(text, 1 << 20);
    std::size_t columns = 0;
    for (const Line& line : lines) {
        if (line.result == CsvReader::Result::badLine) {
            if (line.problem.empty()) throw std::logic_error("a bad line without a reason");
            continue;
        }
        if (columns == 0) columns = line.fields.size();
        if (line.fields.size() != columns || columns == 0)
            throw std::logic_error("a row with another number of fields");
        for (const std::string& field : line.fields) {
            if (invalidUtf8(field) != std::string::npos) throw std::logic_error("a field that is not UTF-8");
            for (const char c : field)
                if (static_cast<unsigned char>(c) < 0x20)
                    throw std::logic_error("a control character in a field");
        }
    }
    if (readInPieces(text, 1) != lines || readInPieces(text, 7) != lines)
        throw std::logic_error("another result when the bytes arrive in pieces");
}

std::string randomText(std::mt19937& random) {
    static const std::vector<std::string> parts{",",
                                                ",",
                                                "\n",
                                                "\n",
                                                "\r\n",
                                                "\"",
                                                "\"",
                                                "\"\"",
                                                "a",
                                                "12.5",
                                                "\xC3\xA9",
                                                "\t",
                                                "\r",
                                                " ",
                                                "\xFF",
                                                "\xE2\x82",
                                                std::string(1, '\0'),
                                                "\xEF\xBB\xBF",
                                                "time",
                                                "-"};
    std::string text;
    for (auto n = random() % 60; n > 0; --n) text += parts[random() % parts.size()];
    return text;
}

TEST(CsvReaderFuzz, HoldsItsRulesOnTextsMadeOfTheirPieces) {
    for (std::uint32_t seed = 0; seed < 5'000; ++seed) {
        std::mt19937 random(seed);
        const std::string text = randomText(random);
        ASSERT_NO_THROW(checkText(text)) << "seed " << seed;
    }
}

TEST(CsvReaderFuzz, HoldsItsRulesOnAGoodFileWithBytesChanged) {
    const std::string good =
        "\xEF\xBB\xBFtime,1-030-3-00-00,\"1-030-3-00-00 mc\"\r\n2024-01-01 00:00,212.4,1\r\n2024-01-01 "
        "01:00,\"N/A, \"\"x\"\"\",9\r\n";
    for (std::uint32_t seed = 0; seed < 5'000; ++seed) {
        std::mt19937 random(seed);
        std::string text = good;
        for (auto n = 1 + random() % 4; n > 0; --n)
            text[random() % text.size()] = static_cast<char>(random());
        ASSERT_NO_THROW(checkText(text)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace vtdn::client

#include <gtest/gtest.h>

#include <limits>

#include "client/output/json.h"
#include "client/output/rows.h"

namespace vtdn::client {
namespace {

std::string written(Format format, const std::vector<std::vector<Cell>>& rows) {
    std::string text;
    const auto writer =
        makeRowWriter(format, {{"pid", "PID"}, {"value", "Value", Column::Align::right}, {"ok", "OK"}},
                      [&](std::string_view s) { text += s; });
    for (const auto& row : rows) writer->row(row);
    writer->finish();
    return text;
}

const std::vector<std::vector<Cell>> someRows{
    {"5-040-3-00-00", Cell::number(5680.74, "5680.7"), Cell::flag(true, "yes")},
    {"a,\"b\"", Cell(), Cell::flag(false, "no")},
    {"\xC2\xB5g", Cell(std::int32_t{102}), " padded "},
};

TEST(Rows, ATableAlignsItsColumns) {
    EXPECT_EQ(written(Format::table, someRows),
              "PID             Value  OK\n"
              "-------------  ------  --------\n"
              "5-040-3-00-00  5680.7  yes\n"
              "a,\"b\"                  no\n"
              "\xC2\xB5g                102   padded\n");
}

TEST(Rows, CsvHasNumbersInFullAndQuotesWhatNeedsIt) {
    EXPECT_EQ(written(Format::csv, someRows),
              "pid,value,ok\n"
              "5-040-3-00-00,5680.74,true\n"
              "\"a,\"\"b\"\"\",,false\n"
              "\xC2\xB5g,102,\" padded \"\n");
}

TEST(Rows, JsonHasAnObjectPerRow) {
    EXPECT_EQ(written(Format::json, someRows),
              "[\n"
              "  {\"pid\": \"5-040-3-00-00\", \"value\": 5680.74, \"ok\": true},\n"
              "  {\"pid\": \"a,\\\"b\\\"\", \"value\": null, \"ok\": false},\n"
              "  {\"pid\": \"\xC2\xB5g\", \"value\": 102, \"ok\": \" padded \"}\n"
              "]\n");
    EXPECT_EQ(written(Format::json, {}), "[]\n");
}

TEST(Rows, ACellCannotBreakATable) {
    EXPECT_EQ(written(Format::table, {{"a\nb\tc", Cell(), Cell()}}),
              "PID    Value  OK\n-----  -----  --\na b c\n");
}

TEST(Json, EscapesWhatItHasTo) {
    Json json;
    json.beginArray();
    json.value("\"\\\n\r\t\x01\x7F");
    json.value("caf\xE9");
    json.value(std::numeric_limits<double>::infinity());
    json.value(std::int64_t{-9'000'000'000});
    json.beginObject();
    json.member("empty", "");
    json.endObject();
    json.beginArray();
    json.endArray();
    json.endArray();
    EXPECT_EQ(json.text(),
              "[\"\\\"\\\\\\n\\r\\t\\u0001\\u007f\", \"caf\xEF\xBF\xBD\", null, -9000000000, {\"empty\": "
              "\"\"}, []]");
}

}  // namespace
}  // namespace vtdn::client

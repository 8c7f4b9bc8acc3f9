#include "targets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "store/chunk.h"
#include "store/connection.h"
#include "store/error.h"
#include "store/formula.h"
#include "store/interval.h"
#include "store/occurrence.h"

namespace vtdn::store::fuzz {
namespace {

using namespace std::string_view_literals;

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

bool connection(std::string_view input) {
    try {
        const Connection c = Connection::parse(input);
        require(c.driver == "SQLite" && !c.database.empty(), "a connection has a driver and a database");
        require(Connection::parse(Connection::format(c.database)).database == c.database,
                "a file name comes back");
        return true;
    } catch (const Error& e) {
        require(e.kind() == ErrorKind::malformedConnection, "the kind of error is malformedConnection");
        return false;
    }
}

bool interval(std::string_view input) {
    try {
        const Interval i = Interval::parse(input);
        require(Interval::parse(i.text()) == i, "an interval comes back from its text");
        require((i.seconds() == 0) != (i.months() == 0), "an interval has seconds or months");
        if (i.isStorable())
            for (const Time time : {earliestTime, Time{-1}, Time{0}, Time{3'383'942'400}, latestTime})
                require(i.begin(i.index(time)) <= time && i.begin(i.index(time) + 1) > time,
                        "intervals leave no gaps");
        for (const std::int64_t count : {1, longestRun}) try {
                const Span span = Span::define(0, count, i);
                require(span.end() > 0 && span.end() <= latestTime + 1, "a span ends in range");
            } catch (const Error& e) {
                require(e.kind() == ErrorKind::outOfRange || e.kind() == ErrorKind::offBoundary,
                        "the kind of error");
            }
        return true;
    } catch (const Error& e) {
        require(e.kind() == ErrorKind::badInterval, "the kind of error is badInterval");
        return false;
    }
}

bool formula(std::string_view input) {
    try {
        const Formula f = Formula::parse(input);
        std::vector<double> numbers(f.inputs().size());
        for (const double number : {0.0, 1.0, -2.5, 1e308, missingNumber()}) {
            std::fill(numbers.begin(), numbers.end(), number);
            require(!std::isinf(f.evaluate(numbers)), "a result is finite or missing");
        }
        return true;
    } catch (const Error& e) {
        require(e.kind() == ErrorKind::badFormula, "the kind of error is badFormula");
        return false;
    }
}

bool chunk(std::string_view input) {
    constexpr std::uint64_t key = 7;
    Blob blob;
    for (const char c : input) blob.push_back(static_cast<std::byte>(c));
    // Sealed with the right checksum, so that the input gets past it.
    if (blob.size() >= 8) {
        const std::uint32_t sum = checksum(std::span<const std::byte>(blob).subspan(8), key);
        std::memcpy(blob.data() + 4, &sum, sizeof sum);
    }
    try {
        Run all;
        decodeChunk(blob, key, 0, slotsPerChunk, all);
        all.finish(slotsPerChunk);
        Blob again;
        encodeChunk(all, 0, slotsPerChunk, key, again);
        if (again.empty()) return true;
        // NaNs differ from themselves: compare what is written.
        Run twice;
        decodeChunk(again, key, 0, slotsPerChunk, twice);
        twice.finish(slotsPerChunk);
        Blob third;
        encodeChunk(twice, 0, slotsPerChunk, key, third);
        require(again == third, "what was decoded is encoded and decoded the same");
        Run part;
        decodeChunk(blob, key, 3, 700, part);
        part.finish(700);
        for (std::int32_t i = 0; i < 700; ++i)
            require(part.code(i) == all.code(i + 3), "a part has the codes of the whole");
        return true;
    } catch (const DamagedChunk&) {
        return false;
    }
}

bool occurrence(std::string_view input) {
    try {
        const Occurrence read = parseOccurrence(input);
        require(occurrenceText(read) == input, "what was read is written the same");
        require(read.empty() == input.empty(), "only an empty text has no part");
        return !read.empty();
    } catch (const Error& e) {
        require(e.kind() == ErrorKind::badValue, "the kind of error is badValue");
        return false;
    }
}

}  // namespace

const std::vector<Target>& targets() {
    static const std::vector<Target> all{
        {"connection",
         connection,
         {"Driver=SQLite;Database=C:\\site\\data.db", "driver = sqlite ; database = \"a;\"\"b\" ;",
          "Driver=SQLite;Database='it''s'"},
         {"Driver", "Database", "=", ";", "\"", "\"\"", "'", "SQLite", " ", "\t", "\0"sv}},
        {"interval",
         interval,
         {"1m", "15m", "1h", "24h", "90s", "1M", "12M", "7d", " 3600s "},
         {"s", "m", "h", "d", "M", "0", "9", "99999999999999999999", " ", "-", "86400", "\0"sv}},
        {"formula",
         formula,
         {"[5-040-3-00-00] * P(504030000) + 1.5e3", "if([5-040-3-00-00] >= 2, min(1, 2, 3), -sqrt(abs(4)))",
          "((1)) / (2 - 2)"},
         {"[5-040-3-00-00]", "P(504050000)", "(", ")", ",", "<>", "<=", "1e308", "if(", "min(", "max(", "--",
          ".", "e", "[", "]"}},
        {"chunk",
         chunk,
         {"\1\0\1\0\0\0\0\0\1\1\0\7\0\0\0\1\1\0\3"sv,
          "\1\0\2\0\0\0\0\0\4\1\0\3\0abc\2\1\0\0\0\200\77\0\2\0\1\0\0\0"sv,
          "\1\0\240\5\0\0\0\0\0\240\5\0\240\5\1\0\0\0"sv,
          "\1\0\3\0\0\0\0\0\3\1\0\0\0\0\0\0\0\360\77\0\2\0\2\3\0\1\0\2\0\3\0"sv},
         {"\0"sv, "\1", "\2", "\3", "\4", "\240\5", "\377\377", "\1\0\0\0"sv}},
        {"occurrence",
         occurrence,
         {"<Occurrence><Excursion PID=\"101000501\" Category=\"fan\" Reason=\"a long text that says what "
          "happened, "
          "and when\" Action=\"none &lt;yet>\" Excludable=\"1\" Limit=\"0.5 lb/mmBtu\" "
          "LimitPID=\"101000900\"/>"
          "<Downtime PID=\"101000502\" Excludable=\"0\"/></Occurrence>",
          "<Occurrence><Downtime PID=\"-5\" Reason=\"\\0000&#10;\\\\\\dcff and other texts\" "
          "Excludable=\"0\"/></Occurrence>"},
         {"<Excursion", "<Downtime", "</", "/>", ">", "\"", "PID=\"1\" ", "Reason=\"x\" ", "&lt;", "&#13;",
          "\\fffe", "\\\\", "\xEF\xBF\xBF", "\xF0\x9F\x8F\xAD", "<!--", "<![CDATA[", "\0"sv}},
    };
    return all;
}

}  // namespace vtdn::store::fuzz

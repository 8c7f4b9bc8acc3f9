#include "client/import/cells.h"

#include <stdexcept>
#include <string>

#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/text/utf8.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::client {

namespace {

constexpr std::size_t leastPidDigits = 9;

bool allDigits(std::string_view text) {
    return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// A digit first, or one behind a sign, a point or both.
bool beginsLikeNumber(std::string_view text) {
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
    if (!text.empty() && text[0] == '.') text.remove_prefix(1);
    return !text.empty() && store::isDigit(text[0]);
}

}  // namespace

store::Pid pidOfCell(std::string_view cell) {
    if (cell.size() < leastPidDigits && allDigits(cell)) return 0;
    return store::parsePid(cell);
}

std::optional<std::int32_t> wholeNumberOfCell(std::string_view cell) {
    return allDigits(cell) ? parseInteger(cell) : std::nullopt;
}

std::optional<std::int32_t> signedNumberOfCell(std::string_view cell) {
    // parseInteger takes a plus, too.
    return cell.starts_with('+') ? std::nullopt : parseInteger(cell);
}

store::Time timeOfCell(std::string_view cell) {
    // The command line takes a T for the blank; files do not.
    const auto time = cell.size() > 10 && cell[10] == ' ' ? parseTimestamp(cell) : std::nullopt;
    if (!time)
        throw std::invalid_argument(store::quote(cell) +
                                    " is no time; times look like 2007-03-25 06:00 or 2007-03-25 06:00:30");
    return *time;
}

void requireBeginning(store::Pid pid, const store::Interval& interval, store::Time time) {
    if (!interval.beginsAt(time))
        throw std::invalid_argument(store::timeText(time) + " is not on the " + interval.text() +
                                    " interval of " + store::pidText(pid));
}

void RowTimes::take(store::Time time) {
    requireBeginning(pid, interval, time);
    if (last && *last >= time)
        throw std::invalid_argument(store::timeText(time) + " is not later than " + store::timeText(*last) +
                                    ", which " + store::pidText(pid) +
                                    " has a row for already; sort the rows by time");
    last = time;
}

store::Value valueOfCell(std::string_view cell) {
    if (cell.empty()) return {};
    if (beginsLikeNumber(cell)) {
        if (const auto number = parseNumber(cell)) return *number;
        throw std::invalid_argument(
            store::quote(cell) +
            " begins like a number and is none that can be stored; numbers look like -12.5 or "
            "6.02e23");
    }
    if (cell.size() > longestText && characterCount(cell) > longestText)
        throw std::invalid_argument("the text has " + std::to_string(characterCount(cell)) + " characters; " +
                                    std::to_string(longestText) + " are the most");
    return std::string(cell);
}

}  // namespace vtdn::client

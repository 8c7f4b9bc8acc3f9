#include "store/span_functions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "store/error.h"
#include "store/formula.h"
#include "store/numbers.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::store {
namespace {

constexpr std::int64_t pieceLength = 100'000;  // intervals that are read at once

void requireSpan(Time start, Time end) {
    if (start < earliestTime || end > latestTime + 1)
        throw Error(ErrorKind::outOfRange, "The span leaves the years 100 to 9999.");
    if (end < start)
        throw Error(ErrorKind::outOfRange, "The span from " + timeText(start) + " to " + timeText(end) +
                                               " ends before it starts. Give the earlier time first.");
}

const Interval& ownInterval(const ParameterEntry& entry) {
    if (!entry.interval)
        throw Error(ErrorKind::badInterval, "The parameter " + pidText(entry.parameter.pid) +
                                                " has no interval, so that nothing can be computed over a "
                                                "span of it.");
    return *entry.interval;
}

// The first interval that begins at the time or later.
std::int64_t indexFrom(const Interval& interval, Time time) {
    const std::int64_t index = interval.index(time);
    return interval.begin(index) == time ? index : index + 1;
}

// Intervals of a parameter by their numbers, first to end - 1.
struct IndexRange {
    std::int64_t first;
    std::int64_t end;
};

// Calls each(run, index of its first interval) for one piece after the other.
template <typename Each>
void forEachPiece(Site& site, const ParameterEntry& entry, IndexRange range, Each each) {
    const Interval& interval = ownInterval(entry);
    if (range.end - range.first > longestRun)
        throw Error(ErrorKind::outOfRange, "The span has " + std::to_string(range.end - range.first) +
                                               " intervals of " + pidText(entry.parameter.pid) + ". Up to " +
                                               std::to_string(longestRun) +
                                               " are accepted. Ask for a shorter span.");
    const Snapshot long_term(site.database(DatabaseKind::data));
    const Snapshot short_term(site.database(DatabaseKind::dataShortTerm));
    const auto run = site.borrowRun();
    for (std::int64_t at = range.first; at < range.end; at += pieceLength) {
        const auto count = static_cast<std::int32_t>(std::min(range.end - at, pieceLength));
        site.read(entry.parameter.pid, Span{interval.begin(at), count, interval}, *run);
        each(*run, at);
    }
}

IndexRange beginningIn(const ParameterEntry& entry, Time start, Time end) {
    const Interval& interval = ownInterval(entry);
    return {indexFrom(interval, start), indexFrom(interval, end)};
}

void addPiece(SpanSummary& summary, const Run& run, const std::vector<double>& numbers) {
    std::optional<std::int32_t> lowest;
    std::optional<std::int32_t> highest;
    const auto at = [&](std::int32_t i) { return numbers[static_cast<std::size_t>(i)]; };
    for (std::int32_t i = 0; i < run.count(); ++i) {
        if (isMissing(at(i))) continue;
        summary.total += at(i);
        ++summary.count;
        if (!lowest || at(i) < at(*lowest)) lowest = i;
        if (!highest || at(i) > at(*highest)) highest = i;
    }
    if (!lowest) return;
    const auto least = numberOf(summary.minimum);
    const auto most = numberOf(summary.maximum);
    if (!least || at(*lowest) < *least) summary.minimum = run.value(*lowest);
    if (!most || at(*highest) > *most) summary.maximum = run.value(*highest);
}

Value finiteOrNull(double number) {
    return std::isfinite(number) ? Value(number) : Value();
}

// How much of an interval lies in a span, from 0 to 1.
double shareOf(const Interval& interval, std::int64_t index, Time start, Time end) {
    const Time from = interval.begin(index);
    const Time to = interval.begin(index + 1);
    const Time covered = std::max<Time>(std::min(to, end) - std::max(from, start), 0);
    return static_cast<double>(covered) / static_cast<double>(to - from);
}

[[noreturn]] void refuseCodes(Pid pid, const std::string& why) {
    throw Error(ErrorKind::badParameter,
                "The special value " + std::to_string(special_value_id::availableCodes) + " of " +
                    pidText(pid) + " " + why + " It is a text of monitor codes, separated by commas.");
}

std::set<MonitorCode> availableCodes(Site& site, Pid pid) {
    const SpecialValue& listed = site.specialValue(pid, special_value_id::availableCodes);
    std::set<MonitorCode> codes;
    if (kindOf(listed) == SpecialValueKind::null) return codes;
    const auto* text = std::get_if<std::string>(&listed);
    if (text == nullptr) refuseCodes(pid, "is no text.");
    if (trimBlanks(*text).empty()) return codes;
    for (std::size_t from = 0; from <= text->size();) {
        const std::size_t comma = std::min(text->find(',', from), text->size());
        const std::string_view part = trimBlanks(std::string_view(*text).substr(from, comma - from));
        MonitorCode code = 0;
        const auto [stopped, problem] = std::from_chars(part.data(), part.data() + part.size(), code);
        if (problem != std::errc() || stopped != part.data() + part.size())
            refuseCodes(pid, "has " + quote(part) + " where a monitor code is needed.");
        codes.insert(code);
        from = comma + 1;
    }
    return codes;
}

}  // namespace

Value SpanSummary::sum() const {
    return finiteOrNull(total);
}

Value SpanSummary::average() const {
    return count == 0 ? Value() : finiteOrNull(total / static_cast<double>(count));
}

SpanSummary summarize(Site& site, Pid pid, Time start, Time end) {
    requireSpan(start, end);
    const ParameterEntry& entry = site.parameters().entry(pid);
    const IndexRange range = beginningIn(entry, start, end);
    SpanSummary summary;
    summary.intervals = range.end - range.first;
    std::vector<double> numbers;
    forEachPiece(site, entry, range, [&](const Run& run, std::int64_t) {
        numbersOf(run, numbers);
        addPiece(summary, run, numbers);
    });
    return summary;
}

std::optional<double> unitsPerHour(std::string_view units) {
    constexpr std::array<std::pair<std::string_view, double>, 8> known{{
        {"h", 1},
        {"hr", 1},
        {"hour", 1},
        {"min", 60},
        {"minute", 60},
        {"s", 3600},
        {"sec", 3600},
        {"second", 3600},
    }};
    const std::string_view trimmed = trimBlanks(units);
    for (const auto& [name, count] : known) {
        if (equalsIgnoringCase(trimmed, name)) return count;
        const bool plural = trimmed.size() == name.size() + 1 && lowerAscii(trimmed.back()) == 's';
        if (plural && equalsIgnoringCase(trimmed.substr(0, name.size()), name)) return count;
    }
    return std::nullopt;
}

Pid operatingTimeParameter(Site& site, Pid pid) {
    const SpecialValue& named = site.specialValue(pid, special_value_id::operatingTime);
    const auto refuse = [&](const std::string& why) {
        throw Error(ErrorKind::badParameter,
                    "There is no operating time for " + pidText(pid) + ": " + why +
                        " Name a parameter whose units are h, min or s in its special value " +
                        std::to_string(special_value_id::operatingTime) + ".");
    };
    Pid found = pid;
    if (const auto* other = std::get_if<std::int32_t>(&named))
        found = *other;
    else if (kindOf(named) != SpecialValueKind::null)
        refuse("what it has as special value is no whole number.");
    if (!site.parameters().contains(found)) refuse(pidText(found) + " does not exist.");
    const std::string& units = site.parameters().get(found).units;
    if (!unitsPerHour(units)) refuse("the units of " + pidText(found) + " are " + quote(units) + ".");
    return found;
}

double operatingHours(Site& site, Pid pid, Time start, Time end) {
    requireSpan(start, end);
    const ParameterEntry& entry = site.parameters().entry(operatingTimeParameter(site, pid));
    const Interval& interval = ownInterval(entry);
    // From the interval that the start lies in; none when the span is empty.
    const std::int64_t first = interval.index(start);
    const IndexRange range{first, start == end ? first : indexFrom(interval, end)};
    double total = 0;  // in the units of the parameter
    std::vector<double> numbers;
    forEachPiece(site, entry, range, [&](const Run& run, std::int64_t index) {
        numbersOf(run, numbers);
        for (std::int32_t i = 0; i < run.count(); ++i) {
            const double number = numbers[static_cast<std::size_t>(i)];
            if (isMissing(number)) continue;
            const bool edge = index + i == range.first || index + i == range.end - 1;
            total += number * (edge ? shareOf(interval, index + i, start, end) : 1.0);
        }
    });
    return total / unitsPerHour(entry.parameter.units).value();
}

std::optional<double> availabilityPercent(Site& site, Pid pid, Time start, Time end) {
    requireSpan(start, end);
    const ParameterEntry& entry = site.parameters().entry(pid);
    const std::set<MonitorCode> codes = availableCodes(site, pid);
    const IndexRange range = beginningIn(entry, start, end);
    std::int64_t available = 0;
    std::vector<double> numbers;
    forEachPiece(site, entry, range, [&](const Run& run, std::int64_t) {
        numbersOf(run, numbers);
        for (std::int32_t i = 0; i < run.count(); ++i) {
            const bool counts = codes.empty() || codes.contains(run.code(i));
            if (counts && !isMissing(numbers[static_cast<std::size_t>(i)])) ++available;
        }
    });
    if (range.end == range.first) return std::nullopt;
    return 100.0 * static_cast<double>(available) / static_cast<double>(range.end - range.first);
}

}  // namespace vtdn::store

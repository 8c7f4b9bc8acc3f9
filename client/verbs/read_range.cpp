#include "client/verbs/read_range.h"

#include <array>

#include "client/text/numbers.h"
#include "client/text/times.h"
#include "store/error.h"

namespace vtdn::client {

namespace {

constexpr std::string_view timeForms =
    "Times look like 2007-01-15, \"2007-01-15 13:00\" or 2007-01-15T13:00:30.";

Failure usage(const std::string& sentence, std::string next) {
    return {ExitCode::usage, sentence, std::move(next)};
}

/// Number of intervals from one time to another; the last may reach beyond the end.
std::int64_t intervalsBetween(store::Time from, store::Time to, const store::Interval& interval) {
    if (interval.seconds() > 0)
        return store::floorDivide(to - from + interval.seconds() - 1, interval.seconds());
    const std::int64_t months = store::monthIndex(to - 1) + 1 - store::monthIndex(from);
    return store::floorDivide(months + interval.months() - 1, interval.months());
}

ReadRange runBetween(store::Time from, store::Time to, const store::Interval& interval) {
    if (to <= from) throw usage("The run ends before it begins.", "--to has to be later than --from.");
    const std::int64_t count = intervalsBetween(from, to, interval);
    if (count > mostIntervals)
        throw usage("That are " + std::to_string(count) + " intervals of " + interval.text() + "; " +
                        std::to_string(mostIntervals) + " are the most.",
                    "Read it in pieces, or with a longer --interval.");
    return {false, from, static_cast<std::int32_t>(count), interval};
}

std::int32_t countArgument(const std::string& text) {
    const auto count = parseInteger(text);
    if (!count || *count < 1 || *count > mostIntervals)
        throw usage("\"" + text + "\" is no number of intervals.",
                    "--count takes a whole number from 1 to " + std::to_string(mostIntervals) + ".");
    return *count;
}

/// The span of --day or --month, if one was given.
std::optional<AskedSpan> calendarSpan(const Arguments& arguments) {
    if (const auto text = arguments.value("--day")) {
        const auto day = parseDay(*text);
        if (!day) throw usage("\"" + *text + "\" is no day.", "Days look like 2007-01-15.");
        return AskedSpan{*day, *day + store::secondsPerDay};
    }
    if (const auto text = arguments.value("--month")) {
        const auto month = parseMonth(*text);
        if (!month) throw usage("\"" + *text + "\" is no month.", "Months look like 2007-01.");
        return AskedSpan{*month, store::monthStart(store::monthIndex(*month) + 1)};
    }
    return std::nullopt;
}

store::Time neededTime(const Arguments& arguments, std::string_view option) {
    if (const auto text = arguments.value(option)) return timeArgument(option, *text);
    throw usage("Which span? " + std::string(option) + " is missing.",
                "For example: --from 2007-01-08 --to 2007-01-09, or --month 2007-01");
}

}  // namespace

store::Time timeArgument(std::string_view what, const std::string& text) {
    if (const auto time = parseTime(text)) return *time;
    throw usage("\"" + text + "\" is no time (" + std::string(what) + ").", std::string(timeForms));
}

std::optional<store::Interval> askedInterval(const Arguments& arguments) {
    const auto text = arguments.value("--interval");
    if (!text) return std::nullopt;
    try {
        return store::Interval::parse(*text);
    } catch (const store::Error&) {
        throw usage("\"" + *text + "\" is no interval.",
                    "Intervals are a count and one of s, m, h, d and M, as 15m, 1h, 1d or 1M; what is "
                    "shorter than a day "
                    "has to divide it.");
    }
}

EngineInterval engineInterval(const store::Interval& interval) {
    const std::string text = interval.text();
    return {text.substr(text.size() - 1), parseInteger(text.substr(0, text.size() - 1)).value_or(1)};
}

AskedSpan askedSpan(const Arguments& arguments) {
    constexpr std::array<std::string_view, 3> ways{"--day", "--month", "--from"};
    constexpr std::array<std::string_view, 3> ends{"--day", "--month", "--to"};
    refuseTogether(arguments, ways);
    refuseTogether(arguments, ends);
    if (const auto span = calendarSpan(arguments)) return *span;
    const AskedSpan span{neededTime(arguments, "--from"), neededTime(arguments, "--to")};
    if (span.to <= span.from)
        throw usage("The span ends before it begins.", "--to has to be later than --from.");
    return span;
}

OpenSpan openSpan(const Arguments& arguments) {
    OpenSpan span;
    if (const auto text = arguments.value("--from")) span.from = timeArgument("--from", *text);
    if (const auto text = arguments.value("--to")) span.to = timeArgument("--to", *text);
    if (span.from && span.to && *span.to <= *span.from)
        throw usage("The span ends before it begins.", "--to has to be later than --from.");
    return span;
}

ReadRange readRange(const Arguments& arguments, const store::Interval& interval) {
    constexpr std::array<std::string_view, 4> ways{"--at", "--day", "--month", "--from"};
    refuseTogether(arguments, ways);
    const auto to = arguments.value("--to");
    const auto count = arguments.value("--count");
    if ((to || count) && !arguments.has("--from"))
        throw usage(std::string(to ? "--to" : "--count") + " needs --from.",
                    "For example: --from 2007-01-15 --count 24");
    if (const auto text = arguments.value("--at")) return {true, timeArgument("--at", *text), 1, interval};
    if (const auto span = calendarSpan(arguments)) return runBetween(span->from, span->to, interval);
    const auto from = arguments.value("--from");
    if (!from)
        throw usage("Which intervals?",
                    "Say --at TIME, --day DATE, --month MONTH, or --from TIME with --to TIME or --count N.");
    const store::Time start = timeArgument("--from", *from);
    if (to && count) throw usage("--to and --count do not go together.", "Leave one of them away.");
    if (count) return {false, start, countArgument(*count), interval};
    if (to) return runBetween(start, timeArgument("--to", *to), interval);
    throw usage("Where does the run end?", "Say --to TIME or --count N beside --from.");
}

}  // namespace vtdn::client

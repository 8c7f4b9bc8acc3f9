// The alarm log of a DAHS.
#include "client/output/json.h"
#include "client/platform/clock.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/alarms.h"

namespace vtdn::client {

namespace {

constexpr std::int32_t usualLimit = 100;
constexpr std::int32_t highestLimit = 1'000'000;

std::int32_t severityArgument(const std::string& text) {
    return integerArgument("--severity", text, 0, store::highestSeverity);
}

std::string timeOf(const store::Alarm& alarm) {
    return timestampText(alarm.time, alarm.time % 60 != 0);
}

struct Wanted {
    store::AlarmFilter filter;
    std::optional<std::int32_t> severity;
    std::size_t limit = 0;
};

Wanted wantedAlarms(const Arguments& arguments) {
    Wanted wanted;
    const OpenSpan span = openSpan(arguments);
    wanted.filter.from = span.from;
    wanted.filter.to = span.to;
    if (const auto text = arguments.value("--severity")) wanted.severity = severityArgument(*text);
    const auto limit = arguments.value("--limit");
    const std::int32_t most = limit ? integerArgument("--limit", *limit, 1, highestLimit) : usualLimit;
    wanted.limit = static_cast<std::size_t>(most);
    // One more tells that there are more. With a severity all have to be looked at.
    if (!wanted.severity) wanted.filter.limit = most + 1;
    return wanted;
}

}  // namespace

ExitCode runAlarmWrite(Context& context) {
    const Arguments& arguments = context.arguments;
    store::Alarm alarm;
    alarm.message = arguments.operands()[0];
    if (const auto text = arguments.value("--severity")) alarm.severity = severityArgument(*text);
    alarm.category = arguments.value("--category").value_or("");
    alarm.group = arguments.value("--group").value_or("");
    alarm.source = arguments.value("--source").value_or("vtdn");
    const auto time = arguments.value("--time");
    alarm.time = time ? timeArgument("--time", *time) : standardTimeNow();
    Binding binding(context);
    if (!binding->writeAlarm(alarm))
        binding.refuse("The component did not write the alarm.",
                       "`vtdn doctor` says whether the site is in order.");
    if (arguments.has("--json")) {
        Json json;
        json.beginObject();
        json.member("time", timeOf(alarm));
        json.member("severity", alarm.severity);
        json.member("category", alarm.category);
        json.member("group", alarm.group);
        json.member("source", alarm.source);
        json.member("message", alarm.message);
        json.endObject();
        context.console.out(json.text() + "\n");
    } else {
        context.console.out("Wrote an alarm of severity " + std::to_string(alarm.severity) + " at " +
                            timeOf(alarm) + ".\n");
    }
    binding.report(false);
    return ExitCode::done;
}

ExitCode runAlarmList(Context& context) {
    const Wanted wanted = wantedAlarms(context.arguments);
    Binding binding(context);
    // The component writes alarms and has no operation that reads them.
    auto database = binding.database(store::DatabaseKind::alarm);
    auto alarms = store::readAlarms(database, wanted.filter);
    if (wanted.severity)
        std::erase_if(alarms, [&](const store::Alarm& alarm) { return alarm.severity != *wanted.severity; });
    const bool more = alarms.size() > wanted.limit;
    if (more) alarms.resize(wanted.limit);
    const auto rows = context.rows({{"time", "Time"},
                                    {"severity", "Severity", Column::Align::right},
                                    {"category", "Category"},
                                    {"group", "Group"},
                                    {"source", "Source"},
                                    {"message", "Message"}});
    for (const store::Alarm& alarm : alarms)
        rows->row({timeOf(alarm), alarm.severity, alarm.category, alarm.group, alarm.source, alarm.message});
    rows->finish();
    if (alarms.empty()) context.console.error("There are no such alarms in the log.");
    if (more)
        context.console.error("These are the newest " + std::to_string(wanted.limit) +
                              "; there are older ones. --limit and --to show them.");
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

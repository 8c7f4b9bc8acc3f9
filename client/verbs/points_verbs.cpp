// Data points: what an interval of a stored parameter holds altogether.
#include "client/component/error_text.h"
#include "client/output/json.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "com/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

/// A call whose failure the engine explains.
template <class Call>
auto explained(std::int32_t pid, Call call) {
    try {
        return call();
    } catch (const com::Error& error) {
        throw Failure(ExitCode::refused, describe(error),
                      "`vtdn params show " + store::pidText(pid) +
                          "` says whether its values are stored and at which interval; docs/engine.md what a "
                          "data point of the embedded engine can hold.");
    }
}

Cell numberCell(const PointValue& value, const std::string& format) {
    return value ? Cell::number(*value, formatNumber(*value, format)) : Cell();
}

std::string timeText(store::Time time, const store::Interval& interval) {
    return timestampText(time, time % 60 != 0 || interval.seconds() % 60 != 0);
}

}  // namespace

ExitCode runPointsList(Context& context) {
    const Arguments& arguments = context.arguments;
    const std::int32_t pid = pidArgument(arguments.operands()[0]);
    const AskedSpan span = askedSpan(arguments);
    const auto asked = askedInterval(arguments);
    (void)context.format();  // refuses what does not go together before anything is read
    Binding binding(context);
    binding.needParameter(pid);
    const store::Interval interval = asked ? *asked : binding.pointInterval(pid);
    // The component's span holds both its ends, this one ends before --to as everywhere.
    const auto points =
        explained(pid, [&] { return binding->dataPoints(pid, interval, span.from, span.to - 1); });
    const std::string format = binding->format(pid);
    const auto rows = context.rows({{"time", "Time"},
                                    {"value", "Value", Column::Align::right},
                                    {"mc", "MC", Column::Align::right},
                                    {"occurrence", "Occurrence"},
                                    {"extra", "Extra value"}});
    for (const PointReading& point : points)
        rows->row({timeText(point.time, interval), numberCell(point.value, format),
                   numberCell(point.code, ""), point.occurrence, point.extra});
    rows->finish();
    if (points.empty()) context.console.error("There are no data points in this span.");
    binding.report(false);
    return ExitCode::done;
}

ExitCode runPointsSetExtra(Context& context) {
    const auto& operands = context.arguments.operands();
    const std::int32_t pid = pidArgument(operands[0]);
    const store::Time time = timeArgument("TIME", operands[1]);
    const std::string& text = operands[2];
    Binding binding(context);
    binding.needParameter(pid);
    const store::Interval interval = binding.pointInterval(pid);
    if (!explained(pid, [&] { return binding->setExtra(pid, interval, time, text); }))
        binding.refuse("The component did not write the extra value.",
                       "`vtdn doctor` says whether the site is in order.");
    const std::string at = timeText(time, interval);
    if (context.arguments.has("--json")) {
        Json json;
        json.beginObject();
        json.member("pid", store::pidText(pid));
        json.member("time", at);
        json.member("extra", text);
        json.endObject();
        context.console.out(json.text() + "\n");
    } else {
        context.console.out((text.empty() ? "Removed the extra value of " : "Wrote the extra value of ") +
                            store::pidText(pid) + " at " + at + ".\n");
    }
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

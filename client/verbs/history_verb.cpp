// Edits of data points.
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/edits.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

constexpr std::int32_t usualLimit = 100;
constexpr std::int32_t highestLimit = 1'000'000;

std::string timeText(store::Time time) {
    return timestampText(time, time % 60 != 0);
}

/// "value, code".
std::string inWords(store::EditedParts parts) {
    constexpr std::pair<store::EditedParts, std::string_view> names[]{
        {store::EditedParts::value, "value"},
        {store::EditedParts::code, "code"},
        {store::EditedParts::occurrence, "occurrence"},
        {store::EditedParts::extra, "extra value"}};
    std::string text;
    for (const auto& [part, name] : names)
        if (store::includes(parts, part)) text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

}  // namespace

ExitCode runPointsHistory(Context& context) {
    const Arguments& arguments = context.arguments;
    const OpenSpan span = openSpan(arguments);
    store::EditFilter filter;
    filter.from = span.from;
    filter.to = span.to;
    if (!arguments.operands().empty()) filter.pid = pidArgument(arguments.operands()[0]);
    const auto limit = arguments.value("--limit");
    const std::int32_t most = limit ? integerArgument("--limit", *limit, 1, highestLimit) : usualLimit;
    filter.limit = most + 1;  // one more tells that there are more
    Binding binding(context);
    if (filter.pid) binding.needParameter(*filter.pid);
    // The component writes edits and has no operation that reads them.
    auto edits = binding.site().edits(filter);
    const bool more = edits.size() > static_cast<std::size_t>(most);
    if (more) edits.erase(edits.begin() + most, edits.end());
    const auto rows = context.rows({{"when", "When"},
                                    {"user", "User"},
                                    {"source", "Source"},
                                    {"pid", "PID"},
                                    {"time", "Time"},
                                    {"interval", "Interval", Column::Align::right},
                                    {"parts", "Edited"}});
    for (const store::Edit& edit : edits)
        rows->row({timestampText(edit.origin.when, true), edit.origin.user, edit.origin.source,
                   store::pidText(edit.pid), timeText(edit.time), edit.interval.text(), inWords(edit.parts)});
    rows->finish();
    if (edits.empty()) context.console.error("No such edits were made.");
    if (more)
        context.console.error("These are the newest " + std::to_string(most) +
                              "; there are older ones. --limit, --from and --to show them.");
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

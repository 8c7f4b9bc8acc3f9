#include "client/component/error_text.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "com/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

/// Everything that can be asked about a parameter without changing it.
void askAll(Component& component, std::int32_t pid, const std::optional<store::Time>& time) {
    constexpr std::int32_t hourly = 3;
    component.name(pid);
    component.units(pid);
    component.format(pid);
    component.interval(pid);
    component.isStored(pid);
    if (pid / 10'000 % 10 == hourly) component.uses(pid);
    // As a run of one interval: unlike the operation for one, it says what failed.
    if (time) component.read(pid, *time, 1, store::Interval::parse(component.interval(pid)));
}

}  // namespace

ExitCode runProblems(Context& context) {
    std::vector<std::int32_t> pids;
    for (const std::string& text : context.arguments.operands()) pids.push_back(pidArgument(text));
    std::optional<store::Time> time;
    if (const auto text = context.arguments.value("--at")) time = timeArgument("--at", *text);
    Binding binding(context);
    if (pids.empty()) pids = binding.pids();

    const auto rows = context.rows({{"pid", "PID"}, {"problem", "Problem"}});
    std::size_t found = 0;
    const auto take = [&](const std::string& about) {
        for (const std::string& problem : binding->takeProblems()) {
            rows->row({about, problem});
            ++found;
        }
    };
    take({});
    for (const std::int32_t pid : pids) {
        try {
            askAll(binding.component(), pid, time);
        } catch (const com::Error& error) {
            rows->row({store::pidText(pid), describe(error)});
            ++found;
        }
        take(store::pidText(pid));
    }
    if (found > 0 || context.format() != Format::table)
        rows->finish();
    else
        context.console.out("No problems in DAHS " + std::to_string(binding.dahsId()) + ": " +
                            std::to_string(pids.size()) + " parameters asked.\n");
    return found == 0 ? ExitCode::done : ExitCode::refused;
}

}  // namespace vtdn::client

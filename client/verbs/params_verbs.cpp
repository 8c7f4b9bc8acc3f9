#include <algorithm>

#include "client/verbs/context.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::client {

namespace {

/// Whether a text holds another one; the case of ASCII letters does not count.
bool holds(std::string_view text, std::string_view part) {
    const auto same = [](char a, char b) { return store::lowerAscii(a) == store::lowerAscii(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

/// What is known of a parameter, all of it from the component.
struct Metadata {
    std::string pid;
    std::string name;
    std::string units;
    std::string format;
    std::string interval;
    bool stored;

    Metadata(Component& component, std::int32_t number)
        : pid(store::pidText(number)),
          name(component.name(number)),
          units(component.units(number)),
          format(component.format(number)),
          interval(component.interval(number)),
          stored(component.isStored(number)) {}
};

std::string whyNothing(const ParamsSelection& selection, const std::string& wanted) {
    const bool all = selection.kind == ParamsSelection::Kind::all;
    if (!wanted.empty())
        return std::string(all ? "No parameter" : "None of these parameters") + " has \"" + wanted +
               "\" in its PID, name or units.";
    return all ? "The site has no parameters; load some with `vtdn site import`."
               : "No parameter of the site " + inWords(selection) + ".";
}

}  // namespace

ExitCode runParamsList(Context& context) {
    const auto& operands = context.arguments.operands();
    const std::string wanted = operands.empty() ? std::string() : operands[0];
    const ParamsSelection selection = paramsSelection(context.arguments);
    Binding binding(context);
    const auto rows = context.rows({{"pid", "PID"},
                                    {"name", "Name"},
                                    {"units", "Units"},
                                    {"interval", "Interval", Column::Align::right},
                                    {"format", "Format", Column::Align::right},
                                    {"stored", "Stored"}});
    std::size_t shown = 0;
    const bool all = selection.kind == ParamsSelection::Kind::all;
    for (const std::int32_t pid : all ? binding.pids() : binding->list(selection)) {
        const Metadata m(binding.component(), pid);
        if (!holds(m.pid, wanted) && !holds(m.name, wanted) && !holds(m.units, wanted)) continue;
        rows->row(
            {m.pid, m.name, m.units, m.interval, m.format, Cell::flag(m.stored, m.stored ? "yes" : "no")});
        ++shown;
    }
    rows->finish();
    if (shown == 0) context.console.error(whyNothing(selection, wanted));
    binding.report(false);
    return ExitCode::done;
}

ExitCode runParamsShow(Context& context) {
    std::vector<std::int32_t> pids;
    for (const std::string& text : context.arguments.operands()) pids.push_back(pidArgument(text));
    Binding binding(context);
    const bool people = context.format() == Format::table;
    const auto rows = people ? nullptr
                             : context.rows({{"pid", ""},
                                             {"name", ""},
                                             {"units", ""},
                                             {"interval", ""},
                                             {"format", ""},
                                             {"stored", ""}});
    for (const std::int32_t pid : pids) {
        binding.needParameter(pid);
        const Metadata m(binding.component(), pid);
        if (rows) {
            rows->row({m.pid, m.name, m.units, m.interval, m.format, Cell::flag(m.stored, {})});
            continue;
        }
        context.console.out(m.pid + "  " + m.name + "\n  units     " + m.units + "\n  interval  " +
                            m.interval + "\n  format    " + m.format + "\n  kind      " +
                            (m.stored ? "stored in the database; can be written"
                                      : "constant or computed; cannot be written") +
                            "\n");
    }
    if (rows) rows->finish();
    binding.report(false);
    return ExitCode::done;
}

ExitCode runParamsUses(Context& context) {
    const std::int32_t pid = pidArgument(context.arguments.operands()[0]);
    Binding binding(context);
    const auto used = binding->uses(pid);
    if (!used)
        binding.refuse("The component does not say what " + store::pidText(pid) + " uses.",
                       "It does for parameters of time type 3 (the digit in the middle of the PID).");
    const auto rows = context.rows({{"pid", "PID"}, {"name", "Name"}, {"kind", "Kind"}});
    std::size_t shown = 0;
    const auto list = [&](const std::vector<std::int32_t>& pids, const char* kind) {
        for (const std::int32_t number : pids) {
            rows->row({store::pidText(number), binding->name(number), kind});
            ++shown;
        }
    };
    list(used->stored, "stored");
    list(used->constant, "constant");
    rows->finish();
    if (shown == 0) context.console.error(store::pidText(pid) + " is computed from no other parameter.");
    binding.report(false);
    return ExitCode::done;
}

ExitCode runParamsRelated(Context& context) {
    const std::int32_t pid = pidArgument(context.arguments.operands()[0]);
    Binding binding(context);
    auto document = binding->relationship(pid);
    if (!document)
        binding.refuse("The component does not say what " + store::pidText(pid) + " is related to.",
                       "`vtdn params list --related` shows the parameters that are.");
    // Lines end here as in everything else that is printed.
    std::erase(*document, '\r');
    if (document->empty())
        context.console.error(store::pidText(pid) +
                              " has none: it is related to no other parameter. `vtdn params list --related` "
                              "shows those that are.");
    else
        context.console.out(*document + (document->ends_with('\n') ? "" : "\n"));
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client

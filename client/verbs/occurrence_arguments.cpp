#include "client/verbs/occurrence_arguments.h"

#include <array>

#include "client/text/numbers.h"
#include "client/verbs/typed_arguments.h"

namespace vtdn::client {

namespace {

constexpr std::int32_t highestUnit = 19;

std::int32_t unitOrPid(const std::string& text) {
    if (const auto number = parseInteger(text); number && isUnit(*number)) return *number;
    try {
        return pidArgument(text);
    } catch (const Failure& failure) {
        throw Failure(ExitCode::usage, "\"" + text + "\" is neither a unit nor a PID.",
                      "Units are numbers from 0 to 19. " + failure.next());
    }
}

}  // namespace

bool isUnit(std::int32_t number) {
    return number >= 0 && number <= highestUnit;
}

std::int32_t excludeFilter(const PartFilter& parts) {
    if (!parts.excludable) return 0;
    return *parts.excludable ? 2 : 1;
}

OccurrenceQuery occurrenceQuery(const Arguments& arguments) {
    constexpr std::array<std::string_view, 2> kinds{"--downtimes", "--excursions"};
    constexpr std::array<std::string_view, 2> sides{"--excludable", "--counted"};
    refuseTogether(arguments, kinds);
    refuseTogether(arguments, sides);
    const AskedSpan span = askedSpan(arguments);
    OccurrenceQuery query;
    query.first = span.from;
    query.last = span.to - 1;  // the component's span holds both its ends
    query.parts.downtimes = !arguments.has("--excursions");
    query.parts.excursions = !arguments.has("--downtimes");
    if (arguments.has("--excludable")) query.parts.excludable = true;
    if (arguments.has("--counted")) query.parts.excludable = false;
    query.byTag = arguments.has("--by-tag");
    for (const std::string& text : arguments.operands()) query.unitsOrTags.push_back(unitOrPid(text));
    return query;
}

PartChanges partChanges(const Arguments& arguments) {
    constexpr std::array<std::string_view, 2> words{"no", "yes"};
    PartChanges changes;
    changes.category = arguments.value("--category");
    changes.reason = arguments.value("--reason");
    changes.action = arguments.value("--action");
    if (arguments.has("--excludable"))
        changes.excludable = choiceArgument(arguments, "--excludable", words, 0) == 1;
    return changes;
}

OccurrenceKind partMeant(const Arguments& arguments, const store::Occurrence& occurrence, std::int32_t pid) {
    constexpr std::array<std::string_view, 2> kinds{"--downtime", "--excursion"};
    refuseTogether(arguments, kinds);
    const auto& excursion = occurrence.excursion;
    const auto& downtime = occurrence.downtime;
    if (arguments.has("--downtime")) {
        if (downtime) return OccurrenceKind::downtime;
        throw Failure(ExitCode::refused, "The occurrence has no downtime.",
                      "It has an excursion: --excursion.");
    }
    if (arguments.has("--excursion")) {
        if (excursion) return OccurrenceKind::excursion;
        throw Failure(ExitCode::refused, "The occurrence has no excursion.",
                      "It has a downtime: --downtime.");
    }
    if (!excursion || !downtime) return excursion ? OccurrenceKind::excursion : OccurrenceKind::downtime;
    if (excursion->pid == pid && downtime->pid != pid) return OccurrenceKind::excursion;
    if (downtime->pid == pid && excursion->pid != pid) return OccurrenceKind::downtime;
    throw Failure(ExitCode::usage, "There are an excursion and a downtime at that time.",
                  "Say which one: --excursion or --downtime.");
}

}  // namespace vtdn::client

// What is typed behind the verbs about occurrences, as values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/cli/command.h"
#include "client/occurrences/runs.h"
#include "client/verbs/read_range.h"

namespace vtdn::client {

/// Which occurrences are asked for, as the component's list takes it.
struct OccurrenceQuery {
    store::Time first = 0;
    store::Time last = 0;  ///< included
    PartFilter parts;
    bool byTag = false;
    /// Numbers of units and PIDs; none for those of the whole site.
    std::vector<std::int32_t> unitsOrTags;
};

/// 0 takes everything, 1 leaves out what is excludable, 2 takes nothing else.
std::int32_t excludeFilter(const PartFilter& parts);

/// Reads the operands of `occurrences list`, the options of its span, --downtimes or --excursions,
/// --excludable or --counted, and --by-tag. Throws Failure (usage).
OccurrenceQuery occurrenceQuery(const Arguments& arguments);

/// Whether a number is that of a unit rather than a PID.
bool isUnit(std::int32_t number);

/// What is to be said anew of an occurrence.
struct PartChanges {
    std::optional<std::string> category;
    std::optional<std::string> reason;
    std::optional<std::string> action;
    std::optional<bool> excludable;

    [[nodiscard]] bool empty() const { return !category && !reason && !action && !excludable; }
};

/// Reads --category, --reason, --action and --excludable. Throws Failure (usage).
PartChanges partChanges(const Arguments& arguments);

/// Which part of an occurrence is meant: the one that --downtime or --excursion asks for, the only one there
/// is, or the one of the parameter that was typed. Throws Failure (refused) when there is no such part, and
/// (usage) when more has to be said.
OccurrenceKind partMeant(const Arguments& arguments, const store::Occurrence& occurrence, std::int32_t pid);

}  // namespace vtdn::client

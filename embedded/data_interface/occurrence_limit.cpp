#include "data_interface/occurrence_limit.h"

#include <variant>

#include "store/pid_text.h"
#include "store/value_text.h"

namespace vtdn::embedded {
namespace {

constexpr std::int32_t limitOfOccurrence = 1003;

}  // namespace

std::optional<std::string> fillLimit(store::Site& site, store::Excursion& excursion) {
    if (excursion.limit_pid != 0 || !excursion.limit.empty()) return std::nullopt;
    const store::ParameterSet& parameters = site.parameters();
    if (!parameters.contains(excursion.pid) ||
        parameters.get(excursion.pid).kind() != store::ParameterKind::occurrence)
        return std::nullopt;
    const store::SpecialValue& named = site.specialValue(excursion.pid, limitOfOccurrence);
    if (store::kindOf(named) == store::SpecialValueKind::null) return std::nullopt;
    const auto* pid = std::get_if<std::int32_t>(&named);
    if (!pid || !parameters.contains(*pid) || parameters.get(*pid).kind() != store::ParameterKind::constant)
        return "Special value " + std::to_string(limitOfOccurrence) + " of " + store::pidText(excursion.pid) +
               " is not the PID of a constant, so that its excursion was stored without a limit. Correct the "
               "special value.";
    excursion.limit_pid = *pid;
    excursion.limit = store::limitText(parameters.get(*pid));
    return std::nullopt;
}

}  // namespace vtdn::embedded

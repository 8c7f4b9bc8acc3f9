#include "store/writable.h"

#include <cmath>

#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::store {

namespace {

void requireFinite(Pid pid, double number) {
    if (!std::isfinite(number))
        throw Error(ErrorKind::badValue, "A number that is infinite or undefined cannot be stored for " +
                                             pidText(pid) + ". Write no value instead.");
}

// Numbers of one kind, the first of which belongs to the first of the mask.
template <typename T>
void requireFinite(Pid pid, std::span<const T> numbers, std::span<const WriteParts> mask) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (!std::isfinite(numbers[i]) && (mask.empty() || takesValue(mask[i])))
            requireFinite(pid, static_cast<double>(numbers[i]));
}

}  // namespace

void requireStorableText(Pid pid, std::string_view text) {
    if (text.size() > longestText)
        throw Error(ErrorKind::badValue, "A text of " + std::to_string(text.size()) +
                                             " bytes is too long to be stored for " + pidText(pid) +
                                             ". The longest has " + std::to_string(longestText) + ".");
}

void requireStorable(Pid pid, const Value& value) {
    if (const auto number = numberOf(value)) requireFinite(pid, *number);
    if (const auto* text = std::get_if<std::string>(&value)) requireStorableText(pid, *text);
}

void requireStorable(Pid pid, const Run& run, std::span<const WriteParts> mask) {
    for (const Run::Values& s : run.values()) {
        const auto part =
            mask.empty() ? mask
                         : mask.subspan(static_cast<std::size_t>(s.first), static_cast<std::size_t>(s.count));
        if (s.kind == ValueKind::single) requireFinite(pid, run.singles(s), part);
        if (s.kind == ValueKind::real) requireFinite(pid, run.reals(s), part);
        if (s.kind != ValueKind::text) continue;
        for (std::int32_t i = 0; i < s.count; ++i)
            if (part.empty() || takesValue(part[static_cast<std::size_t>(i)]))
                requireStorableText(pid, run.text(s, i));
    }
}

SeriesKey writableSeries(const ParameterSet& parameters, Pid pid, const Interval* asked) {
    const ParameterEntry& entry = parameters.entry(pid);
    if (entry.parameter.kind() != ParameterKind::database)
        throw Error(ErrorKind::notWritable,
                    pidText(pid) +
                        " is a constant or computed; only values of database parameters (I/O "
                        "type 38) are stored.");
    if (asked != nullptr && *asked != *entry.interval)
        throw Error(ErrorKind::badInterval, "Values of " + pidText(pid) + " are stored for intervals of " +
                                                entry.interval->text() + " and not of " + asked->text() +
                                                ".");
    return {pid, *entry.interval};
}

}  // namespace vtdn::store

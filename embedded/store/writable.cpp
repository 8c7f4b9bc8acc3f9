#include "store/writable.h"

#include <cmath>

#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::store {

void requireFinite(Pid pid, double number) {
    if (!std::isfinite(number))
        throw Error(ErrorKind::badValue, "A number that is infinite or undefined cannot be stored for " +
                                             pidText(pid) + ". Write no value instead.");
}

void requireStorable(Pid pid, const Value& value) {
    if (const auto number = numberOf(value)) requireFinite(pid, *number);
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

#include "data_interface/span_functions.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "data_interface/operating_time.h"
#include "data_interface/period.h"
#include "data_interface/value.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::embedded {
namespace {

// Special value of a parameter: the monitor codes that count as available.
constexpr std::int32_t availableCodesValue = 1002;

// Calls use(site, period) with the open site and the span that the arguments name.
template <class Use>
com::Variant over(Session& session, const SpecialArguments& arguments, Use use) {
    const Period period = session.reporting([&] {
        const Period given{arguments.time(0), arguments.time(1)};
        if (given.end < given.start)
            throw store::Error(store::ErrorKind::badInterval,
                               "The span of time ends at " + store::timeText(given.end) +
                                   ", before it starts at " + store::timeText(given.start) + ".");
        return given;
    });
    return session.onSite([&](store::Site& site) { return use(site, period); });
}

// Calls use(value, number) for each number of the intervals that begin in a period.
template <class Use>
void forEachNumber(store::Site& site, store::Pid pid, const Period& period, Use use) {
    forEachRun(site, pid, period, Touching::beginning, [&](const store::Run& run, std::int64_t) {
        for (std::int32_t i = 0; i < run.count(); ++i) {
            const store::Value value = run.value(i);
            if (const auto number = store::numberOf(value)) use(value, *number);
        }
    });
}

com::Variant finiteOrNull(double number) {
    return std::isfinite(number) ? com::Variant::of(number) : com::Variant::null();
}

struct Total {
    double sum = 0;
    LONG count = 0;
};

Total totalOf(store::Site& site, store::Pid pid, const Period& period) {
    Total total;
    forEachNumber(site, pid, period, [&](const store::Value&, double number) {
        total.sum += number;
        ++total.count;
    });
    return total;
}

// The value for which better(number, best so far) holds last.
template <class Better>
com::Variant best(Session& session, store::Pid pid, const SpecialArguments& arguments, Better better) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        store::Value value;
        std::optional<double> number;
        forEachNumber(site, pid, period, [&](const store::Value& candidate, double candidateNumber) {
            if (number && !better(candidateNumber, *number)) return;
            number = candidateNumber;
            value = candidate;
        });
        return toVariant(value);
    });
}

[[noreturn]] void refuseCodes(store::Pid pid) {
    throw store::Error(
        store::ErrorKind::badParameter,
        "The special value 1002 of " + store::pidText(pid) +
            " is no list of monitor codes. It is a text of whole numbers, separated by \",\".");
}

store::MonitorCode codeIn(std::string_view text, store::Pid pid) {
    const std::string_view trimmed = store::trimBlanks(text);
    store::MonitorCode code = 0;
    const auto [end, error] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), code);
    if (error != std::errc() || end != trimmed.data() + trimmed.size()) refuseCodes(pid);
    return code;
}

// The codes that count as available; nothing when all of them do.
std::optional<std::set<store::MonitorCode>> availableCodes(store::Site& site, store::Pid pid) {
    const store::SpecialValue& listed = site.specialValue(pid, availableCodesValue);
    switch (store::kindOf(listed)) {
        case store::SpecialValueKind::null:
            return std::nullopt;
        case store::SpecialValueKind::integer:
            return std::set{std::get<std::int32_t>(listed)};
        case store::SpecialValueKind::text:
            break;
        default:
            refuseCodes(pid);
    }
    std::set<store::MonitorCode> codes;
    for (std::string_view rest = std::get<std::string>(listed);;) {
        const auto comma = rest.find(',');
        codes.insert(codeIn(rest.substr(0, comma), pid));
        if (comma == std::string_view::npos) return codes;
        rest.remove_prefix(comma + 1);
    }
}

// Whether the unit operated in an interval, for intervals in ascending order.
class Operation {
  public:
    /// Always, when the parameter names no operating-time parameter.
    Operation(store::Site& site, store::Pid pid, const Period& period) {
        if (!namedOperatingTime(site, pid)) return;
        times_ = timesOperated(site, operatingTimeOf(site, pid), period);
    }
    bool during(const Period& interval) {
        if (!times_) return true;
        while (next_ < times_->size() && (*times_)[next_].end <= interval.start) ++next_;
        return next_ < times_->size() && (*times_)[next_].start < interval.end;
    }

  private:
    std::optional<std::vector<Period>> times_;
    std::size_t next_ = 0;
};

}  // namespace

com::Variant operatingHours(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        return finiteOrNull(hoursOperated(site, operatingTimeOf(site, pid), period));
    });
}

com::Variant availability(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        const store::Interval interval = intervalOf(site, pid);
        const auto codes = availableCodes(site, pid);
        Operation operation(site, pid, period);
        double counted = 0;
        double available = 0;
        forEachRun(site, pid, period, Touching::beginning, [&](const store::Run& run, std::int64_t first) {
            store::Time begin = interval.begin(first);
            for (std::int32_t i = 0; i < run.count(); ++i) {
                const store::Time end = interval.step(begin, 1);
                if (operation.during({begin, end})) {
                    ++counted;
                    if ((!codes || codes->contains(run.code(i))) && store::numberOf(run.value(i)))
                        ++available;
                }
                begin = end;
            }
        });
        return counted == 0 ? com::Variant::null() : com::Variant::of(100 * available / counted);
    });
}

com::Variant average(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        const Total total = totalOf(site, pid, period);
        return total.count == 0 ? com::Variant::null() : finiteOrNull(total.sum / total.count);
    });
}

com::Variant sum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        const Total total = totalOf(site, pid, period);
        return total.count == 0 ? com::Variant::null() : finiteOrNull(total.sum);
    });
}

com::Variant minimum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return best(session, pid, arguments, std::less<>());
}

com::Variant maximum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return best(session, pid, arguments, std::greater<>());
}

com::Variant count(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, const Period& period) {
        return com::Variant::of(totalOf(site, pid, period).count);
    });
}

}  // namespace vtdn::embedded

#include "data_interface/span_functions.h"

#include "data_interface/value.h"
#include "store/span_functions.h"

namespace vtdn::embedded {
namespace {

// Calls use(site, start, end) with the open site and the span that the arguments name.
template <class Use>
com::Variant over(Session& session, const SpecialArguments& arguments, Use use) {
    store::Time start = 0;
    store::Time end = 0;
    session.reporting([&] {
        start = arguments.time(0);
        end = arguments.time(1);
    });
    return session.onSite([&](store::Site& site) { return use(site, start, end); });
}

template <class Result>
com::Variant summary(Session& session, store::Pid pid, const SpecialArguments& arguments, Result result) {
    return over(session, arguments, [&](store::Site& site, store::Time start, store::Time end) {
        return toVariant(store::Value(result(store::summarize(site, pid, start, end))));
    });
}

}  // namespace

com::Variant operatingHours(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, store::Time start, store::Time end) {
        return com::Variant::of(store::operatingHours(site, pid, start, end));
    });
}

com::Variant availability(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return over(session, arguments, [&](store::Site& site, store::Time start, store::Time end) {
        const auto percent = store::availabilityPercent(site, pid, start, end);
        return percent ? com::Variant::of(*percent) : com::Variant::null();
    });
}

com::Variant average(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return summary(session, pid, arguments, [](const store::SpanSummary& all) { return all.average(); });
}

com::Variant sum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return summary(session, pid, arguments, [](const store::SpanSummary& all) { return all.sum(); });
}

com::Variant minimum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return summary(session, pid, arguments, [](const store::SpanSummary& all) { return all.minimum; });
}

com::Variant maximum(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    return summary(session, pid, arguments, [](const store::SpanSummary& all) { return all.maximum; });
}

com::Variant count(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    // At most longestRun intervals: 32 bits hold it.
    return summary(session, pid, arguments,
                   [](const store::SpanSummary& all) { return static_cast<std::int32_t>(all.count); });
}

}  // namespace vtdn::embedded

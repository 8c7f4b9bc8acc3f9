#include "data_interface/data_run.h"

#include <algorithm>
#include <vector>

namespace vtdn::embedded {
namespace {

template <class Segment>
const Segment& segmentAt(const std::vector<Segment>& segments, std::int32_t i) {
    const auto behind = std::upper_bound(segments.begin(), segments.end(), i,
                                         [](std::int32_t at, const Segment& s) { return at < s.first; });
    return *std::prev(behind);
}

}  // namespace

DIDataRun stretchAt(const store::Run& run, std::int32_t first) {
    const auto& values = segmentAt(run.values(), first);
    const auto& codes = segmentAt(run.codes(), first);

    DIDataRun stretch{};
    stretch.count = std::min(values.first + values.count, codes.first + codes.count) - first;
    const std::int32_t skip = first - values.first;
    switch (values.kind) {
        case store::ValueKind::null:
            stretch.type = VT_NULL;
            break;
        case store::ValueKind::integer:
            stretch.type = VT_I4;
            stretch.values = run.integers(values).data() + skip;
            break;
        case store::ValueKind::single:
            stretch.type = VT_R4;
            stretch.values = run.singles(values).data() + skip;
            break;
        case store::ValueKind::real:
            stretch.type = VT_R8;
            stretch.values = run.reals(values).data() + skip;
            break;
        case store::ValueKind::text:
            stretch.type = VT_EMPTY;
            break;
    }
    if (codes.same) {
        stretch.mc = codes.code;
    } else {
        static_assert(sizeof(LONG) == sizeof(store::MonitorCode));
        stretch.mcs = reinterpret_cast<const LONG*>(run.codesOf(codes).data()) + (first - codes.first);
    }
    return stretch;
}

}  // namespace vtdn::embedded

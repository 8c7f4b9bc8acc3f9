#include "store/numbers.h"

#include <algorithm>

#include "store/formula.h"

namespace vtdn::store {

void numbersOf(const Run& run, std::vector<double>& numbers) {
    numbers.resize(static_cast<std::size_t>(run.count()));
    for (const Run::Values& s : run.values()) {
        const auto to = numbers.begin() + s.first;
        switch (s.kind) {
            case ValueKind::integer:
                std::copy_n(run.integers(s).begin(), s.count, to);
                break;
            case ValueKind::single:
                std::copy_n(run.singles(s).begin(), s.count, to);
                break;
            case ValueKind::real:
                std::copy_n(run.reals(s).begin(), s.count, to);
                break;
            case ValueKind::null:
            case ValueKind::text:
                std::fill_n(to, s.count, missingNumber());
                break;
        }
    }
}

}  // namespace vtdn::store

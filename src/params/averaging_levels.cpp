#include "params/averaging_levels.h"

namespace vtdn::params {

wchar_t intervalUnitOf(std::int32_t level) noexcept {
    switch (level) {
        case 1:
            return L'n';
        case 2:
            return L'h';
        case 3:
            return L'd';
        default:
            return 0;
    }
}

}  // namespace vtdn::params

#include "data_interface/utils.h"

#include "com/variant.h"

namespace vtdn::embedded {

HRESULT Utils::IsKnownMC(LONG mc, VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIUtils), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        if (!session_->isSetUp()) return;
        *result = com::variantBool(
            session_->onSite([&](store::Site& site) { return site.monitorCodes().contains(mc); }));
    });
}

}  // namespace vtdn::embedded

#include "data_interface/params.h"

#include "com/variant.h"
#include "data_interface/param.h"

namespace vtdn::embedded {

HRESULT Params::Exists(LONG pid, VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIParams), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        if (!session_->isSetUp()) return;
        *result = com::variantBool(
            session_->onSite([&](store::Site& site) { return site.parameters().contains(pid); }));
    });
}

HRESULT Params::Item(LONG pid, LONG, DIParam** result) noexcept {
    return com::guard(errorSource, __uuidof(DIParams), [&] {
        com::needPointers(result);
        *result = nullptr;
        // An unknown PID is refused here and not at the first use of the parameter.
        session_->onSite([&](store::Site& site) { static_cast<void>(site.parameters().get(pid)); });
        *result = com::make<Param>(session_, pid).detach();
    });
}

HRESULT Params::FlushCache() noexcept {
    return com::guard(errorSource, __uuidof(DIParams), [&] {
        if (session_->isSetUp()) session_->onSite([](store::Site& site) { site.flushCache(); });
    });
}

}  // namespace vtdn::embedded

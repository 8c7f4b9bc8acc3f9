#include "data_interface/utils.h"

#include "com/strings.h"
#include "com/variant.h"

namespace vtdn::embedded {
namespace {

template <class Codes>
std::string nameIn(const Codes& codes, LONG code, VARIANT_BOOL longName) {
    const auto found = codes.find(code);
    if (found == codes.end()) return {};
    return longName ? found->second.long_name : found->second.short_name;
}

}  // namespace

template <class Codes>
HRESULT Utils::highest(LONG* result, Codes&& codes) const noexcept {
    return com::guard(errorSource, __uuidof(DIUtils), [&] {
        com::needPointers(result);
        *result = session_->onSite([&](store::Site& site) {
            const auto& all = codes(site);
            return all.empty() ? LONG{0} : LONG{all.rbegin()->first};
        });
    });
}

template <class Name>
HRESULT Utils::name(BSTR* result, Name&& name) const noexcept {
    return com::guard(errorSource, __uuidof(DIUtils), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = session_->onSite([&](store::Site& site) { return com::Bstr(com::fromUtf8(name(site))); })
                      .detach();
    });
}

HRESULT Utils::IsKnownMC(LONG mc, VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIUtils), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        if (!session_->isSetUp()) return;
        *result = com::variantBool(
            session_->onSite([&](store::Site& site) { return site.monitorCodes().contains(mc); }));
    });
}

HRESULT Utils::get_MaxMC(LONG* result) noexcept {
    return highest(
        result, [](store::Site & site) -> auto& { return site.monitorCodes().codes(); });
}

HRESULT Utils::get_MaxPC(LONG* result) noexcept {
    return highest(
        result, [](store::Site & site) -> auto& { return site.parameterCodes().codes(); });
}

HRESULT Utils::MCName(LONG code, VARIANT_BOOL longName, BSTR* result) noexcept {
    return name(result,
                [=](store::Site& site) { return nameIn(site.monitorCodes().codes(), code, longName); });
}

HRESULT Utils::PCName(LONG code, VARIANT_BOOL longName, BSTR* result) noexcept {
    return name(result,
                [=](store::Site& site) { return nameIn(site.parameterCodes().codes(), code, longName); });
}

HRESULT Utils::UnitName(LONG unit, BSTR* result) noexcept {
    return name(result, [=](store::Site& site) { return site.unitName(unit); });
}

}  // namespace vtdn::embedded

// Calls of special functions, and a site with what they need.
#pragma once

#include <functional>
#include <vector>

#include "on_engine.h"

namespace vtdn::embedded::test {

using Arguments = std::vector<com::Variant>;

/// An array of VARIANT that takes these elements over.
inline com::SafeArray variantsOf(Arguments elements, LONG lower = 0) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), lower};
    com::SafeArray array(SafeArrayCreate(VT_VARIANT, 1, &bound));
    const com::ArrayView<VARIANT> view(array.get());
    for (std::size_t i = 0; i < elements.size(); ++i) elements[i].detachTo(&view[i]);
    return array;
}

/// An array as the one element of another one's arguments, as generic callers pass it.
inline Arguments nested(Arguments elements) {
    const com::SafeArray inner = variantsOf(std::move(elements));
    Arguments outer;
    outer.push_back(com::Variant::of(inner.get()));
    return outer;
}

inline Arguments span(DATE start, DATE end) {
    return {com::Variant::ofDate(start), com::Variant::ofDate(end)};
}

class OnSpecialFunctions : public OnEngine {
  protected:
    /// Changes the configuration of the site, and tells the engine.
    void configure(const std::function<void(store::Load&)>& change) const {
        store::Site site(connections(), "DEMO");
        store::Load load(site);
        change(load);
        load.commit();
        engine.params().flushCache();
    }
    void giveSpecialValues(const std::vector<store::SpecialValueEntry>& values) const {
        configure([&](store::Load& load) { load.replaceSpecialValues(values); });
    }
    void giveUnits(LONG pid, const char* units) const {
        auto all = store::test::demoParameters();
        for (auto& parameter : all)
            if (parameter.pid == pid) parameter.units = units;
        configure([&](store::Load& load) { load.replaceParameters(all); });
    }

    /// The result of a call that says nothing.
    com::Variant result(LONG pid, LONG id, Arguments arguments) {
        com::SafeArray array = variantsOf(std::move(arguments));
        com::Variant value = param(pid).specialFunction(id, array);
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
        return value;
    }
    /// That of a call whose result is a double.
    double number(LONG pid, LONG id, Arguments arguments) {
        const com::Variant value = result(pid, id, std::move(arguments));
        EXPECT_EQ(value.type(), VT_R8);
        return value.type() == VT_R8 ? value.get().dblVal : -1e99;
    }
    /// A call that must be refused, with one message that says what the error says.
    Failure refused(LONG pid, LONG id, com::SafeArray array) {
        const engine::Param asked = param(pid);
        return refusedCall([&] { static_cast<void>(asked.specialFunction(id, array)); });
    }
    Failure refused(LONG pid, LONG id, Arguments arguments) {
        return refused(pid, id, variantsOf(std::move(arguments)));
    }
};

}  // namespace vtdn::embedded::test

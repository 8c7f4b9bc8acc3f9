// Late-bound calls when memory is short, and what they leave behind.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "com/safe_array.h"
#include "counted_new.h"
#include "probe.h"
#include "support/allocation_spy.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::SafeArray;
using com::Variant;

constexpr DISPID failing = 50;

/// A late-bound call: its member and its client's variables.
struct Call {
    const char* name;
    DISPID id;
    std::function<std::vector<Variant>()> variables;  ///< in the declared order
    bool byReference = true;
};

Variant scriptArray(std::initializer_list<Variant> values) {
    SafeArray made = SafeArray::of<VARIANT>(static_cast<LONG>(values.size()));
    {
        const com::ArrayView<VARIANT> view(made.get());
        std::size_t i = 0;
        for (const Variant& value : values) Variant(value).detachTo(&view[i++]);
    }
    Variant variable;
    variable.inOut()->vt = VT_ARRAY | VT_VARIANT;
    variable.inOut()->parray = made.detach();
    return variable;
}
Variant probe(LONG value) {
    return Variant::of(static_cast<IProbe*>(com::make<Probe>(value).get()));
}

std::vector<Call> calls() {
    const auto two = [] { return Variant::of(LONG{2}); };
    return {
        {"Three", 10,
         [] {
             return std::vector{Variant::of(L"1"), Variant::of(L"2.5"), Variant::of(LONG{12})};
         },
         false},
        {"Optional", 13, [] { return std::vector{Variant::of(LONG{1})}; }, false},
        {"Cell", 3,
         [] {
             return std::vector{Variant::of(LONG{1}), Variant::of(L"left")};
         },
         false},
        {"References", 20,
         [] {
             return std::vector{Variant::of(L"4"), Variant::of(3.0), Variant::of(LONG{12}),
                                Variant(),         Variant::of(1.5), Variant::of(L"x")};
         }},
        {"Outs", 21,
         [] {
             return std::vector{Variant::of(L"old"), Variant::of(L"old")};
         }},
        {"Singles", 30,
         [=] {
             return std::vector{scriptArray({Variant::of(L"1")}), two()};
         }},
        {"Texts", 33,
         [=] {
             return std::vector{scriptArray({Variant::of(LONG{1}), Variant::of(L"x")}), two()};
         }},
        {"Variants", 34,
         [=] {
             return std::vector{scriptArray({Variant::of(L"x")}), two()};
         }},
        {"MakeLongs", 37, [=] { return std::vector{two()}; }, false},
        {"Swap", 41, [] { return std::vector{probe(3)}; }},
        {"MakeProbes", 43, [=] { return std::vector{two()}; }, false},
        {"Probes", 45,
         [=] {
             return std::vector{scriptArray({probe(1)}), two()};
         }},
        {"AddProbes", 44,
         [] {
             return std::vector{scriptArray({probe(1), probe(2)})};
         },
         false},
        {"Fail", failing,
         [] {
             return std::vector{Variant::of(LONG{E_ACCESSDENIED}), Variant::of(L"No")};
         },
         false},
    };
}

class Memory : public testing::TestWithParam<AllocationSpy::Refuse> {
  protected:
    /// Calls once; true when an allocation was refused.
    static bool run(const Call& call, Probe& object, AllocationSpy& spy, std::size_t refuseAt) {
        const long liveBefore = spy.live();
        const LONG probesBefore = Probe::count();
        bool refused = false;
        {
            std::vector<Variant> variables = call.variables();
            std::vector<VARIANT> wire;
            for (auto v = variables.rbegin(); v != variables.rend(); ++v)
                wire.push_back(call.byReference ? ref(*v) : v->get());
            DISPPARAMS list{wire.data(), nullptr, static_cast<UINT>(wire.size()), 0};
            VARIANT result;
            VariantInit(&result);
            EXCEPINFO exception{};
            const WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
            askBeforeNew(&spy);
            spy.refuse(refuseAt, GetParam());
            const HRESULT outcome = static_cast<IProbe*>(&object)->Invoke(call.id, IID_NULL, 0, flags, &list,
                                                                          &result, &exception, nullptr);
            refused = spy.stop();
            askBeforeNew(nullptr);
            const HRESULT known = outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
            // The description of a failure may be lost to the shortage, but not the failure.
            if (call.id == failing) {
                EXPECT_TRUE(known == E_ACCESSDENIED || known == E_OUTOFMEMORY) << known;
            } else {
                EXPECT_EQ(known, refused ? E_OUTOFMEMORY : S_OK) << call.name << " at " << refuseAt;
            }
            if (FAILED(outcome)) {
                EXPECT_EQ(result.vt, VT_EMPTY);
            }
            VariantClear(&result);
            SysFreeString(exception.bstrSource);
            SysFreeString(exception.bstrDescription);
            SysFreeString(exception.bstrHelpFile);
            object.put_Number(0);
            SetErrorInfo(0, nullptr);
        }
        EXPECT_EQ(spy.live(), liveBefore) << call.name << " at " << refuseAt;
        EXPECT_EQ(Probe::count(), probesBefore) << call.name << " at " << refuseAt;
        return refused;
    }
};

TEST_P(Memory, IsAskedForAndGivenBackByEveryCall) {
    const com::Ptr<Probe> object = com::make<Probe>();
    for (const Call& call : calls()) {
        AllocationSpy spy;
        {
            const com::Bstr seen(L"the spy sees this one");
            ASSERT_EQ(spy.live(), 1);
        }
        run(call, *object.get(), spy, AllocationSpy::never);  // what the platform makes once
        std::size_t at = 0;
        while (run(call, *object.get(), spy, at) && at < 200) ++at;
        EXPECT_LT(at, 200U) << call.name;
        // Each of these calls has something to allocate.
        EXPECT_GT(at, 0U) << call.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Refusing, Memory,
                         testing::Values(AllocationSpy::Refuse::one, AllocationSpy::Refuse::allFrom),
                         [](const auto& how) {
                             return how.param == AllocationSpy::Refuse::one ? "One" : "AllFromOneOn";
                         });

}  // namespace
}  // namespace vtdn::test

#include "bench/calls.h"

#include <algorithm>
#include <cstdio>

#include "bench/component.h"
#include "bench/timing.h"
#include "binding/session.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"
#include "fake_engine/lenient.h"

namespace vtdn::bench {
namespace {

constexpr LONG pid = 504030000;
constexpr LONG year = 525600;
constexpr DATE start = 39083.0;

fake::Site makeSite() {
    fake::Site site;
    auto& parameter = site.parameters[pid];
    parameter.run.resize(year);
    for (LONG i = 0; i < year; ++i) {
        parameter.run[i].value = com::Variant::of(static_cast<float>(i % 5000) * 0.1F);
        parameter.run[i].mc = 1;
    }
    return site;
}

struct Arrays {
    com::SafeArray values = com::SafeArray::of<float>(year);
    com::SafeArray codes = com::SafeArray::of<LONG>(year);
    com::SafeArray flags = com::SafeArray::of<VARIANT_BOOL>(year);
};

/// The engine calls of one read, made by hand.
void readDirectly(DIEngine* engine, Arrays& arrays, const com::Bstr& minute) {
    com::Ptr<DIParams> params;
    com::check(engine->get_Params(params.receive()));
    VARIANT_BOOL exists = VARIANT_FALSE;
    com::check(params->Exists(pid, &exists));
    com::Ptr<DIDataArray> data;
    com::check(CoCreateInstance(CLSID_DIDataArrayClass, nullptr, CLSCTX_INPROC_SERVER, IID_DIDataArray,
                                data.receiveVoid()));
    com::check(data->Define(start, year, minute.get(), 1, 0));
    com::Ptr<DIParam> parameter;
    com::check(params->Item(pid, -1, parameter.receive()));
    com::check(parameter->ReadDataArray(data.get()));
    const com::ArrayView<float> values(arrays.values.get());
    const com::ArrayView<LONG> codes(arrays.codes.get());
    const com::ArrayView<VARIANT_BOOL> flags(arrays.flags.get());
    for (LONG i = 0; i < year; ++i) {
        com::Ptr<DIDataArrayItem> item;
        com::check(data->Item(i + 1, item.receive()));
        VARIANT value;
        VariantInit(&value);
        com::check(item->get_Value(&value));
        const bool isNumber = value.vt == VT_R4;
        VariantClear(&value);
        com::check(item->get_Value(&value));
        values[i] = isNumber ? value.fltVal : 0.0F;
        flags[i] = com::variantBool(!isNumber);
        VariantClear(&value);
        com::check(item->get_MC(&codes[i]));
    }
}

Figure arrayRead(_DIWrapper* wrapper, fake::Site& site) {
    const auto engine = fake::makeEngine(site);
    const com::Bstr minute(L"m");
    Arrays direct;
    Arrays wrapped;
    SAFEARRAY* values = wrapped.values.detach();
    SAFEARRAY* codes = wrapped.codes.detach();
    SAFEARRAY* flags = wrapped.flags.detach();
    const auto [own, hand] = fastest(
        11,
        [&] {
            VARIANT_BOOL done = VARIANT_FALSE;
            com::check(wrapper->Param_GetDataArray_Single(pid, start, year, minute.get(), 1, &values, &codes,
                                                          &flags, &done));
            if (!done) com::throwError(E_UNEXPECTED, L"the year was not read");
        },
        [&] { readDirectly(engine.get(), direct, minute); });
    wrapped.values = com::SafeArray(values);
    wrapped.codes = com::SafeArray(codes);
    wrapped.flags = com::SafeArray(flags);
    return {"array_read_over_engine", own / hand, over(own * 1e3, hand * 1e3, "ms")};
}

Figure scalarOverhead(_DIWrapper* wrapper, fake::Site& site) {
    constexpr int calls = 20000;
    const auto engine = fake::makeEngine(site);
    LONG id = 0;
    const auto [own, hand] =
        fastest(25, repeat(calls, [&] { com::check(wrapper->SelectedDahs_DahsID(&id)); }), repeat(calls, [&] {
                    com::Ptr<DISelectedDahs> dahs;
                    com::check(engine->get_SelectedDahs(dahs.receive()));
                    com::check(dahs->get_DahsID(&id));
                }));
    return {"scalar_overhead_ns", (own - hand) / calls * 1e9,
            over(own / calls * 1e9, hand / calls * 1e9, "ns")};
}

com::Ptr<ITypeInfo> typeInfo(IDispatch* object) {
    com::Ptr<ITypeInfo> info;
    com::check(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive()));
    return info;
}

/// The worse of a member without arguments and one with three exact ones, both before set-up, where their own
/// work is next to nothing.
Figure lateBound(_DIWrapper* wrapper) {
    constexpr int calls = 20000;
    const auto info = typeInfo(wrapper);
    struct Call {
        const wchar_t* name;
        std::vector<VARIANT> arguments;  // the last one first
    };
    VARIANT argument[3];
    for (VARIANT& v : argument) VariantInit(&v);
    argument[2].vt = VT_I4;
    argument[2].lVal = pid;
    argument[1].vt = VT_DATE;
    argument[1].date = start;
    argument[0].vt = VT_I4;
    argument[0].lVal = 1;
    Figure worst{"late_bound_over_typeinfo", 0, ""};
    for (const Call& call : {Call{L"SelectedDahs_DahsID", {}},
                             Call{L"Param_WriteMC", {argument[0], argument[1], argument[2]}}}) {
        auto* name = const_cast<LPOLESTR>(call.name);
        DISPID id = DISPID_UNKNOWN;
        com::check(info->GetIDsOfNames(&name, 1, &id));
        DISPPARAMS parameters{const_cast<VARIANT*>(call.arguments.data()), nullptr,
                              static_cast<UINT>(call.arguments.size()), 0};
        VARIANT result;
        VariantInit(&result);
        const auto [own, platform] =
            fastest(25,
                    repeat(calls,
                           [&] {
                               com::check(wrapper->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                          &parameters, &result, nullptr, nullptr));
                           }),
                    repeat(calls, [&] {
                        com::check(info->Invoke(wrapper, id, DISPATCH_METHOD, &parameters, &result, nullptr,
                                                nullptr));
                    }));
        const double ratio = own / platform;
        std::fprintf(stderr, "  Invoke %ls: %.1f ns, by type information %.1f ns\n", call.name,
                     own / calls * 1e9, platform / calls * 1e9);
        if (ratio > worst.value) {
            worst.value = ratio;
            worst.basis = over(own / calls * 1e9, platform / calls * 1e9, "ns");
        }
    }
    return worst;
}

Figure nameLookup(_DIWrapper* wrapper) {
    constexpr int calls = 20000;
    const auto info = typeInfo(wrapper);
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"Param_GetDataArray_Single")};
    DISPID id = DISPID_UNKNOWN;
    const auto [own, platform] = fastest(
        25,
        repeat(calls,
               [&] { com::check(wrapper->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id)); }),
        repeat(calls, [&] { com::check(info->GetIDsOfNames(names, 1, &id)); }));
    return {"name_lookup_over_typeinfo", own / platform,
            over(own / calls * 1e9, platform / calls * 1e9, "ns")};
}

/// 100,000 problems on one list, cleared only at the end. The second half must cost what the first did.
Figure problemAppend() {
    constexpr int half = 50000;
    constexpr std::wstring_view problem = L"PID 5-999-3-00-00 does not exist (WDN-024)";
    double first = 1;
    double second = 1;
    for (int round = 0; round < 9; ++round) {
        binding::Session session;
        auto add = repeat(half, [&] { session.addProblem(problem); });
        first = std::min(first, secondsOf(add));
        second = std::min(second, secondsOf(add));
    }
    return {"problem_append_ns", (first + second) / (2 * half) * 1e9,
            "second half of the list: " + over(second / half * 1e9, first / half * 1e9, "ns")};
}

}  // namespace

std::vector<Figure> measureCalls(const std::wstring& componentFile) {
    fake::Site site = makeSite();
    const fake::LenientServer server(site);
    const auto wrapper = makeWrapper(componentFile);
    std::vector<Figure> figures;
    const Figure late = lateBound(wrapper.get());  // before set-up
    const Figure lookup = nameLookup(wrapper.get());
    VARIANT_BOOL bound = VARIANT_FALSE;
    com::check(wrapper->Setup(1, &bound));
    figures.push_back(arrayRead(wrapper.get(), site));
    figures.push_back(scalarOverhead(wrapper.get(), site));
    figures.push_back(late);
    figures.push_back(lookup);
    figures.push_back(problemAppend());
    com::check(wrapper->Teardown());
    return figures;
}

}  // namespace vtdn::bench

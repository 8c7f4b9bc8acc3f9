#include "failures/operations.h"

#include <initializer_list>
#include <ostream>
#include <tuple>
#include <type_traits>
#include <utility>

#include "com/strings.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {

namespace {

using com::Bstr;

constexpr LONG pid = 530001;
constexpr DATE when = 39448.25;

std::wstring shown(VARIANT_BOOL value) {
    return value ? L"True" : L"False";
}
std::wstring shown(LONG value) {
    return std::to_wstring(value);
}
std::wstring shown(BSTR value) {
    return L"'" + std::wstring(com::view(value)) + L"'";
}
template <class T>
std::wstring shown(const Array<T>& array) {
    if (!array.get()) return L"no array";
    std::wstring text = L"[" + std::to_wstring(array.lower()) + L"..:";
    for (const auto& value : array.values()) {
        if constexpr (std::is_same_v<T, BSTR>) {
            text += L" '" + value + L"'";
        } else {
            text += L" " + std::to_wstring(value);
        }
    }
    if (array.get()->cLocks != 0) text += L" locked";
    return text + L"]";
}

/// An array of texts or of objects that an operation returned, which ends here.
std::wstring shown(SAFEARRAY* result) {
    if (!result) return L"no array";
    const com::SafeArray array(result);
    std::wstring text = L"[0..:";
    VARTYPE type = VT_EMPTY;
    if (SUCCEEDED(SafeArrayGetVartype(result, &type)) && type == VT_DISPATCH) {
        const com::ArrayView<IDispatch*> objects(array.get());
        for (const IDispatch* object : objects) text += object ? L" object" : L" nothing";
        return text + L"]";
    }
    const com::ArrayView<BSTR> elements(array.get());
    for (const BSTR element : elements) text += L" " + shown(element);
    return text + L"]";
}

/// A call with a result; `outputs` shows the by-reference arguments afterwards.
template <class... P, class... A>
Outcome outcome(_DIWrapper& wrapper, const Around& around, Member<P...> member, A... arguments) {
    using Result = std::remove_pointer_t<std::tuple_element_t<sizeof...(P) - 1, std::tuple<P...>>>;
    Result result{};
    Outcome all;
    around.before();
    all.result = (wrapper.*member)(arguments..., &result);
    around.after();
    all.text = shown(result);
    if constexpr (std::is_same_v<Result, BSTR>) SysFreeString(result);
    return all;
}

/// A row for a member that takes plain arguments only.
template <class... P, class... A>
Operation plain(const char* name, Member<P...> member, A... arguments) {
    return {name, [=](_DIWrapper& wrapper, const Around& around) {
                return outcome(wrapper, around, member, arguments...);
            }};
}

/// A row for a member without a result.
Operation procedure(const char* name, HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)()) {
    return {name, [member](_DIWrapper& wrapper, const Around& around) {
                around.before();
                const HRESULT result = (wrapper.*member)();
                around.after();
                return Outcome{result, L""};
            }};
}

/// Calls made one after the other, up to the first that fails.
using Step = std::function<HRESULT()>;
HRESULT inTurn(std::initializer_list<Step> steps) {
    HRESULT result = S_OK;
    for (const Step& step : steps) {
        result = step();
        if (FAILED(result)) break;
    }
    return result;
}

/// A row for a question about special values, whose failures are problems.
template <class M, class... A>
Operation special(const char* name, M member, A... arguments) {
    Operation operation = plain(name, member, arguments...);
    operation.failing = Failing::toProblem;
    return operation;
}

/// A row for a special function with an array of arguments.
template <class M>
Operation specialFunction(const char* name, M member) {
    return {name,
            [member](_DIWrapper& wrapper, const Around& around) {
                Array<VARIANT> arguments(1, 2);
                {
                    const com::ArrayView<VARIANT> elements(arguments.get());
                    com::Variant::of(L"text").detachTo(&elements[0]);
                    com::Variant::ofDate(when).detachTo(&elements[1]);
                }
                Outcome end = outcome(wrapper, around, member, pid, LONG{101}, arguments.inOut());
                if (arguments.get()->cLocks != 0) end.text += L" locked";
                return end;
            },
            Failing::toProblem};
}

template <class M>
Operation getter(const char* name, M member) {
    return plain(name, member);
}

template <class M, class... A>
Operation setUp(const char* name, M member, A... arguments) {
    Operation operation = plain(name, member, arguments...);
    operation.setsUp = true;
    return operation;
}

/// Two arrays of wrong bounds and one of the right ones.
template <class T, class M>
Operation arrayRead(const char* name, M member, Failing failing) {
    return {name,
            [member](_DIWrapper& wrapper, const Around& around) {
                const Bstr type(L"1h");
                Array<T> values(1, 2);
                Array<LONG> mcs(0, 4);
                Array<VARIANT_BOOL> flags(-3, 5);
                Outcome all;
                if constexpr (std::is_same_v<T, BSTR>) {
                    all = outcome(wrapper, around, member, pid, when, LONG{4}, type.get(), LONG{1},
                                  values.inOut(), mcs.inOut());
                } else {
                    all = outcome(wrapper, around, member, pid, when, LONG{4}, type.get(), LONG{1},
                                  values.inOut(), mcs.inOut(), flags.inOut());
                }
                all.text += shown(values) + shown(mcs) + shown(flags);
                return all;
            },
            failing};
}

const Bstr app(L"App");
const Bstr text(L"text");
const Bstr hourly(L"1h");
const com::Variant numericText = com::Variant::of(L"12.5");

/// A row for an update of an extra value, which begins with a data point to update.
template <class M>
Operation update(const char* name, M member) {
    return {name, [member](_DIWrapper& wrapper, const Around& around) {
                com::Ptr<_DataPointBasicWrapper> point;
                VARIANT_BOOL done = VARIANT_FALSE;
                Outcome all;
                around.before();
                all.result =
                    inTurn({[&] { return wrapper.MakeBlankDataPointWrapper(when, point.receive()); },
                            [&] { return point->put_XValueXML(text.get()); },
                            [&] { return (wrapper.*member)(point.get(), pid, hourly.get(), &done); }});
                around.after();
                all.text = shown(done);
                return all;
            }};
}

/// Every member of a data point.
Outcome useDataPoint(_DIWrapper& wrapper, const Around& around) {
    com::Ptr<_DataPointBasicWrapper> point;
    DATE stamp = 0;
    VARIANT value{};
    VARIANT mc{};
    VARIANT_BOOL isNullValue = VARIANT_TRUE;
    VARIANT_BOOL isNullMc = VARIANT_TRUE;
    BSTR occurrence = nullptr;
    BSTR extra = nullptr;
    Outcome all;
    around.before();
    all.result = inTurn(
        {[&] { return wrapper.MakeBlankDataPointWrapper(when, point.receive()); },
         [&] { return point->get_TStamp(&stamp); }, [&] { return point->put_NValue(numericText.get()); },
         [&] { return point->get_NValue(&value); }, [&] { return point->get_IsNValueNull(&isNullValue); },
         [&] { return point->SetNValueToNull(); }, [&] { return point->put_MC(numericText.get()); },
         [&] { return point->get_MC(&mc); }, [&] { return point->get_IsMCNull(&isNullMc); },
         [&] { return point->SetMCToNull(); }, [&] { return point->put_OccDataXML(text.get()); },
         [&] { return point->get_OccDataXML(&occurrence); }, [&] { return point->put_XValueXML(text.get()); },
         [&] { return point->get_XValueXML(&extra); }});
    around.after();
    all.text = std::to_wstring(stamp) + shown(value.vt == VT_BSTR ? value.bstrVal : nullptr) +
               shown(mc.vt == VT_BSTR ? mc.bstrVal : nullptr) + shown(isNullValue) + shown(isNullMc) +
               shown(occurrence) + shown(extra);
    VariantClear(&value);
    VariantClear(&mc);
    SysFreeString(occurrence);
    SysFreeString(extra);
    return all;
}

}  // namespace

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        setUp("Setup", &_DIWrapper::Setup, LONG{5}),
        setUp("Setup3", &_DIWrapper::Setup3, LONG{5}, app.get()),
        setUp("Setup2", &_DIWrapper::Setup2, text.get(), text.get(), text.get(), text.get(), text.get(),
              text.get()),
        setUp("Setup4", &_DIWrapper::Setup4, text.get(), text.get(), text.get(), text.get(), text.get(),
              text.get(), app.get()),
        {"Teardown",
         [](_DIWrapper& wrapper, const Around& around) {
             around.before();
             const HRESULT result = wrapper.Teardown();
             around.after();
             return Outcome{result, L""};
         },
         Failing::untrapped, false, true},
        getter("SelectedDahs_VantorDir", &_DIWrapper::SelectedDahs_VantorDir),
        getter("SelectedDahs_VantorSystemDir", &_DIWrapper::SelectedDahs_VantorSystemDir),
        getter("SelectedDahs_AlarmConnection", &_DIWrapper::SelectedDahs_AlarmConnection),
        getter("SelectedDahs_ConfigConnection", &_DIWrapper::SelectedDahs_ConfigConnection),
        getter("SelectedDahs_DahsCompleteName", &_DIWrapper::SelectedDahs_DahsCompleteName),
        getter("SelectedDahs_DahsID", &_DIWrapper::SelectedDahs_DahsID),
        getter("SelectedDahs_DataConnection", &_DIWrapper::SelectedDahs_DataConnection),
        getter("SelectedDahs_RealtimeConnection", &_DIWrapper::SelectedDahs_RealtimeConnection),
        getter("SelectedDahs_DataShortTermConnection", &_DIWrapper::SelectedDahs_DataShortTermConnection),
        getter("SelectedDahs_SiteID", &_DIWrapper::SelectedDahs_SiteID),
        getter("GetAndClearProblemsList", &_DIWrapper::GetAndClearProblemsList),
        plain("Param_DoesExist", &_DIWrapper::Param_DoesExist, pid),
        plain("Param_IsDBDataIO", &_DIWrapper::Param_IsDBDataIO, pid),
        plain("Param_Fmt", &_DIWrapper::Param_Fmt, pid),
        plain("Param_IntervalType", &_DIWrapper::Param_IntervalType, pid),
        plain("Param_MeasUnits", &_DIWrapper::Param_MeasUnits, pid),
        plain("Param_Name", &_DIWrapper::Param_Name, pid),
        {"Param_FindPIDsUsedByPID",
         [](_DIWrapper& wrapper, const Around& around) {
             BSTR editable = SysAllocString(L"old");
             BSTR constant = SysAllocString(L"old");
             Outcome end =
                 outcome(wrapper, around, &_DIWrapper::Param_FindPIDsUsedByPID, pid, &editable, &constant);
             end.text += shown(editable) + shown(constant);
             SysFreeString(editable);
             SysFreeString(constant);
             return end;
         }},
        {"Param_GetData_String",
         [](_DIWrapper& wrapper, const Around& around) {
             BSTR value = SysAllocString(L"old");
             LONG mc = 99;
             Outcome end =
                 outcome(wrapper, around, &_DIWrapper::Param_GetData_String, pid, when, &value, &mc);
             end.text += shown(value) + shown(mc);
             SysFreeString(value);
             return end;
         },
         Failing::trapped},
        arrayRead<LONG>("Param_GetDataArray_Integer", &_DIWrapper::Param_GetDataArray_Integer,
                        Failing::numberReads),
        arrayRead<float>("Param_GetDataArray_Single", &_DIWrapper::Param_GetDataArray_Single,
                         Failing::numberReads),
        arrayRead<BSTR>("Param_GetDataArray_String", &_DIWrapper::Param_GetDataArray_String,
                        Failing::textReads),
        plain("Param_WriteMC", &_DIWrapper::Param_WriteMC, pid, when, LONG{5}),
        plain("Param_WriteValue_Null", &_DIWrapper::Param_WriteValue_Null, pid, when),
        plain("Param_WriteValue_Integer", &_DIWrapper::Param_WriteValue_Integer, pid, when, LONG{7}),
        plain("Param_WriteValue_Single", &_DIWrapper::Param_WriteValue_Single, pid, when, 7.5f),
        plain("Param_WriteValue_String", &_DIWrapper::Param_WriteValue_String, pid, when, text.get()),
        plain("Param_WriteVMC_Null", &_DIWrapper::Param_WriteVMC_Null, pid, when, LONG{5}),
        plain("Param_WriteVMC_Integer", &_DIWrapper::Param_WriteVMC_Integer, pid, when, LONG{7}, LONG{5}),
        plain("Param_WriteVMC_Single", &_DIWrapper::Param_WriteVMC_Single, pid, when, 7.5f, LONG{5}),
        plain("Param_WriteVMC_String", &_DIWrapper::Param_WriteVMC_String, pid, when, 7.5f, LONG{5}),
        plain("GetListOfTypeXPIDs", &_DIWrapper::GetListOfTypeXPIDs, LONG{3}),
        getter("GetListOf75CalPIDs", &_DIWrapper::GetListOf75CalPIDs),
        getter("GetListOfCalPIDs", &_DIWrapper::GetListOfCalPIDs),
        getter("GetListOf75LinearityPIDs", &_DIWrapper::GetListOf75LinearityPIDs),
        getter("GetListOf75IntfCheckPIDs", &_DIWrapper::GetListOf75IntfCheckPIDs),
        plain("GetListOfRelationshipPIDs", &_DIWrapper::GetListOfRelationshipPIDs, ParamRelationship_Hourly,
              LONG{1}),
        getter("GetListOfAllRelationshipPIDs", &_DIWrapper::GetListOfAllRelationshipPIDs),
        {"GetRelationshipDetailData",
         [](_DIWrapper& wrapper, const Around& around) {
             BSTR xml = SysAllocString(L"old");
             Outcome end = outcome(wrapper, around, &_DIWrapper::GetRelationshipDetailData, pid, &xml);
             end.text += shown(xml);
             SysFreeString(xml);
             return end;
         }},
        {"Param_WriteValues",
         [](_DIWrapper& wrapper, const Around& around) {
             const Bstr type(L"1h");
             const Bstr values(L"1.5\ttext\t\t2");
             Array<LONG> mcs(0, 4);
             Array<LONG> flags(0, 4);
             flags.fill(3);
             Outcome end = outcome(wrapper, around, &_DIWrapper::Param_WriteValues, pid, when, LONG{4},
                                   type.get(), LONG{1}, values.get(), mcs.inOut(), flags.inOut());
             end.text += shown(mcs) + shown(flags);
             return end;
         }},
        special("Param_CallSF_CalcOpTime", &_DIWrapper::Param_CallSF_CalcOpTime, pid, when, when + 1),
        special("Param_GetSpecialValue_Int32", &_DIWrapper::Param_GetSpecialValue_Int32, pid, LONG{77}),
        special("Param_GetSpecialValue_Boolean", &_DIWrapper::Param_GetSpecialValue_Boolean, pid, LONG{77}),
        special("Param_GetSpecialValue_String", &_DIWrapper::Param_GetSpecialValue_String, pid, LONG{77}),
        specialFunction("Param_GetSpecialFunction_Boolean", &_DIWrapper::Param_GetSpecialFunction_Boolean),
        specialFunction("Param_GetSpecialFunction_Int32", &_DIWrapper::Param_GetSpecialFunction_Int32),
        specialFunction("Param_GetSpecialFunction_Real32", &_DIWrapper::Param_GetSpecialFunction_Real32),
        specialFunction("Param_GetSpecialFunction_String", &_DIWrapper::Param_GetSpecialFunction_String),
        procedure("Params_FlushCache", &_DIWrapper::Params_FlushCache),
        getter("Utils_GetUnitNames", &_DIWrapper::Utils_GetUnitNames),
        getter("Utils_GetEDRUnitORISCodes", &_DIWrapper::Utils_GetEDRUnitORISCodes),
        getter("Utils_GetEDRUnitIDs", &_DIWrapper::Utils_GetEDRUnitIDs),
        getter("Utils_GetLongMCNames", &_DIWrapper::Utils_GetLongMCNames),
        getter("Utils_GetShortMCNames", &_DIWrapper::Utils_GetShortMCNames),
        getter("Utils_GetLongPCNames", &_DIWrapper::Utils_GetLongPCNames),
        getter("Utils_GetShortPCNames", &_DIWrapper::Utils_GetShortPCNames),
        plain("WriteStrToAlarm", &_DIWrapper::WriteStrToAlarm, when, text.get(), text.get(), LONG{4},
              text.get(), text.get()),
        plain("GetLongTermDataPoints", &_DIWrapper::GetLongTermDataPoints, pid, hourly.get(), when, when + 1),
        plain("GetShortTermDataPoints", &_DIWrapper::GetShortTermDataPoints, pid, hourly.get(), when,
              when + 1),
        update("UpdateLongTermDataPointXValue", &_DIWrapper::UpdateLongTermDataPointXValue),
        update("UpdateShortTermDataPointXValue", &_DIWrapper::UpdateShortTermDataPointXValue),
        {"DataPointBasicWrapper", useDataPoint},
    };
    return all;
}

void furnish(fake::Site& site) {
    const auto value = [](LONG number) { return fake::Interval{com::Variant::of(number), number}; };
    fake::Parameter& parameter = site.parameters[pid];
    parameter.name = L"Flow";
    parameter.format = L"0.0";
    parameter.intervalType = L"1h";
    parameter.units = L"scfh";
    parameter.usedPids = L"530002,530003,530004";
    // A text, so that strings travel both ways; every value is numeric, so that each is read twice.
    parameter.run = {value(1), {com::Variant::of(L"2"), 2}, value(3), value(4)};
    parameter.stored[when] = {com::Variant::of(L"12.5"), 5};
    site.parameters[530002].ioType = 38;
    site.parameters[530003].ioType = 4;
    site.parameters[530004].ioType = 1;
    site.parameters[530004].usedPids = L"530002";
    site.knownMcs = {5};
    site.siteId = L"S1";
    site.offerBlocks = true;  // texts go one by one all the same
    // Texts wherever there can be one, so that strings travel.
    parameter.written.clear();
    parameter.mask.clear();
    parameter.relationship = fake::Relationship{1, L"h", L"<r/>"};
    parameter.functionAnswer = com::Variant::of(L"1");
    parameter.specialValues.insert_or_assign(77, com::Variant::of(L"1"));
    const auto furnishSpecial = [&site](LONG of, LONG type,
                                        std::initializer_list<std::pair<LONG, const wchar_t*>> values) {
        fake::Parameter& one = site.parameters[of];
        one.type = type;
        for (const auto& [id, special] : values)
            one.specialValues.insert_or_assign(id, com::Variant::of(special));
    };
    furnishSpecial(530005, 3, {{-22, L"40CFR75"}, {-117, L"0"}, {-114, L"0"}, {-118, L"0"}, {-25, L"0"}});
    furnishSpecial(530006, 3, {{-22, L"40CFR75"}, {-117, L"1"}, {-114, L"0"}, {-118, L"0"}, {-25, L"0"}});
    furnishSpecial(530007, 45, {{-32, L"1"}});
    furnishSpecial(100000, 0, {{-17, L"1"}, {-95, L"3456"}, {-97, L"CT1"}});
    furnishSpecial(100100000, 0, {{-17, L"0"}});
    for (auto* const points : {&site.longTerm, &site.shortTerm}) {
        (*points)[pid] = {{when, com::Variant::of(12.5), com::Variant::of(LONG{5}), L"", L""},
                          {when + 1, com::Variant::null(), com::Variant::null(), L"<o/>", L"<x/>"},
                          {when + 2, com::Variant::of(1.0), com::Variant::of(LONG{1}), L"", L""}};
    }
    site.units = {L"Common", L"Unit 1"};
    site.monitorCodes = {{L"OK", L"BAD"}, {L"Valid", L"Invalid"}};
    site.parameterCodes = {{L"SO2", L""}, {L"Sulfur dioxide", L"Unused"}};
}

}  // namespace vtdn::test

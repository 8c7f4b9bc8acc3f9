#include "failures/operations.h"

#include <initializer_list>
#include <ostream>
#include <type_traits>
#include <utility>

#include "failures/rows.h"

namespace vtdn::test {

namespace {

using com::Bstr;

/// A row for a member without a result.
Operation procedure(const char* name, HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)()) {
    return {name, [member](_DIWrapper& wrapper, const Around& around) {
                around.before();
                const HRESULT result = (wrapper.*member)();
                around.after();
                return Outcome{result, L""};
            }};
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

/// The rows about everything but records.
std::vector<Operation> wrapperOperations() {
    return {
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
    };
}

}  // namespace

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> rows = wrapperOperations();
        for (Operation& row : recordOperations()) rows.push_back(std::move(row));
        return rows;
    }();
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
    furnishRecords(site);
    site.units = {L"Common", L"Unit 1"};
    site.monitorCodes = {{L"OK", L"BAD"}, {L"Valid", L"Invalid"}};
    site.parameterCodes = {{L"SO2", L""}, {L"Sulfur dioxide", L"Unused"}};
}

}  // namespace vtdn::test

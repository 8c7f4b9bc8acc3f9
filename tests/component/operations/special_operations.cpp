#include "operations/special_operations.h"

#include <ostream>
#include <tuple>
#include <type_traits>

namespace vtdn::test {

namespace {

constexpr LONG pid = specialPid;
constexpr LONG id = specialId;

std::wstring shown(bool value) {
    return value ? L"True" : L"False";
}
std::wstring shown(LONG value) {
    return std::to_wstring(value);
}
std::wstring shown(const std::wstring& value) {
    return L"'" + value + L"'";
}

const std::string valueCall = "SpecialValue(77)";
const std::string functionCall = "SpecialFunction(77, [0..0: [2..3: I4 5, BSTR 'x']])";

template <class... P, class... A>
std::wstring resultOf(const Client& client, Member<P...> member, A... arguments) {
    using Result = std::remove_pointer_t<std::tuple_element_t<sizeof...(P) - 1, std::tuple<P...>>>;
    if constexpr (std::is_same_v<Result, VARIANT_BOOL>) {
        return shown(client.yes(member, arguments...));
    } else if constexpr (std::is_same_v<Result, LONG>) {
        return shown(client.number(member, arguments...));
    } else {
        return shown(client.text(member, arguments...));
    }
}

template <class M>
Special valueRow(const char* name, M member, const wchar_t* nothing, const wchar_t* unknownPid,
                 const wchar_t* callFailed, const wchar_t* conversionFailed) {
    return {name,
            [=](const Client& client) { return resultOf(client, member, pid, id); },
            [=](const Client& client) { return client.failure(member, pid, id); },
            valueCall,
            nothing,
            unknownPid,
            callFailed,
            conversionFailed};
}

template <class M>
Special functionRow(const char* name, M member, const wchar_t* nothing, const wchar_t* unknownPid,
                    const wchar_t* callFailed, const wchar_t* conversionFailed) {
    return {name,
            [=](const Client& client) {
                MoreArgs args;
                std::wstring result = resultOf(client, member, pid, id, args.inOut());
                args.expectUnchanged();
                return result;
            },
            [=](const Client& client) {
                MoreArgs args;
                Failure failure = client.failure(member, pid, id, args.inOut());
                args.expectUnchanged();
                return failure;
            },
            functionCall,
            nothing,
            unknownPid,
            callFailed,
            conversionFailed};
}

Special operatingTimeRow() {
    constexpr DATE start = 39448.25;
    constexpr DATE end = 39449.5;
    return {"CallSF_CalcOpTime",
            [](const Client& client) {
                return resultOf(client, &_DIWrapper::Param_CallSF_CalcOpTime, pid, start, end);
            },
            [](const Client& client) {
                return client.failure(&_DIWrapper::Param_CallSF_CalcOpTime, pid, start, end);
            },
            "SpecialFunction(32, [0..1: Date 39448.25, Date 39449.5])",
            L"0",
            L"(WDN-042)",
            L"(WDN-043)",
            nullptr};
}

}  // namespace

void PrintTo(const Special& special, std::ostream* out) {
    *out << special.name;
}

const Special operatingTime = operatingTimeRow();
const Special valueInt32 = valueRow("GetSpecialValue_Int32", &_DIWrapper::Param_GetSpecialValue_Int32, L"0",
                                    L"(WDN-031)", L"(WDN-032)", nullptr);
const Special valueBoolean = valueRow("GetSpecialValue_Boolean", &_DIWrapper::Param_GetSpecialValue_Boolean,
                                      L"False", L"(WDN-035)", L"(WDN-036)", L"(WDN-037)");
const Special valueString = valueRow("GetSpecialValue_String", &_DIWrapper::Param_GetSpecialValue_String,
                                     L"''", L"(WDN-047)", L"(WDN-048)", nullptr);
const Special functionBoolean =
    functionRow("GetSpecialFunction_Boolean", &_DIWrapper::Param_GetSpecialFunction_Boolean, L"False",
                L"(WDN-0049)", L"(WDN-0050)", L"(WDN-0051)");
const Special functionInt32 =
    functionRow("GetSpecialFunction_Int32", &_DIWrapper::Param_GetSpecialFunction_Int32, L"0", L"(WDN-0052)",
                L"(WDN-0053)", L"(WDN-0054)");
const Special functionReal32 =
    functionRow("GetSpecialFunction_Real32", &_DIWrapper::Param_GetSpecialFunction_Real32, L"0",
                L"(WDN-0055)", L"(WDN-0056)", L"(WDN-0057)");
const Special functionString =
    functionRow("GetSpecialFunction_String", &_DIWrapper::Param_GetSpecialFunction_String, L"''",
                L"(WDN-0058)", L"(WDN-0059)", nullptr);
com::Variant arrayVariant() {
    com::Variant variant;
    variant.inOut()->parray = SafeArrayCreateVector(VT_VARIANT, 0, 2);
    variant.inOut()->vt = VT_ARRAY | VT_VARIANT;
    return variant;
}

}  // namespace vtdn::test

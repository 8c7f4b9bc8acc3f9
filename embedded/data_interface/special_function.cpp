#include "data_interface/special_function.h"

#include <algorithm>
#include <array>
#include <string>

#include "data_interface/span_functions.h"
#include "data_interface/special_arguments.h"
#include "data_interface/write_functions.h"

namespace vtdn::embedded {
namespace {

struct Function {
    LONG id;
    std::size_t arguments;
    const wchar_t* takes;
    const wchar_t* does;
    com::Variant (*call)(Session& session, store::Pid pid, const SpecialArguments& arguments);
};

constexpr auto span = L"the start and the end of a span of time, two dates";

constexpr std::array functions{
    Function{6, 2, L"the time and the data item", L"stores one data item", writeDataItem},
    Function{32, 2, span, L"operating hours", operatingHours},
    Function{33, 2, L"the data array and its mask array", L"stores a data array", writeDataArray},
    Function{101, 2, span, L"availability in percent", availability},
    Function{102, 2, span, L"average", average},
    Function{103, 2, span, L"sum", sum},
    Function{104, 2, span, L"minimum", minimum},
    Function{105, 2, span, L"maximum", maximum},
    Function{106, 2, span, L"how many numbers", count},
};

const Function& functionWith(LONG id) {
    const Function* function = std::ranges::find(functions, id, &Function::id);
    if (function != functions.end()) return *function;
    std::wstring list;
    for (const Function& known : functions)
        list += (list.empty() ? L"" : L", ") + std::to_wstring(known.id) + L" (" + known.does + L")";
    com::throwError(invalidCall, L"The engine has no special function " + std::to_wstring(id) + L". It has " +
                                     list + L".");
}

}  // namespace

com::Variant callSpecialFunction(Session& session, store::Pid pid, LONG id, SAFEARRAY* arguments) {
    const Function* function = nullptr;
    const auto given = session.reporting([&] {
        function = &functionWith(id);
        return SpecialArguments(id, function->arguments, function->takes, arguments);
    });
    return function->call(session, pid, given);
}

}  // namespace vtdn::embedded

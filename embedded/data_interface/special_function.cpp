#include "data_interface/special_function.h"

#include <VTDI.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "com/safe_array.h"
#include "data_interface/date.h"
#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

using Arguments = std::span<const com::Variant>;

store::Time timeIn(const com::Variant& argument) {
    switch (argument.type()) {
        case VT_DATE:
            return timeOfDate(argument.get().date);
        case VT_R8:
            return timeOfDate(argument.get().dblVal);
        default:
            com::throwError(DISP_E_TYPEMISMATCH,
                            L"The first argument of special function 6 is the time of the "
                            L"interval, a date.");
    }
}

com::Ptr<DIDataArrayItem> dataItemIn(const com::Variant& argument) {
    const bool isObject = argument.type() == VT_DISPATCH || argument.type() == VT_UNKNOWN;
    if (isObject && argument.get().punkVal == nullptr)
        com::throwError(com::unsetObject,
                        L"The second argument of special function 6 is an empty reference. It is the "
                        L"data item to store.");
    com::Ptr<DIDataArrayItem> item;
    if (isObject) item = com::Ptr<IUnknown>(argument.get().punkVal).as<DIDataArrayItem>();
    if (!item)
        com::throwError(DISP_E_TYPEMISMATCH,
                        L"The second argument of special function 6 is the data item to store.");
    return item;
}

store::Item contentsOf(DIDataArrayItem& item) {
    com::Variant value;
    LONG code = 0;
    com::check(item.get_Value(value.receive()));
    com::check(item.get_MC(&code));
    return {fromVariant(value.get()), code};
}

com::Variant writeDataItem(Session& session, store::Pid pid, Arguments arguments) {
    // All that can leave the engine comes before the site is touched.
    store::Time time = 0;
    store::Item item;
    session.reporting([&] {
        time = timeIn(arguments[0]);
        item = contentsOf(*dataItemIn(arguments[1]).get());
    });
    session.onSite([&](store::Site& site) { site.write(pid, time, {item}); });
    return com::Variant::ofBool(true);
}

struct Function {
    LONG id;
    std::size_t arguments;
    const wchar_t* takes;
    com::Variant (*call)(Session& session, store::Pid pid, Arguments arguments);
};

constexpr std::array functions{
    Function{6, 2, L"the time and the data item", writeDataItem},
};

// Copies, so that nothing that happens during the call can change or free what the call works on.
std::vector<com::Variant> argumentsIn(const Function& function, SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    if (array == nullptr || SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)) ||
        type != VT_VARIANT)
        com::throwError(DISP_E_TYPEMISMATCH,
                        L"Special function " + std::to_wstring(function.id) +
                            L" takes its arguments in an array of variants with one dimension: " +
                            function.takes + L".");
    const com::ArrayView<VARIANT> given(array);
    if (given.size() != function.arguments)
        com::throwError(DISP_E_BADPARAMCOUNT, L"Special function " + std::to_wstring(function.id) +
                                                  L" takes " + std::to_wstring(function.arguments) +
                                                  L" arguments, " + function.takes + L". It was given " +
                                                  std::to_wstring(given.size()) + L".");
    std::vector<com::Variant> arguments;
    for (const VARIANT& argument : given) arguments.push_back(com::Variant::copyOf(argument));
    return arguments;
}

}  // namespace

com::Variant callSpecialFunction(Session& session, store::Pid pid, LONG id, SAFEARRAY* arguments) {
    const Function* function = nullptr;
    const auto given = session.reporting([&] {
        function = std::ranges::find(functions, id, &Function::id);
        if (function == functions.end())
            com::throwError(invalidCall, L"The engine has no special function " + std::to_wstring(id) +
                                             L". It has 6, which stores one data item.");
        return argumentsIn(*function, arguments);
    });
    return function->call(session, pid, given);
}

}  // namespace vtdn::embedded

// What the rows of operations are made of.
#pragma once

#include <initializer_list>
#include <tuple>
#include <type_traits>

#include "com/strings.h"
#include "com/variant.h"
#include "failures/operations.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {

inline constexpr LONG pid = 530001;
inline constexpr DATE when = 39448.25;

inline std::wstring shown(VARIANT_BOOL value) {
    return value ? L"True" : L"False";
}
inline std::wstring shown(LONG value) {
    return std::to_wstring(value);
}
inline std::wstring shown(BSTR value) {
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
inline std::wstring shown(SAFEARRAY* result) {
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
/// An object that an operation returned, which ends here.
template <class I>
requires std::is_base_of_v<IDispatch, I> std::wstring shown(I* result) {
    if (result) result->Release();
    return result ? L"object" : L"nothing";
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

/// Calls made one after the other, up to the first that fails.
using Step = std::function<HRESULT()>;
inline HRESULT inTurn(std::initializer_list<Step> steps) {
    HRESULT result = S_OK;
    for (const Step& step : steps) {
        result = step();
        if (FAILED(result)) break;
    }
    return result;
}

/// The rows about data points and occurrences, and what they use.
std::vector<Operation> recordOperations();
void furnishRecords(fake::Site& site);

}  // namespace vtdn::test

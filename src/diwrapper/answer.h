// What the bodies of DIWrapper's methods are made with.
#pragma once

#include <utility>

#include "com/answer.h"

namespace vtdn {

/// The source of errors that the wrapper itself raises.
inline constexpr wchar_t errorSource[] = L"VTWrapDN.DIWrapper";

/// com::answer() for a method of the interface I.
template <class I, class Result, class Body>
HRESULT answer(Result* result, Body&& body) noexcept {
    return com::answer(errorSource, __uuidof(I), result, std::forward<Body>(body));
}

using com::ClientText;

}  // namespace vtdn

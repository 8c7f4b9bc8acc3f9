// The one boundary between C++ inside and COM outside: every method of every class is a guarded lambda.
#pragma once

#include <type_traits>

#include "com/error.h"

namespace vtdn::com {

/// Turns the exception in flight into its HRESULT and sets the thread's error info: the callee's own,
/// unchanged, for a failed call; one with `source` for a failure of our own; out of memory and unknown
/// exceptions included.
HRESULT currentExceptionToResult(const wchar_t* source, REFIID iid) noexcept;

/// Runs a method body. Clears the thread's error info first, so that what is there afterwards belongs to this
/// call. The body returns void (S_OK) or an HRESULT.
template <class Body>
HRESULT guard(const wchar_t* source, REFIID iid, Body&& body) noexcept {
    try {
        SetErrorInfo(0, nullptr);
        if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
            body();
            return S_OK;
        } else {
            return body();
        }
    } catch (...) {
        return currentExceptionToResult(source, iid);
    }
}

/// For [out] and [in, out] arguments: a null pointer is E_POINTER.
template <class... T>
void needPointers(T*... pointers) {
    if ((... || (pointers == nullptr))) throwError(E_POINTER);
}

}  // namespace vtdn::com

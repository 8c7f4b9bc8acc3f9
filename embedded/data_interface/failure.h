// How the engine's refusals look to a client: a number that automation clients know, and a sentence.
#pragma once

#include <string>

#include "com/platform.h"

#include "store/error.h"

namespace vtdn::embedded {

/// The source that error infos of the engine name.
inline constexpr const wchar_t* errorSource = L"VTEngine";

/// The HRESULT under which automation clients see an error number from 1 to 65535.
constexpr HRESULT errorNumbered(unsigned number) {
    return static_cast<HRESULT>(0x800A0000U | number);
}

inline constexpr HRESULT invalidCall = errorNumbered(5);
inline constexpr HRESULT fileNotFound = errorNumbered(53);
inline constexpr HRESULT deviceError = errorNumbered(57);
inline constexpr HRESULT diskFull = errorNumbered(61);
inline constexpr HRESULT permissionDenied = errorNumbered(70);

/// The HRESULT of a call that the store refused.
HRESULT resultOf(store::ErrorKind kind);

/// The sentence of a refusal, for a client.
std::wstring sentenceOf(const store::Error& error);

/// Throws a refusal of the store as a com::Error.
[[noreturn]] void throwRefusal(const store::Error& error);

}  // namespace vtdn::embedded

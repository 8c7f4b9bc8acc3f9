// A failed call as a client sees it.
#pragma once

#include <iosfwd>
#include <string>

#include "com/platform.h"

namespace vtdn::test {

/// The HRESULT of a call with the error info that it left, both texts empty when it left none.
struct Failure {
    HRESULT result = S_OK;
    std::wstring source;
    std::wstring description;
    bool operator==(const Failure&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Failure& failure);

/// Takes the thread's error info off the thread.
Failure takeFailure(HRESULT result);

/// The number under which an automation client knows a failure: the low half of a 0x800A code, the number of
/// a known HRESULT, otherwise the HRESULT.
LONG clientNumber(HRESULT result);

/// HRESULT of an error number of the automation languages.
constexpr HRESULT numbered(LONG number) {
    return static_cast<HRESULT>(0x800A0000UL | static_cast<ULONG>(number));
}

}  // namespace vtdn::test

// Errors in both directions: HRESULT and error info in, exceptions inside, HRESULT and error info out, and
// the number and description under which an automation client knows an HRESULT.
#pragma once

#include <string>
#include <string_view>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com {

/// A failed call. Carries the error info that came with it, so that it can leave exactly as it came.
class Error {
  public:
    explicit Error(HRESULT result, Ptr<IErrorInfo> info = nullptr) noexcept;
    [[nodiscard]] HRESULT result() const noexcept { return result_; }
    [[nodiscard]] const Ptr<IErrorInfo>& info() const noexcept { return info_; }

    /// The number that a client sees: 13 for a type mismatch, the signed HRESULT where there is none.
    [[nodiscard]] LONG number() const noexcept;
    /// The error info's description when there is one, otherwise the number's own text.
    [[nodiscard]] std::wstring description() const;

  private:
    HRESULT result_;
    Ptr<IErrorInfo> info_;
};

/// A failure of our own. Its error info has a description only: the guard that it leaves through adds the
/// source.
class OwnError final : public Error {
  public:
    using Error::Error;
};

/// "Object variable or With block variable not set", number 91.
inline constexpr HRESULT unsetObject = static_cast<HRESULT>(0x800A005B);
/// "Invalid use of Null", number 94.
inline constexpr HRESULT invalidUseOfNull = static_cast<HRESULT>(0x800A005E);

/// The client-side number of an HRESULT, and that number's own text.
LONG errorNumber(HRESULT result) noexcept;
std::wstring_view errorText(LONG number) noexcept;

/// The failure of a call together with the error info that the callee set, which is taken off the thread: for
/// callers that trap it. Calls whose failure is ignored should be followed by this as well, or their info
/// stays behind.
Error lastError(HRESULT result) noexcept;
/// Throws lastError(). Out of line: the cold path.
[[noreturn]] void throwLast(HRESULT result);
/// Throws a failure of our own with a description for the client.
[[noreturn]] void throwError(HRESULT result, std::wstring_view description = {});

/// Passes a success on and throws a failure.
inline HRESULT check(HRESULT result) {
    if (FAILED(result)) [[unlikely]]
        throwLast(result);
    return result;
}

/// An error info with source, description and the interface that failed; null when memory is short.
Ptr<IErrorInfo> makeErrorInfo(std::wstring_view source, std::wstring_view description, REFIID iid) noexcept;

}  // namespace vtdn::com

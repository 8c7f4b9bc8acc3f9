// What the bodies of the component's methods are made with.
#pragma once

#include <utility>

#include "com/guard.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"

namespace vtdn {

/// The source of errors that the wrapper itself raises.
inline constexpr wchar_t errorSource[] = L"VTWrapDN.DIWrapper";

inline void hand(bool value, VARIANT_BOOL* result) noexcept {
    *result = com::variantBool(value);
}
inline void hand(LONG value, LONG* result) noexcept {
    *result = value;
}
inline void hand(com::SafeArray value, SAFEARRAY** result) noexcept {
    value.detachTo(result);
}
/// An empty text is handed out as one: managed clients tell a null string from "".
inline void hand(com::Bstr value, BSTR* result) {
    *result = (value.get() ? std::move(value) : com::Bstr(L"")).detach();
}

/// A method of interface I with a result: runs the body behind the guard and hands its result out. On failure
/// the result is 0, False or null.
template <class I, class Result, class Body>
HRESULT answer(Result* result, Body&& body) noexcept {
    return com::guard(errorSource, __uuidof(I), [&] {
        com::needPointers(result);
        *result = Result{};
        hand(body(), result);
    });
}

/// A text argument by reference that an operation sets: "" at first, and handed back as it stands when the
/// operation ends, however it ends.
class ClientText {
  public:
    explicit ClientText(BSTR* argument) : text_(L""), argument_(argument) {}
    ~ClientText() { com::replace(argument_, std::move(text_)); }
    ClientText(const ClientText&) = delete;
    ClientText& operator=(const ClientText&) = delete;
    [[nodiscard]] com::Bstr& text() noexcept { return text_; }

  private:
    com::Bstr text_;
    BSTR* argument_;
};

}  // namespace vtdn

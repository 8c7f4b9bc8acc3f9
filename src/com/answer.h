// What the bodies of methods are made with.
#pragma once

#include <utility>

#include "com/guard.h"
#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"

namespace vtdn::com {

inline void hand(bool value, VARIANT_BOOL* result) noexcept {
    *result = variantBool(value);
}
inline void hand(DATE value, DATE* result) noexcept {
    *result = value;
}
inline void hand(Variant value, VARIANT* result) noexcept {
    value.detachTo(result);
}
template <class I>
void hand(Ptr<I> value, I** result) noexcept {
    value.detachTo(result);
}
inline void hand(LONG value, LONG* result) noexcept {
    *result = value;
}
inline void hand(SafeArray value, SAFEARRAY** result) noexcept {
    value.detachTo(result);
}
/// An empty text is handed out as one: managed clients tell a null string from "".
inline void hand(Bstr value, BSTR* result) {
    *result = (value.get() ? std::move(value) : Bstr(L"")).detach();
}

/// A method of an interface with a result: runs the body behind the guard and hands its result out. On
/// failure the result is 0, False, Empty or null.
template <class Result, class Body>
HRESULT answer(const wchar_t* source, REFIID iid, Result* result, Body&& body) noexcept {
    return guard(source, iid, [&] {
        needPointers(result);
        *result = Result{};
        hand(body(), result);
    });
}

/// A text argument by reference that an operation sets: "" at first, and handed back as it stands when the
/// operation ends, however it ends.
class ClientText {
  public:
    explicit ClientText(BSTR* argument) : text_(L""), argument_(argument) {}
    ~ClientText() { replace(argument_, std::move(text_)); }
    ClientText(const ClientText&) = delete;
    ClientText& operator=(const ClientText&) = delete;
    [[nodiscard]] Bstr& text() noexcept { return text_; }

  private:
    Bstr text_;
    BSTR* argument_;
};

}  // namespace vtdn::com

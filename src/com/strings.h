// Automation strings: counted UTF-16, may hold NUL, and null means empty.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "com/platform.h"

namespace vtdn::com {

/// The characters of an automation string; null reads as empty.
inline std::wstring_view view(BSTR text) noexcept {
    return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

/// Owns an automation string. Throws std::bad_alloc when there is no memory for one.
class Bstr {
  public:
    Bstr() noexcept = default;
    explicit Bstr(std::wstring_view text);
    Bstr(const Bstr& other) : Bstr(other.view()) {}
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    ~Bstr() { SysFreeString(text_); }
    Bstr& operator=(Bstr other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }

    /// A string of so many characters, which the caller writes.
    static Bstr ofLength(std::size_t length);
    /// Takes over a string that the caller owns.
    static Bstr adopt(BSTR text) noexcept {
        Bstr b;
        b.text_ = text;
        return b;
    }

    [[nodiscard]] BSTR get() const noexcept { return text_; }
    [[nodiscard]] std::wstring_view view() const noexcept { return com::view(text_); }
    [[nodiscard]] BSTR* receive() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    [[nodiscard]] BSTR detach() noexcept { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

/// Replaces a by-reference string of the client and frees the old one.
inline void replace(BSTR* target, Bstr text) noexcept {
    SysFreeString(std::exchange(*target, text.detach()));
}

/// A string that a client passes by reference; it stays as it is until it is set.
class ClientBstr {
  public:
    explicit ClientBstr(BSTR* argument) noexcept : argument_(argument) {}
    void set(Bstr text) const noexcept { replace(argument_, std::move(text)); }

  private:
    BSTR* argument_;
};

/// UTF-16 to and from UTF-8, character by character; an unpaired surrogate becomes U+FFFD.
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

}  // namespace vtdn::com

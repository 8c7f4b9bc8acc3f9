#include "com/strings.h"

#include <limits>
#include <new>

namespace vtdn::com {
namespace {

/// A length for the platform's functions, which count in int.
int intLength(std::size_t length) {
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()) / 2) throw std::bad_alloc();
    return static_cast<int>(length);
}

}  // namespace

Bstr::Bstr(std::wstring_view text)
    : text_(SysAllocStringLen(text.data(), static_cast<UINT>(intLength(text.size())))) {
    if (!text_) throw std::bad_alloc();
}

Bstr Bstr::ofLength(std::size_t length) {
    Bstr b;
    b.text_ = SysAllocStringLen(nullptr, static_cast<UINT>(intLength(length)));
    if (!b.text_) throw std::bad_alloc();
    return b;
}

std::string toUtf8(std::wstring_view text) {
    if (text.empty()) return {};
    const int length = intLength(text.size());
    std::string bytes(static_cast<std::size_t>(
                          WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), intLength(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

std::wstring fromUtf8(std::string_view text) {
    if (text.empty()) return {};
    const int length = intLength(text.size());
    std::wstring units(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, units.data(), intLength(units.size()));
    return units;
}

}  // namespace vtdn::com

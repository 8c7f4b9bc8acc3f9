// The values of a run as one text: fields separated by tabs.
#pragma once

#include <cstddef>
#include <string_view>

namespace vtdn::params {

/// Number of fields, empty ones included; an empty text has none.
std::size_t countFields(std::wstring_view text) noexcept;

/// Takes the fields off the front of a text, one by one.
class FieldReader {
  public:
    explicit FieldReader(std::wstring_view text) noexcept : rest_(text) {}
    /// The next field; to be called as often as there are fields.
    std::wstring_view next() noexcept;

  private:
    std::wstring_view rest_;
};

/// What a flag asks for.
struct Asked {
    bool value;
    bool mc;
};
/// 1 the value, 2 the monitor code, 3 both, any other number nothing.
constexpr Asked askedBy(long flag) noexcept {
    return {flag == 1 || flag == 3, flag == 2 || flag == 3};
}

}  // namespace vtdn::params

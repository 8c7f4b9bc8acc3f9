#include "params/value_fields.h"

#include <algorithm>

namespace vtdn::params {
namespace {

constexpr wchar_t separator = L'\t';

}  // namespace

std::size_t countFields(std::wstring_view text) noexcept {
    if (text.empty()) return 0;
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)) + 1;
}

std::wstring_view FieldReader::next() noexcept {
    const std::size_t end = std::min(rest_.find(separator), rest_.size());
    const std::wstring_view field = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return field;
}

}  // namespace vtdn::params

// Lists in texts and arrays of texts. Texts compare by character code unless said otherwise.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vtdn::common {

/// Splits at every separator and keeps empty pieces; "" gives no piece. An empty separator splits nothing.
std::vector<std::wstring_view> split(std::wstring_view text, std::wstring_view separator);

/// What a piece of text is as a whole number: in the user's locale, so the caller brings the reader.
enum class Reading { notNumeric, number, outOfRange };
using ReadLong = Reading (*)(std::wstring_view piece, std::int32_t& number);

/// The pieces of a list as whole numbers, 0 for a piece that is no number. Nothing for an empty text or when
/// a number exceeds 32 bits.
std::optional<std::vector<std::int32_t>> splitToLongs(std::wstring_view text, std::wstring_view separator,
                                                      ReadLong read);

/// Ascending order by character code.
void sortStrings(std::vector<std::wstring>& texts);

/// Whether two texts count as the same.
using SameText = bool (*)(std::wstring_view, std::wstring_view);
bool sameByCode(std::wstring_view a, std::wstring_view b) noexcept;

/// Sorts and keeps the first of each group of neighbours that are the same. Returns how many duplicates that
/// are not empty were dropped.
std::int32_t removeDuplicateStrings(std::vector<std::wstring>& texts, SameText same = sameByCode);

/// The pieces of a list in order, each once, joined again; "" stays "".
std::wstring sortUniqueDelimited(std::wstring_view text, std::wstring_view separator);

}  // namespace vtdn::common

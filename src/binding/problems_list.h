// The problems of one wrapper, as the one text that its client fetches.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vtdn::binding {

/// "(time stamp) text" entries with a tab between two of them. Grows without limit until it is cleared, at a
/// cost per entry that does not depend on its length.
class ProblemsList {
  public:
    void add(std::wstring_view timeStamp, std::wstring_view problem) {
        // Room first, so that an entry is there as a whole or not at all when memory runs out.
        const std::size_t needed = text_.size() + timeStamp.size() + problem.size() + 4;
        if (needed > text_.capacity()) text_.reserve(std::max(needed, text_.capacity() * 2));
        if (!text_.empty()) text_ += L'\t';
        text_ += L'(';
        text_ += timeStamp;
        text_ += L") ";
        text_ += problem;
    }
    [[nodiscard]] std::wstring_view text() const noexcept { return text_; }
    /// Empties the list and gives its memory back.
    void clear() noexcept { std::wstring().swap(text_); }

  private:
    std::wstring text_;
};

}  // namespace vtdn::binding

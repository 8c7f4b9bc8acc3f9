// The problems of one wrapper, as the one text that its client fetches.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace vtdn::binding {

/// "(time stamp) text" entries with a tab between two of them. Grows without limit until it is cleared, at a
/// cost per entry that does not depend on its length: the text lies in blocks that never move.
class ProblemsList {
  public:
    /// The entry is there as a whole, or not at all when memory runs out.
    void add(std::wstring_view timeStamp, std::wstring_view problem);
    /// Characters of the text.
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    /// Writes the text to size() characters at `out`.
    void copyTo(wchar_t* out) const noexcept;
    /// Empties the list and gives its memory back.
    void clear() noexcept;

  private:
    struct Block {
        std::unique_ptr<wchar_t[]> text;
        std::size_t size;
        std::size_t capacity;
    };

    /// Room for so many characters in one piece.
    wchar_t* extend(std::size_t length);

    std::vector<Block> blocks_;
    std::size_t size_ = 0;
};

}  // namespace vtdn::binding

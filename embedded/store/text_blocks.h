// Texts that live together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace vtdn::store {

/// Keeps copies of texts, hundreds of them in one block of memory: an allocation for each would be what a
/// long list takes longest for. The copies stay where they are for as long as this lives, also when it is
/// moved.
class TextBlocks {
  public:
    std::string_view add(std::string_view text) {
        if (text.size() > left_) {
            left_ = std::max(text.size(), blockSize);
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
            next_ = blocks_.back().get();
        }
        char* const kept = next_;
        std::copy(text.begin(), text.end(), kept);
        next_ += text.size();
        left_ -= text.size();
        return {kept, text.size()};
    }

  private:
    static constexpr std::size_t blockSize = 65'536;

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

}  // namespace vtdn::store

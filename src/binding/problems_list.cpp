#include "binding/problems_list.h"

#include <algorithm>

namespace vtdn::binding {
namespace {

// Characters of a block: the first ones grow with the list, so that a short list takes little memory.
constexpr std::size_t smallestBlock = 256;
constexpr std::size_t largestBlock = 32768;

wchar_t* append(wchar_t* end, std::wstring_view text) noexcept {
    return std::copy(text.begin(), text.end(), end);
}

}  // namespace

void ProblemsList::add(std::wstring_view timeStamp, std::wstring_view problem) {
    const bool isFirst = size_ == 0;
    constexpr std::size_t marks = 3;  // two brackets and a blank
    wchar_t* end = extend(timeStamp.size() + problem.size() + marks + (isFirst ? 0 : 1));
    if (!isFirst) *end++ = L'\t';
    *end++ = L'(';
    end = append(end, timeStamp);
    *end++ = L')';
    *end++ = L' ';
    append(end, problem);
}

void ProblemsList::copyTo(wchar_t* out) const noexcept {
    for (const Block& block : blocks_) out = append(out, {block.text.get(), block.size});
}

void ProblemsList::clear() noexcept {
    std::vector<Block>().swap(blocks_);
    size_ = 0;
}

wchar_t* ProblemsList::extend(std::size_t length) {
    if (blocks_.empty() || blocks_.back().capacity - blocks_.back().size < length) {
        const std::size_t capacity = std::max(length, std::clamp(size_, smallestBlock, largestBlock));
        blocks_.push_back({std::make_unique_for_overwrite<wchar_t[]>(capacity), 0, capacity});
    }
    Block& block = blocks_.back();
    wchar_t* end = block.text.get() + block.size;
    block.size += length;
    size_ += length;
    return end;
}

}  // namespace vtdn::binding

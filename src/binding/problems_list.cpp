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
    constexpr std::wstring_view separator = L"\t(";
    constexpr std::wstring_view behindStamp = L") ";
    // Before the first entry there is no tab.
    const auto before = separator.substr(size_ == 0 ? 1 : 0);
    wchar_t* end = extend(before.size() + timeStamp.size() + behindStamp.size() + problem.size());
    end = append(end, before);
    end = append(end, timeStamp);
    end = append(end, behindStamp);
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

#include "support/client.h"

#include <algorithm>

namespace vtdn::test {

std::vector<std::wstring> Client::problemTexts() const {
    const std::wstring list = problems();
    std::vector<std::wstring> texts;
    constexpr std::size_t stampLength = std::wstring_view(L"(2024/03/05 14:07:09) ").size();
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(L"\t(", at), list.size());
        const std::wstring entry = list.substr(at, end - at);
        if (entry.size() < stampLength || entry.front() != L'(' ||
            entry.substr(stampLength - 2, 2) != L") ") {
            ADD_FAILURE() << "Not a problem entry: " << com::toUtf8(entry);
        } else {
            texts.push_back(entry.substr(stampLength));
        }
        at = end + 1;
    }
    return texts;
}

std::vector<std::wstring> Client::plainTexts(const com::SafeArray& array) {
    std::vector<std::wstring> texts;
    if (!array.get()) {
        ADD_FAILURE() << "No array";
        return texts;
    }
    EXPECT_EQ(com::bounds(array.get()).lower, 0);
    const com::ArrayView<BSTR> elements(array.get());
    for (const BSTR element : elements) {
        EXPECT_TRUE(element) << "A null string, which managed clients tell from an empty one";
        texts.emplace_back(com::view(element));
    }
    return texts;
}

}  // namespace vtdn::test

// Expects an Error of a kind and gives its sentence back, for a look at the words.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "store/error.h"

namespace vtdn::store::test {

template <typename Call>
std::string expectError(ErrorKind kind, Call call) {
    try {
        call();
    } catch (const Error& e) {
        EXPECT_EQ(static_cast<int>(e.kind()), static_cast<int>(kind)) << e.what();
        std::string sentence = e.what();
        EXPECT_TRUE(sentence.ends_with('.')) << sentence;
        return sentence;
    }
    ADD_FAILURE() << "nothing was refused";
    return {};
}

}  // namespace vtdn::store::test

// Options as they are typed, and what is said about those that are not understood.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "client/cli/command.h"

namespace vtdn::client {

using Options = std::initializer_list<std::pair<const char*, const char*>>;

inline Arguments argumentsOf(Options options) {
    Arguments arguments;
    for (const auto& [name, value] : options) arguments.addOption(name, value);
    return arguments;
}

/// The sentence of a usage failure, which there has to be.
template <class Call>
std::string refusalOf(Call call) {
    try {
        call();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::usage);
        EXPECT_FALSE(failure.next().empty()) << failure.what();
        return std::string(failure.what()) + " " + failure.next();
    }
    return "accepted";
}

}  // namespace vtdn::client

// Other programs, and other users, as forked children.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>

namespace vtdn::store::test {

/// Runs the call in a child of its own, which fails when the call throws or an expectation in it fails.
template <typename Call>
pid_t startChild(Call call) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child != 0) return child;
    bool failed = true;
    try {
        call();
        failed = testing::Test::HasFailure();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
    }
    std::fflush(nullptr);
    _exit(failed ? 1 : 0);
}

/// Waits for a child's end.
inline bool succeeded(pid_t child) {
    int status = 0;
    return child != -1 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

/// Runs the call as a user who owns nothing here, since the superuser may write to anything.
template <typename Call>
void asNobody(Call call) {
    EXPECT_TRUE(succeeded(startChild([&] {
        if (geteuid() == 0) {
            ASSERT_EQ(setuid(65'534), 0);
        }
        call();
    })));
}

}  // namespace vtdn::store::test

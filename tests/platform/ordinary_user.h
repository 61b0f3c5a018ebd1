#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs expectations in a process of its own that lacks the super-user's rights, to which permissions mean nothing.
inline void asOrdinaryUser(const std::function<void()>& expectations)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        ::umask(022);
        if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ADD_FAILURE() << "cannot become an ordinary user";
        else
            EXPECT_NO_THROW(expectations());
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "see the failures above";
}

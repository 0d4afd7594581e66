#include "platform/files/LibraryFolder.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// The Library folder that a process of `user` computes, "absent" when there is none. A null `home`
/// unsets the variable.
std::string libraryFolderWithHome(const char* home, uid_t user = ::getuid())
{
    const auto run = runForked([&] {
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has no other thread
        ::setenv("HOME", "/first", 1);
        (void)libraryFolder();
        (void)(home != nullptr ? ::setenv("HOME", home, 1) : ::unsetenv("HOME"));
        // NOLINTEND(concurrency-mt-unsafe)
        if (::setuid(user) != 0) {
            ::_exit(1);
        }
        const auto folder = libraryFolder();
        (void)std::fputs(folder ? folder->c_str() : "absent", stdout);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

TEST(LibraryFolder, HomeVariableSetUsesIt)
{
    for (const std::string home :
         {"/somewhere/home", "relative", "/not\xFFtext", "/dev/null/no folder"})
    {
        EXPECT_EQ(libraryFolderWithHome(home.c_str()), home + "/Library");
    }
    EXPECT_EQ(libraryFolderWithHome("/ends/"), "/ends/Library");
    EXPECT_EQ(libraryFolderWithHome("/"), "/Library");
}

TEST(LibraryFolder, HomeVariableUnsetOrEmptyUsesUserDatabase)
{
    constexpr uid_t unknownUser = 1'234'567;
    const passwd* const entry = ::getpwuid(::getuid()); // NOLINT(concurrency-mt-unsafe)
    const std::string expected =
        entry == nullptr ? "absent" : entry->pw_dir + std::string("/Library");
    for (const char* const home : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(libraryFolderWithHome(home), expected);
        if (::geteuid() == 0) { // who can become another user
            EXPECT_EQ(libraryFolderWithHome(home, unknownUser), "absent");
        }
    }
}

} // namespace
} // namespace orlimo

#include "platform/files/LibraryFolder.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// A user id that the user database does not know.
constexpr uid_t unknownUser = 1'234'567;

/// The Library folder that another process computes for each value of HOME in turn; "absent" when
/// there is none.
std::string
libraryFolderWithHome(const std::optional<std::string>& home, std::optional<uid_t> user = {})
{
    const auto run = runForked([&] {
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has no other thread
        ::setenv("HOME", "/first", 1);
        (void)libraryFolder();
        ::unsetenv("HOME");
        if (home) {
            ::setenv("HOME", home->c_str(), 1);
        }
        if (user && (::getpwuid(*user) != nullptr || ::setuid(*user) != 0)) {
            ::_exit(1);
        }
        // NOLINTEND(concurrency-mt-unsafe)
        const auto folder = libraryFolder();
        (void)std::fputs(folder ? folder->c_str() : "absent", stdout);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

TEST(LibraryFolder, HomeVariableSetUsesIt)
{
    EXPECT_EQ(libraryFolderWithHome("/somewhere/home"), "/somewhere/home/Library");
    EXPECT_EQ(libraryFolderWithHome("/ends/"), "/ends/Library");
    EXPECT_EQ(libraryFolderWithHome("/"), "/Library");
    EXPECT_EQ(libraryFolderWithHome("relative"), "relative/Library");
    EXPECT_EQ(libraryFolderWithHome("/not\xFFtext"), "/not\xFFtext/Library");
    EXPECT_EQ(libraryFolderWithHome("/dev/null/no folder"), "/dev/null/no folder/Library");
}

TEST(LibraryFolder, HomeVariableUnsetOrEmptyUsesUserDatabase)
{
    const passwd* const entry = ::getpwuid(::getuid()); // NOLINT(concurrency-mt-unsafe)
    if (entry == nullptr) {
        GTEST_SKIP() << "the user database does not know this user";
    }
    EXPECT_EQ(libraryFolderWithHome(std::nullopt), std::string(entry->pw_dir) + "/Library");
    EXPECT_EQ(libraryFolderWithHome(""), std::string(entry->pw_dir) + "/Library");
}

TEST(LibraryFolder, UnknownUserHasOneOnlyWithHomeVariable)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    EXPECT_EQ(libraryFolderWithHome(std::nullopt, unknownUser), "absent");
    EXPECT_EQ(libraryFolderWithHome("", unknownUser), "absent");
    EXPECT_EQ(libraryFolderWithHome("/given", unknownUser), "/given/Library");
}

} // namespace
} // namespace orlimo

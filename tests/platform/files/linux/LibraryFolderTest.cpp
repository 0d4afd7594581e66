#include "platform/files/LibraryFolder.h"

#include "platform/files/linux/HomeFolder.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// Sets the variable, or takes it away for a null. Called in a process without other threads.
void setHome(const char* home)
{
    if (home == nullptr) {
        ::unsetenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    } else {
        ::setenv("HOME", home, 1); // NOLINT(concurrency-mt-unsafe)
    }
}

/// The Library folder that a process of its own computes after `prepare`; "absent" when there is
/// none.
std::string libraryFolderAfter(const std::function<void()>& prepare)
{
    const auto run = runForked([&prepare] {
        prepare();
        const auto folder = libraryFolder();
        (void)std::fputs(folder ? folder->c_str() : "absent", stdout);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

std::string homeOfThisUser()
{
    const passwd* entry = ::getpwuid(::getuid()); // NOLINT(concurrency-mt-unsafe): no other thread
    return entry == nullptr ? "" : entry->pw_dir;
}

/// Becomes a user whom the user database does not know. False where that is not allowed.
bool becomeUnknownUser()
{
    constexpr uid_t unknown = 1'234'567;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread
    return ::getpwuid(unknown) == nullptr && ::setuid(unknown) == 0;
}

TEST(HomeFolder, IsTheVariablesValue)
{
    EXPECT_EQ(homeFolder("/home/a", "/home/b"), "/home/a");
    EXPECT_EQ(homeFolder("/home/a", std::nullopt), "/home/a");
    EXPECT_EQ(homeFolder("relative", "/home/b"), "relative");
}

TEST(HomeFolder, IsTheUserDatabasesWhereTheVariableIsUnsetOrEmpty)
{
    EXPECT_EQ(homeFolder(nullptr, "/home/b"), "/home/b");
    EXPECT_EQ(homeFolder("", "/home/b"), "/home/b");
}

TEST(HomeFolder, IsAbsentWhereNeitherSaysAnything)
{
    EXPECT_EQ(homeFolder(nullptr, std::nullopt), std::nullopt);
    EXPECT_EQ(homeFolder("", std::nullopt), std::nullopt);
    EXPECT_EQ(homeFolder(nullptr, ""), std::nullopt);
    EXPECT_EQ(homeFolder("", ""), std::nullopt);
}

TEST(HomeFolder, OfTheUserDatabaseIsThisUsers)
{
    const auto home = homeInUserDatabase();
    EXPECT_EQ(home.value_or(""), homeOfThisUser());
}

TEST(LibraryFolder, IsInTheHomeThatTheVariableNames)
{
    EXPECT_EQ(libraryFolderAfter([] { setHome("/somewhere/home"); }), "/somewhere/home/Library");
    EXPECT_EQ(libraryFolderAfter([] { setHome("/ends/"); }), "/ends/Library");
    EXPECT_EQ(libraryFolderAfter([] { setHome("/"); }), "/Library");
    EXPECT_EQ(libraryFolderAfter([] { setHome("/not\xFFtext"); }), "/not\xFFtext/Library");
}

TEST(LibraryFolder, IsInTheUserDatabasesHomeWhereTheVariableIsUnset)
{
    if (homeOfThisUser().empty()) {
        GTEST_SKIP() << "the user database does not know this user";
    }
    EXPECT_EQ(libraryFolderAfter([] { setHome(nullptr); }), homeOfThisUser() + "/Library");
}

TEST(LibraryFolder, IsInTheUserDatabasesHomeWhereTheVariableIsEmpty)
{
    if (homeOfThisUser().empty()) {
        GTEST_SKIP() << "the user database does not know this user";
    }
    EXPECT_EQ(libraryFolderAfter([] { setHome(""); }), homeOfThisUser() + "/Library");
}

TEST(LibraryFolder, IsComputedAfreshAtEachCall)
{
    EXPECT_EQ(
        libraryFolderAfter([] {
            setHome("/first");
            (void)libraryFolder();
            setHome("/second");
        }),
        "/second/Library");
}

TEST(LibraryFolder, IsAbsentForAnUnknownUserWithoutTheVariable)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can become another user";
    }
    for (const char* home : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(
            libraryFolderAfter([home] {
                setHome(home);
                if (!becomeUnknownUser()) {
                    ::_exit(1);
                }
            }),
            "absent");
    }
}

TEST(LibraryFolder, OfAnUnknownUserIsInTheHomeThatTheVariableNames)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can become another user";
    }
    EXPECT_EQ(
        libraryFolderAfter([] {
            setHome("/given");
            if (!becomeUnknownUser()) {
                ::_exit(1);
            }
        }),
        "/given/Library");
}

TEST(LibraryFolder, NeedNotExist)
{
    EXPECT_EQ(
        libraryFolderAfter([] { setHome("/dev/null/no folder"); }), "/dev/null/no folder/Library");
}

} // namespace
} // namespace orlimo

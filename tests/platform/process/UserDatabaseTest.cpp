#include "platform/process/UserDatabase.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// The line of the user database for the user who runs the tests.
std::string lineWithHome(const std::string& home)
{
    const std::string number = std::to_string(::getuid());
    return "tester:x:" + number + ":" + number + ":Tester:" + home + ":/bin/sh\n";
}

constexpr const char* someoneElse = "other:x:4321:4321:Other:/home/other:/bin/sh\n";

/// A program that looks up its user in a user database that holds `lines`, with another home in the
/// variable HOME.
class UserDatabaseTest : public testing::Test
{
protected:
    [[nodiscard]] std::string homeIn(const std::string& lines)
    {
        writeFile(folder.path() / "passwd", lines);
        writeFile(folder.path() / "group", "");
        auto environment = preloadEnvironment({"libnss_wrapper.so"});
        environment.insert(
            {{"NSS_WRAPPER_PASSWD", (folder.path() / "passwd").string()},
             {"NSS_WRAPPER_GROUP", (folder.path() / "group").string()},
             {"HOME", "/wrong"}});
        ChildProcess probe(
            ORLIMO_HOME_PROBE,
            {.arguments = {"home-of-user"}, .environment = std::move(environment)});
        EXPECT_EQ(probe.awaitEnd().status, 0) << probe.errors();
        return probe.output();
    }

    TemporaryFolder folder;
};

TEST_F(UserDatabaseTest, HomeIsThatOfTheEntryAndNotOfTheEnvironment)
{
    for (const std::string& home :
         {std::string("/home/tester"),
          std::string("/home/with space"),
          std::string("/home/not\xFFtext/"),
          std::string("relative"),
          std::string(),
          "/" + std::string(3000, 'h')})
    {
        EXPECT_EQ(homeIn(someoneElse + lineWithHome(home)), "home " + home + "\n");
    }
}

TEST_F(UserDatabaseTest, UnknownUserHasNoEntry)
{
    EXPECT_EQ(homeIn(someoneElse), "no entry\n");
    EXPECT_EQ(homeIn(""), "no entry\n");
}

TEST(UserDatabase, EntryIsTheMachines)
{
    const passwd* const entry = ::getpwuid(::getuid()); // NOLINT(concurrency-mt-unsafe)
    const auto found = currentUserEntry();
    ASSERT_EQ(found.has_value(), entry != nullptr);
    if (entry != nullptr) {
        EXPECT_EQ(found->homeDirectory, entry->pw_dir);
    }
}

} // namespace
} // namespace orlimo

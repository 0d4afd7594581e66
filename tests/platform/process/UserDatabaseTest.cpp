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

/// Asks a program for the entry, before a user database that holds `lines` and with `home` for the
/// variable HOME.
class UserDatabaseTest : public testing::Test
{
protected:
    [[nodiscard]] std::string entryIn(const std::string& lines, const std::string& home = "/wrong")
    {
        writeFile(folder.path() / "passwd", lines);
        writeFile(folder.path() / "group", "");
        auto environment = preloadEnvironment({"libnss_wrapper.so"});
        environment.insert(
            {{"NSS_WRAPPER_PASSWD", (folder.path() / "passwd").string()},
             {"NSS_WRAPPER_GROUP", (folder.path() / "group").string()},
             {"HOME", home}});
        ChildProcess probe(
            ORLIMO_HOME_PROBE,
            {.arguments = {"home-of-user"}, .environment = std::move(environment)});
        EXPECT_EQ(probe.awaitEnd().status, 0) << probe.errors();
        return probe.output();
    }

    TemporaryFolder folder;
};

TEST_F(UserDatabaseTest, NamesTheHomeOfTheUserWhoRunsTheProcess)
{
    EXPECT_EQ(entryIn(lineWithHome("/home/tester")), "home /home/tester\n");
    EXPECT_EQ(entryIn(someoneElse + lineWithHome("/elsewhere")), "home /elsewhere\n");
}

TEST_F(UserDatabaseTest, DoesNotAskTheEnvironment)
{
    EXPECT_EQ(entryIn(lineWithHome("/home/tester"), "/home/wrong"), "home /home/tester\n");
    EXPECT_EQ(entryIn(lineWithHome("/home/tester"), ""), "home /home/tester\n");
}

TEST_F(UserDatabaseTest, TakesTheHomeAsItStands)
{
    EXPECT_EQ(entryIn(lineWithHome("/home/with space")), "home /home/with space\n");
    EXPECT_EQ(entryIn(lineWithHome("/home/not\xFFtext/")), "home /home/not\xFFtext/\n");
    EXPECT_EQ(entryIn(lineWithHome("relative")), "home relative\n");
    EXPECT_EQ(entryIn(lineWithHome("")), "home \n");
}

TEST_F(UserDatabaseTest, HasNoEntryForAUserItDoesNotKnow)
{
    EXPECT_EQ(entryIn(someoneElse), "no entry\n");
    EXPECT_EQ(entryIn(""), "no entry\n");
}

TEST_F(UserDatabaseTest, TakesEntriesOfAnyLength)
{
    const std::string home = "/" + std::string(3000, 'h');
    EXPECT_EQ(entryIn(lineWithHome(home)), "home " + home + "\n");
}

TEST(UserDatabase, IsTheMachines)
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

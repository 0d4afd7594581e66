#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <unistd.h>

namespace orlimo {
namespace {

/// What a program finds of its user in a user database that holds `lines`, with another home in the
/// variable HOME.
std::string homeIn(const std::string& lines)
{
    const TemporaryFolder folder;
    writeFile(folder.path() / "passwd", lines);
    writeFile(folder.path() / "group", "");
    auto environment = preloadEnvironment({"libnss_wrapper.so"});
    environment.insert(
        {{"NSS_WRAPPER_PASSWD", (folder.path() / "passwd").string()},
         {"NSS_WRAPPER_GROUP", (folder.path() / "group").string()},
         {"HOME", "/wrong"}});
    ChildProcess probe(
        ORLIMO_HOME_PROBE, {.arguments = {"home-of-user"}, .environment = std::move(environment)});
    EXPECT_EQ(probe.awaitEnd().status, 0) << probe.errors();
    return probe.output();
}

TEST(UserDatabase, HomeIsThatOfTheUsersEntryAndNotOfTheEnvironment)
{
    const std::string other = "other:x:4321:4321:Other:/home/other:/bin/sh\n";
    EXPECT_EQ(homeIn(other), "no entry\n");
    EXPECT_EQ(homeIn(""), "no entry\n");
    const std::string number = std::to_string(::getuid());
    const std::string user = "tester:x:" + number + ":" + number + ":Tester:";
    for (const std::string& home :
         {std::string("/home/with space"),
          std::string("/home/not\xFFtext/"),
          std::string("relative"),
          std::string(),
          "/" + std::string(3000, 'h')})
    {
        EXPECT_EQ(homeIn(other + user + home + ":/bin/sh\n"), "home " + home + "\n");
    }
}

} // namespace
} // namespace orlimo

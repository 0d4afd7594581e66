#include "platform/files/LibraryFolder.h"

#include "tests/support/process/EnvironmentChange.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace orlimo {
namespace {

std::string libraryFolderWithHome(const std::optional<std::string>& home)
{
    const EnvironmentChange change("HOME", home);
    return libraryFolder().value_or("absent");
}

TEST(LibraryFolder, HomeVariableSetUsesIt)
{
    for (const auto& [home, folder] :
         {std::pair{"/somewhere/home", "/somewhere/home/Library"},
          std::pair{"relative", "relative/Library"},
          std::pair{"/not\xFFtext", "/not\xFFtext/Library"},
          std::pair{"/dev/null/no folder", "/dev/null/no folder/Library"},
          std::pair{"/ends/", "/ends/Library"},
          std::pair{"/", "/Library"}})
    {
        EXPECT_EQ(libraryFolderWithHome(home), folder);
    }
}

TEST(LibraryFolder, HomeVariableUnsetOrEmptyUsesUserDatabase)
{
    const passwd* const entry = ::getpwuid(::getuid()); // NOLINT(concurrency-mt-unsafe)
    const std::string expected =
        entry == nullptr ? "absent" : entry->pw_dir + std::string("/Library");
    for (const auto& home : {std::optional<std::string>(), std::optional<std::string>("")}) {
        EXPECT_EQ(libraryFolderWithHome(home), expected);
        constexpr uid_t unknownUser = 1'234'567;
        if (::setreuid(unknownUser, ::geteuid()) == 0) { // as only the superuser can
            EXPECT_EQ(libraryFolderWithHome(home), "absent");
            EXPECT_EQ(::setreuid(::geteuid(), ::geteuid()), 0);
        }
    }
}

} // namespace
} // namespace orlimo

#include "platform/files/DirectoryListing.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace orlimo {
namespace {

class DirectoryListing : public testing::Test
{
protected:
    TemporaryFolder folder;
};

TEST_F(DirectoryListing, FolderCanBeListedAlsoWhenEmptyOrLinked)
{
    EXPECT_TRUE(canListDirectory(folder.path()));
    writeFile(folder.path() / "folder" / "inside", "");
    std::filesystem::create_symlink("folder", folder.path() / "link");
    EXPECT_TRUE(canListDirectory(folder.path()));
    EXPECT_TRUE(canListDirectory(folder.path() / "link"));
}

TEST_F(DirectoryListing, MissingFolderOrFileCannotBeListed)
{
    writeFile(folder.path() / "file", "content");
    EXPECT_FALSE(canListDirectory(folder.path() / "file"));
    EXPECT_FALSE(canListDirectory(folder.path() / "nothing"));
    EXPECT_FALSE(canListDirectory(""));
    EXPECT_FALSE(canListDirectory("~/nothing"));
}

TEST_F(DirectoryListing, UnreadableFolderCannotBeListed)
{
    std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
    const auto run = runForked([this] {
        becomeUnprivilegedUser();
        ::_exit(canListDirectory(folder.path()) ? 1 : 0);
    });
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(run.status, 0);
}

} // namespace
} // namespace orlimo

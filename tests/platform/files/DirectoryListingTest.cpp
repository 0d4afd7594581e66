#include "platform/files/DirectoryListing.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(DirectoryListing, ReadableFolderCanBeListed)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(canListDirectory(folder.path())) << "empty";
    writeFile(folder.path() / "folder" / "file", "content");
    std::filesystem::create_symlink("folder", folder.path() / "link");
    EXPECT_TRUE(canListDirectory(folder.path()));
    EXPECT_TRUE(canListDirectory(folder.path() / "link"));

    EXPECT_FALSE(canListDirectory(folder.path() / "link" / "file"));
    EXPECT_FALSE(canListDirectory(folder.path() / "missing"));
    EXPECT_FALSE(canListDirectory(""));

    std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
    {
        const UnprivilegedScope unprivileged;
        EXPECT_FALSE(canListDirectory(folder.path()));
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
}

} // namespace
} // namespace orlimo

#include "platform/files/DirectoryListing.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <unistd.h>

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
    const auto run = runForked([&folder] {
        becomeUnprivilegedUser();
        ::_exit(canListDirectory(folder.path()) ? 1 : 0);
    });
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(run.status, 0);
}

} // namespace
} // namespace orlimo

#include "platform/files/DirectoryListing.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::UnorderedElementsAre;

class DirectoryListing : public testing::Test
{
protected:
    TemporaryFolder folder;
};

TEST_F(DirectoryListing, OfAnEmptyFolderIsEmpty)
{
    EXPECT_THAT(contentsOfDirectory(folder.path()), Optional(ElementsAre()));
}

TEST_F(DirectoryListing, HoldsTheNamesOfEverythingInTheFolder)
{
    writeFile(folder.path() / "file", "");
    writeFile(folder.path() / ".hidden", "");
    writeFile(folder.path() / "with space", "");
    // One letter in one code point and another one in two: each is given as it is stored.
    writeFile(folder.path() / "\u00E9", "");
    writeFile(folder.path() / "e\u0302", "");
    writeFile(folder.path() / "folder" / "inside", "");
    std::filesystem::create_symlink("nowhere", folder.path() / "link");
    EXPECT_THAT(
        contentsOfDirectory(folder.path()),
        Optional(UnorderedElementsAre(
            "file", ".hidden", "with space", "\u00E9", "e\u0302", "folder", "link")));
}

TEST_F(DirectoryListing, ReadsAllOfALargeFolder)
{
    for (int number = 0; number < 3000; ++number) {
        writeFile(folder.path() / std::to_string(number), "");
    }
    const auto names = contentsOfDirectory(folder.path());
    ASSERT_TRUE(names.has_value());
    EXPECT_EQ(names->size(), 3000U);
}

TEST_F(DirectoryListing, FollowsALinkToTheFolder)
{
    writeFile(folder.path() / "folder" / "inside", "");
    std::filesystem::create_symlink("folder", folder.path() / "link");
    EXPECT_THAT(contentsOfDirectory(folder.path() / "link"), Optional(ElementsAre("inside")));
}

TEST_F(DirectoryListing, IsAbsentWhereThereIsNoFolder)
{
    EXPECT_EQ(contentsOfDirectory(folder.path() / "nothing"), std::nullopt);
    EXPECT_EQ(contentsOfDirectory(""), std::nullopt);
    EXPECT_EQ(contentsOfDirectory("~/nothing"), std::nullopt);
}

TEST_F(DirectoryListing, IsAbsentForAFile)
{
    writeFile(folder.path() / "file", "content");
    EXPECT_EQ(contentsOfDirectory(folder.path() / "file"), std::nullopt);
}

TEST_F(DirectoryListing, IsAbsentForAFolderThatMayNotBeRead)
{
    std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
    const auto run = runForked([this] {
        becomeUnprivilegedUser();
        const auto names = contentsOfDirectory(folder.path());
        (void)std::fputs(names ? "listed" : "absent", stdout);
    });
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "absent");
}

} // namespace
} // namespace orlimo

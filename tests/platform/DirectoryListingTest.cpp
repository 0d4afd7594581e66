#include "platform/DirectoryListing.h"

#include "tests/support/ForkedRun.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <string>

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// How many more entries the host hands out before reading a folder fails.
int entriesUntilFailure = std::numeric_limits<int>::max();

} // namespace

/// Stands before the C library's own, in this whole program.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" dirent* readdir(DIR* folder)
{
    if (entriesUntilFailure == 0) {
        errno = EIO;
        return nullptr;
    }
    --entriesUntilFailure;
    using Function = dirent* (*)(DIR*);
    static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "readdir"));
    return next(folder);
}

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::UnorderedElementsAre;

class DirectoryListing : public testing::Test
{
protected:
    void TearDown() override { entriesUntilFailure = std::numeric_limits<int>::max(); }

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
    writeFile(folder.path() / "not\xFFtext", "");
    writeFile(folder.path() / "folder" / "inside", "");
    std::filesystem::create_symlink("nowhere", folder.path() / "link");
    EXPECT_THAT(
        contentsOfDirectory(folder.path()),
        Optional(UnorderedElementsAre(
            "file", ".hidden", "with space", "not\xFFtext", "folder", "link")));
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

TEST_F(DirectoryListing, IsAbsentWhenReadingFailsAtTheBeginning)
{
    entriesUntilFailure = 0;
    EXPECT_EQ(contentsOfDirectory(folder.path()), std::nullopt);
}

TEST_F(DirectoryListing, IsAbsentWhenReadingFailsInTheMiddle)
{
    for (const char* name : {"a", "b", "c", "d"}) {
        writeFile(folder.path() / name, "");
    }
    // The two names of every folder are among those handed out.
    entriesUntilFailure = 4;
    EXPECT_EQ(contentsOfDirectory(folder.path()), std::nullopt);
    EXPECT_EQ(entriesUntilFailure, 0);
}

} // namespace
} // namespace orlimo

#include "app/guidance/DiskAccess.h"

#include "platform/files/DirectoryListing.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

using std::filesystem::perms;

/// Where the probe looks in a home.
constexpr const char* probeFolder = "Library/Containers/com.apple.stocks";

bool canList(const std::filesystem::path& folder)
{
    return contentsOfDirectory(folder).has_value();
}

/// A home, and what the user database says of it.
class DiskAccessTest : public testing::Test
{
protected:
    static bool hasAccess(const std::optional<UserEntry>& entry)
    {
        return hasFullDiskAccess([&entry] { return entry; }, canList);
    }

    static bool hasAccess(const std::string& homeDirectory)
    {
        return hasAccess(UserEntry{.homeDirectory = homeDirectory});
    }

    static void makeProbeFolder(const std::filesystem::path& inHome)
    {
        std::filesystem::create_directories(inHome / probeFolder);
    }

    /// Of a home of that name, as soon as the folder is in it.
    void expectAccessOnceMade(const char* name) const
    {
        const auto folder = home.path() / name;
        EXPECT_FALSE(hasAccess(folder.string())) << name;
        makeProbeFolder(folder);
        EXPECT_TRUE(hasAccess(folder.string())) << name;
    }

    TemporaryFolder home;
};

TEST_F(DiskAccessTest, IsGrantedWhereTheFolderCanBeListed)
{
    makeProbeFolder(home.path());
    writeFile(home.path() / probeFolder / "Data/file", "content");
    EXPECT_TRUE(hasAccess(home.path().string()));
}

TEST_F(DiskAccessTest, IsGrantedWhereTheFolderIsEmpty)
{
    makeProbeFolder(home.path());
    EXPECT_TRUE(hasAccess(home.path().string()));
}

TEST_F(DiskAccessTest, IsNotGrantedWhereTheFolderIsMissing)
{
    EXPECT_FALSE(hasAccess(home.path().string()));
    std::filesystem::create_directories(home.path() / "Library/Containers");
    EXPECT_FALSE(hasAccess(home.path().string()));
    EXPECT_FALSE(hasAccess((home.path() / "nobody").string()));
}

TEST_F(DiskAccessTest, IsNotGrantedByAFileInTheFoldersPlace)
{
    writeFile(home.path() / probeFolder, "content");
    EXPECT_FALSE(hasAccess(home.path().string()));
}

TEST_F(DiskAccessTest, IsNotGrantedWhereTheFolderMayNotBeRead)
{
    makeProbeFolder(home.path());
    std::filesystem::permissions(
        home.path(), perms::owner_all | perms::others_read | perms::others_exec);
    const auto accessOfNobody = [this] {
        const ForkedRun run = runForked([this] {
            becomeUnprivilegedUser();
            ::_exit(hasAccess(home.path().string()) ? 1 : 2);
        });
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "");
        return run.status == 1;
    };
    EXPECT_TRUE(accessOfNobody());
    std::filesystem::permissions(home.path() / probeFolder, perms::none);
    EXPECT_FALSE(accessOfNobody());
    std::filesystem::permissions(home.path() / probeFolder, perms::all);
    EXPECT_TRUE(accessOfNobody());
    std::filesystem::permissions(home.path() / "Library", perms::none);
    EXPECT_FALSE(accessOfNobody());
    std::filesystem::permissions(home.path() / "Library", perms::owner_all);
}

TEST_F(DiskAccessTest, IsLookedForInTheDatabasesHomeAndNotTheEnvironments)
{
    TemporaryFolder other;
    makeProbeFolder(home.path());
    EXPECT_FALSE(hasAccess(other.path().string()));
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QByteArray(home.path().c_str()));
    EXPECT_FALSE(hasAccess(other.path().string()));
    qputenv("HOME", before);
}

TEST_F(DiskAccessTest, TakesAHomeWithSlashesAtItsEnd)
{
    makeProbeFolder(home.path());
    EXPECT_TRUE(hasAccess(home.path().string() + "/"));
    EXPECT_TRUE(hasAccess(home.path().string() + "///"));
}

TEST_F(DiskAccessTest, TakesAHomeOfAnyName)
{
    for (const char* name : {"with space", "~", "a~b~c", "ホーム", "100%25", "?#"}) {
        expectAccessOnceMade(name);
    }
}

TEST_F(DiskAccessTest, TakesAHomeWhoseNameIsNoText)
{
    const char* const name = "\xFF\xFE";
    if (!supportsFileName(home.path() / name)) {
        GTEST_SKIP() << "the file system takes no such name";
    }
    expectAccessOnceMade(name);
}

TEST_F(DiskAccessTest, FollowsALinkedHome)
{
    makeProbeFolder(home.path() / "real");
    std::filesystem::create_directory_symlink(home.path() / "real", home.path() / "linked");
    EXPECT_TRUE(hasAccess((home.path() / "linked").string()));
}

TEST_F(DiskAccessTest, TakesTheRootForAHome)
{
    EXPECT_FALSE(hasAccess("/"));
}

TEST_F(DiskAccessTest, TakesAnEmptyOrRelativeHomeFromTheWorkingFolder)
{
    makeProbeFolder(home.path());
    makeProbeFolder(home.path() / "relative");
    const ForkedRun run = runForked([this] {
        std::filesystem::current_path(home.path());
        ::_exit(hasAccess("") && hasAccess("relative") && !hasAccess("other") ? 1 : 2);
    });
    EXPECT_EQ(run.status, 1);
}

TEST_F(DiskAccessTest, LeavesTheTildeInPlaceForAnUnknownUser)
{
    EXPECT_FALSE(hasAccess(std::nullopt));
    const auto accessInFolder = [this] {
        const ForkedRun run = runForked([this] {
            std::filesystem::current_path(home.path());
            ::_exit(hasAccess(std::nullopt) ? 1 : 2);
        });
        return run.status == 1;
    };
    makeProbeFolder(home.path());
    EXPECT_FALSE(accessInFolder());
    makeProbeFolder(home.path() / "~");
    EXPECT_TRUE(accessInFolder());
}

TEST_F(DiskAccessTest, StopsAtAnEntryWithoutAHome)
{
    expectFatalStop(
        [] { (void)hasAccess(UserEntry{}); },
        {},
        {.file = "app/guidance/DiskAccess.cpp",
         .reason = "the user database knows no home folder for this user"});
}

TEST_F(DiskAccessTest, AsksTheDatabaseOnceAndSaysNothing)
{
    int asked = 0;
    EXPECT_FALSE(hasFullDiskAccess(
        [&asked]() -> std::optional<UserEntry> {
            ++asked;
            return std::nullopt;
        },
        canList));
    EXPECT_EQ(asked, 1);
    const ForkedRun run = runForked([this] { (void)hasAccess(home.path().string()); });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "");
}

} // namespace
} // namespace orlimo

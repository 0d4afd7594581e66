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

/// A home, and its entry in the user database.
class DiskAccessTest : public testing::Test
{
protected:
    static bool hasAccess(const std::optional<UserEntry>& entry)
    {
        return hasFullDiskAccess([&entry] { return entry; }, canListDirectory);
    }

    static bool hasAccess(const std::string& homeDirectory)
    {
        return hasAccess(UserEntry{.homeDirectory = homeDirectory});
    }

    static void makeProbeFolder(const std::filesystem::path& inHome)
    {
        std::filesystem::create_directories(inHome / probeFolder);
    }

    /// In a home of that name, as soon as the folder is in it.
    void expectAccessOnceMade(const char* name) const
    {
        const auto folder = home.path() / name;
        EXPECT_FALSE(hasAccess(folder.string())) << name;
        makeProbeFolder(folder);
        EXPECT_TRUE(hasAccess(folder.string())) << name;
    }

    TemporaryFolder home;
};

TEST_F(DiskAccessTest, IsGrantedWhereFolderCanBeListed)
{
    EXPECT_FALSE(hasAccess(home.path().string()));
    std::filesystem::create_directories(home.path() / "Library/Containers");
    EXPECT_FALSE(hasAccess(home.path().string()));
    EXPECT_FALSE(hasAccess((home.path() / "nobody").string()));
    EXPECT_FALSE(hasAccess("/"));
    makeProbeFolder(home.path());
    EXPECT_TRUE(hasAccess(home.path().string())) << "empty";
    EXPECT_TRUE(hasAccess(home.path().string() + "///"));
    std::filesystem::create_directory_symlink(home.path(), home.path() / "linked");
    EXPECT_TRUE(hasAccess((home.path() / "linked").string()));
    writeFile(home.path() / probeFolder / "Data/file", "content");
    EXPECT_TRUE(hasAccess(home.path().string()));
    writeFile(home.path() / "other" / probeFolder, "content");
    EXPECT_FALSE(hasAccess((home.path() / "other").string())) << "a file";
}

TEST_F(DiskAccessTest, IsNotGrantedWhereFolderMayNotBeRead)
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

TEST_F(DiskAccessTest, UsesHomeOfDatabaseAndNotOfEnvironment)
{
    TemporaryFolder other;
    makeProbeFolder(home.path());
    EXPECT_FALSE(hasAccess(other.path().string()));
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QByteArray(home.path().c_str()));
    EXPECT_FALSE(hasAccess(other.path().string()));
    qputenv("HOME", before);
}

TEST_F(DiskAccessTest, AcceptsHomeOfAnyName)
{
    for (const char* name : {"with space", "~", "a~b~c", "ホーム", "100%25", "?#"}) {
        expectAccessOnceMade(name);
    }
}

TEST_F(DiskAccessTest, AcceptsHomeWhoseNameIsNotText)
{
    const char* const name = "\xFF\xFE";
    if (!supportsFileName(home.path() / name)) {
        GTEST_SKIP() << "the file system does not support such a name";
    }
    expectAccessOnceMade(name);
}

TEST_F(DiskAccessTest, IsLookedForInWorkingFolderForRelativeHomeAndUnknownUser)
{
    EXPECT_FALSE(hasAccess(std::nullopt));
    const auto accessInFolder = [this](const std::optional<UserEntry>& entry) {
        const ForkedRun run = runForked([&] {
            std::filesystem::current_path(home.path());
            ::_exit(hasAccess(entry) ? 1 : 2);
        });
        return run.status == 1;
    };
    makeProbeFolder(home.path());
    makeProbeFolder(home.path() / "relative");
    EXPECT_TRUE(accessInFolder(UserEntry{.homeDirectory = ""}));
    EXPECT_TRUE(accessInFolder(UserEntry{.homeDirectory = "relative"}));
    EXPECT_FALSE(accessInFolder(UserEntry{.homeDirectory = "other"}));
    // The tilde stays without an entry.
    EXPECT_FALSE(accessInFolder(std::nullopt));
    makeProbeFolder(home.path() / "~");
    EXPECT_TRUE(accessInFolder(std::nullopt));
}

TEST_F(DiskAccessTest, StopsAtEntryWithoutHome)
{
    expectFatalStop(
        [] { (void)hasAccess(UserEntry{}); },
        {},
        {.file = "app/guidance/DiskAccess.cpp",
         .reason = "the user database knows no home folder for this user"});
}

TEST_F(DiskAccessTest, QueriesDatabaseOnceAndPrintsNothing)
{
    int queries = 0;
    EXPECT_FALSE(hasFullDiskAccess(
        [&queries]() -> std::optional<UserEntry> {
            ++queries;
            return std::nullopt;
        },
        canListDirectory));
    EXPECT_EQ(queries, 1);
    const ForkedRun run = runForked([this] { (void)hasAccess(home.path().string()); });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "");
}

} // namespace
} // namespace orlimo

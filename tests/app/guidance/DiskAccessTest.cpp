#include "app/guidance/DiskAccess.h"

#include "platform/files/DirectoryListing.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

using std::filesystem::perms;

/// Where the probe looks in a home.
constexpr const char* probeFolder = "Library/Containers/com.apple.stocks";

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

    /// The access that a silent process of its own finds, prepared by `enter`.
    static bool
    hasAccessAfter(const std::function<void()>& enter, const std::optional<UserEntry>& entry)
    {
        const ForkedRun run = runForked([&] {
            enter();
            ::_exit(hasAccess(entry) ? 1 : 2);
        });
        EXPECT_EQ(run.output + run.errors, "");
        return run.status == 1;
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
    const EnvironmentChange environment("HOME", home.path().string());
    EXPECT_FALSE(hasAccess((home.path() / "other").string())) << "a file";
}

TEST_F(DiskAccessTest, IsNotGrantedWhereFolderMayNotBeRead)
{
    makeProbeFolder(home.path());
    std::filesystem::permissions(
        home.path(), perms::owner_all | perms::others_read | perms::others_exec);
    const UserEntry entry{.homeDirectory = home.path().string()};
    for (const char* folder : {probeFolder, "Library"}) {
        for (const perms mode : {perms::all, perms::none, perms::all}) {
            std::filesystem::permissions(home.path() / folder, mode);
            EXPECT_EQ(hasAccessAfter(becomeUnprivilegedUser, entry), mode == perms::all) << folder;
        }
    }
}

TEST_F(DiskAccessTest, AcceptsHomeOfAnyName)
{
    for (const char* name : {"with space", "~", "a~b~c", "ホーム", "100%25", "?#", "\xFF\xFE"}) {
        const auto folder = home.path() / name;
        if (!supportsFileName(folder)) {
            continue;
        }
        EXPECT_FALSE(hasAccess(folder.string())) << name;
        makeProbeFolder(folder);
        EXPECT_TRUE(hasAccess(folder.string())) << name;
    }
}

TEST_F(DiskAccessTest, IsLookedForInWorkingFolderForRelativeHomeAndUnknownUser)
{
    EXPECT_FALSE(hasAccess(std::nullopt));
    const auto accessInFolder = [this](const std::optional<UserEntry>& entry) {
        return hasAccessAfter([this] { std::filesystem::current_path(home.path()); }, entry);
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

} // namespace
} // namespace orlimo

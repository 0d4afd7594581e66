#include "platform/instance/macos/ProcessLock.h"

#include "tests/platform/files/ForeignLock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace orlimo {
namespace {

using Outcome = ProcessLock::Outcome;

TEST(ProcessLock, IsHeldByOneProcessForLifetimeOfObject)
{
    using std::filesystem::perms;
    const TemporaryFolder folder;
    const auto file = folder.path() / "lock";
    {
        ProcessLock lock(file);
        EXPECT_EQ(
            std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
        {
            const ForeignLock other(file, 0);
            EXPECT_EQ(lock.take(), Outcome::heldByAnother);
            EXPECT_EQ(lock.holder(), other.processId());
        }
        EXPECT_EQ(lock.holder(), std::nullopt) << "killed, which gives it up";
        EXPECT_EQ(lock.take(), Outcome::taken);
        EXPECT_TRUE(isLockedForOtherProcesses(file, 0, 0));
        EXPECT_EQ(lock.holder(), std::nullopt) << "no other one";
    }
    EXPECT_FALSE(isLockedForOtherProcesses(file, 0, 0));
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(ProcessLock, IsUnavailableWithoutFile)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "lock";
    ProcessLock missing(folder.path() / "missing" / "lock");
    EXPECT_EQ(missing.take(), Outcome::unavailable);
    EXPECT_EQ(missing.holder(), std::nullopt);
    std::filesystem::create_symlink(folder.path() / "elsewhere", file);
    ProcessLock link(file);
    EXPECT_EQ(link.take(), Outcome::unavailable);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "elsewhere"));
}

} // namespace
} // namespace orlimo

#include "platform/files/GrowthDetector.h"
#include "platform/files/UniqueFd.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include <fcntl.h>

namespace orlimo {
namespace {

/// A log that SQLite cuts to 32 KiB after a complete checkpoint, as Apple's does by default, under
/// a system that reports growth alone.
class SizeLimitedWalGrowth : public testing::Test
{
protected:
    SizeLimitedWalGrowth()
    {
        writer.run("PRAGMA journal_size_limit = 32768");
        for (int message = 0; message < 30; ++message) {
            writer.appendText("a message");
        }
        writer.run("PRAGMA wal_checkpoint(FULL)");
    }

    [[nodiscard]] std::uintmax_t size() const { return std::filesystem::file_size(log); }

    /// Commits, and has the growth looked at where the system reports some. Whether it is reported
    /// on.
    [[nodiscard]] bool commit(const std::string& text)
    {
        const auto before = size();
        writer.appendText(text);
        return size() > before && detector.check(true);
    }

    TemporaryFolder folder;
    StoreWriter writer{folder.path()};
    std::filesystem::path log = folder.path() / "Messages/chat.db-wal";
    UniqueFd opened{::open(log.c_str(), O_RDONLY | O_CLOEXEC)};
    GrowthDetector detector{opened.get(), log, currentUptime};
};

TEST_F(SizeLimitedWalGrowth, IsReportedFromTheEndOfTheLimitOn)
{
    ASSERT_GT(size(), 40'000U);
    EXPECT_FALSE(commit("cut to the limit"));
    EXPECT_EQ(size(), 32'768U);
    int unreported = 0;
    while (!commit("a message")) {
        ASSERT_LT(++unreported, 8);
        EXPECT_EQ(size(), 32'768U);
    }
    EXPECT_GT(size(), 32'768U);
    EXPECT_TRUE(commit("the next"));
}

TEST_F(SizeLimitedWalGrowth, IsReportedFromTheEndOfALongFirstCommitOn)
{
    const auto before = size();
    EXPECT_FALSE(commit(std::string(50'000, 'x')));
    EXPECT_GT(size(), 50'000U);
    EXPECT_LT(size(), before);
    EXPECT_TRUE(commit("the next"));
}

} // namespace
} // namespace orlimo

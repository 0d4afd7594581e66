#include "platform/posix/GrowthMeter.h"

#include "platform/posix/UniqueFd.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

class GrowthMeterTest : public testing::Test
{
protected:
    GrowthMeterTest()
    {
        writeFile(file, "0123456789");
        opened = UniqueFd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    }

    void resize(std::uintmax_t size) { std::filesystem::resize_file(file, size); }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "file";
    UniqueFd opened;
};

TEST_F(GrowthMeterTest, DoesNotCountWhatWasThereBefore)
{
    GrowthMeter meter(opened.get());
    EXPECT_FALSE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, TellsEachGrowthOnce)
{
    GrowthMeter meter(opened.get());
    appendToFile(file, "x");
    EXPECT_TRUE(meter.hasGrown());
    EXPECT_FALSE(meter.hasGrown());
    appendToFile(file, "x");
    appendToFile(file, "y");
    EXPECT_TRUE(meter.hasGrown());
    EXPECT_FALSE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, AShrinkIsNotGrowth)
{
    GrowthMeter meter(opened.get());
    resize(5);
    EXPECT_FALSE(meter.hasGrown());
    resize(0);
    EXPECT_FALSE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, RemembersAShrink)
{
    GrowthMeter meter(opened.get());
    resize(0);
    EXPECT_FALSE(meter.hasGrown());
    appendToFile(file, "x");
    EXPECT_TRUE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, OverwritingIsNotGrowth)
{
    GrowthMeter meter(opened.get());
    const UniqueFd writer(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_EQ(::write(writer.get(), "abcdefghij", 10), 10);
    EXPECT_FALSE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, CountsSizesBeyondFourGigabytes)
{
    resize(0x1'0000'0000);
    GrowthMeter meter(opened.get());
    resize(0x1'0000'0001);
    EXPECT_TRUE(meter.hasGrown());
    resize(1);
    EXPECT_FALSE(meter.hasGrown());
    resize(0x2'0000'0000);
    EXPECT_TRUE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, FollowsTheOpenFileAndNotItsName)
{
    GrowthMeter meter(opened.get());
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    writeFile(file, "a longer file in the place of the first one");
    EXPECT_FALSE(meter.hasGrown());
    appendToFile(renamed, "x");
    EXPECT_TRUE(meter.hasGrown());
}

TEST_F(GrowthMeterTest, FailsWithTheHostsErrorForWhatIsNotOpen)
{
    try {
        const GrowthMeter meter(-1);
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(EBADF, std::generic_category()));
    }
}

TEST_F(GrowthMeterTest, AFileThatCannotBeAskedCountsAsGrown)
{
    GrowthMeter meter(opened.get());
    opened = UniqueFd();
    EXPECT_TRUE(meter.hasGrown());
}

} // namespace
} // namespace orlimo

#include "platform/files/UniqueFd.h"
#include "platform/files/macos/FileChangeDetector.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace orlimo {
namespace {

class ChangeMeterTest : public testing::Test
{
protected:
    ChangeMeterTest()
    {
        writeFile(file, "0123456789");
        setModification(1);
        opened = UniqueFd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    }

    void setModification(long nanoseconds)
    {
        const std::array<timespec, 2> times{
            timespec{1000, nanoseconds}, timespec{1000, nanoseconds}};
        ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times.data(), 0), 0);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "file";
    UniqueFd opened;
};

TEST_F(ChangeMeterTest, TellsOnceOfEachChangeOfSizeOrTime)
{
    FileChangeDetector meter(opened.get());
    EXPECT_TRUE(meter.hasChanged()) << "what was never looked at";
    for (const std::uintmax_t size : {11U, 5U, 0U, 10U}) {
        std::filesystem::resize_file(file, size);
        setModification(1);
        EXPECT_TRUE(meter.hasChanged()) << size;
        EXPECT_FALSE(meter.hasChanged()) << size;
    }
    setModification(2);
    EXPECT_TRUE(meter.hasChanged()) << "the same size";
    EXPECT_FALSE(meter.hasChanged());
    opened = UniqueFd();
    EXPECT_TRUE(meter.hasChanged()) << "what cannot be asked";
}

} // namespace
} // namespace orlimo

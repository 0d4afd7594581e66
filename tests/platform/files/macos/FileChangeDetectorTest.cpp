#include "platform/files/macos/FileChangeDetector.h"

#include "platform/files/UniqueFd.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace orlimo {
namespace {

TEST(FileChangeDetector, EachChangeOfSizeOrTimeIsDetectedOnce)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "file";
    const auto setModification = [&file](long nanoseconds) {
        const std::array<timespec, 2> times{
            timespec{1000, nanoseconds}, timespec{1000, nanoseconds}};
        ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times.data(), 0), 0);
    };
    writeFile(file, "0123456789");
    setModification(1);
    UniqueFd opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    FileChangeDetector detector(opened.get());
    EXPECT_TRUE(detector.hasChanged()) << "first call";
    for (const std::uintmax_t size : {11U, 5U, 0U, 10U}) {
        std::filesystem::resize_file(file, size);
        setModification(1);
        EXPECT_TRUE(detector.hasChanged()) << size;
        EXPECT_FALSE(detector.hasChanged()) << size;
    }
    setModification(2);
    EXPECT_TRUE(detector.hasChanged()) << "the same size";
    EXPECT_FALSE(detector.hasChanged());
    opened = UniqueFd();
    EXPECT_TRUE(detector.hasChanged()) << "unknown state";
}

} // namespace
} // namespace orlimo

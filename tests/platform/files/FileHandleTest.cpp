#include "platform/files/FileHandle.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

bool isOpen(int descriptor)
{
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

class FileHandleTest : public testing::Test
{
protected:
    FileHandleTest() { writeFile(file, "eleven byte"); }

    TemporaryFolder folder;
    /// A name that is not text, where the file system accepts it.
    std::filesystem::path file =
        folder.path() / (supportsFileName(folder.path() / "\xFF\n") ? "\xFF\n" : "file");
};

TEST_F(FileHandleTest, OpensForReadingAloneAndCloseOnExecAndSeeksToEnd)
{
    const auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_EQ(::fcntl(descriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_EQ(::lseek(descriptor, 0, SEEK_CUR), 0);
    for (const std::uint64_t size : {std::uint64_t{11}, std::uint64_t{0}, 0x1'0000'0005UL}) {
        std::filesystem::resize_file(file, size);
        EXPECT_EQ(handle.seekToEndOfFile(), size);
        EXPECT_EQ(::lseek(descriptor, 0, SEEK_CUR), static_cast<off_t>(size));
    }
}

TEST_F(FileHandleTest, FailureToOpenThrowsTheSystemsError)
{
    const auto link = folder.path() / "link";
    std::filesystem::create_symlink(link, link);
    const auto missing = folder.path() / "missing";
    for (const auto& [name, number] :
         {std::pair{missing, ENOENT},
          std::pair{file / "file", ENOTDIR},
          std::pair{std::filesystem::path(), ENOENT},
          std::pair{link, ELOOP}})
    {
        try {
            (void)FileHandle::openForReading(name);
            FAIL() << name;
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::error_code(number, std::generic_category()));
            EXPECT_NE(std::string(error.what()).find(name.string()), std::string::npos);
        }
    }
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(FileHandleTest, PipeDoesNotBlock)
{
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(FileHandle::openForReading(pipe).seekToEndOfFile(), 0U);
}

TEST_F(FileHandleTest, ClosesOnceAndReturnsTheSystemsError)
{
    auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_FALSE(handle.close());
    EXPECT_FALSE(isOpen(descriptor));
    EXPECT_EQ(handle.fileDescriptor(), -1);
    // Whoever is given the same number next keeps it.
    const auto next = FileHandle::openForReading(file);
    ASSERT_EQ(next.fileDescriptor(), descriptor);
    EXPECT_FALSE(handle.close());
    EXPECT_TRUE(isOpen(descriptor));

    auto closed = FileHandle::openForReading(file);
    ::close(closed.fileDescriptor());
    EXPECT_EQ(closed.close(), std::error_code(EBADF, std::generic_category()));
}

} // namespace
} // namespace orlimo

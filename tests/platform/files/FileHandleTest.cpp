#include "platform/files/FileHandle.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"

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

/// The errno value with which opening `file` fails; 0 when it does not.
int errorOfOpening(const std::filesystem::path& file)
{
    try {
        (void)FileHandle::openForReading(file);
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().category(), std::generic_category());
        EXPECT_NE(std::string(error.what()).find(file.string()), std::string::npos) << error.what();
        return error.code().value();
    }
    return 0;
}

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

TEST_F(FileHandleTest, OpensForReadingAloneAndCloseOnExec)
{
    const auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_EQ(::fcntl(descriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    std::string content(20, '\0');
    EXPECT_EQ(::read(descriptor, content.data(), content.size()), 11);
    EXPECT_EQ(content.substr(0, 11), "eleven byte");
}

TEST_F(FileHandleTest, FailureToOpenThrowsTheSystemsError)
{
    const auto link = folder.path() / "link";
    std::filesystem::create_symlink(link, link);
    EXPECT_EQ(errorOfOpening(folder.path() / "missing"), ENOENT);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
    EXPECT_EQ(errorOfOpening(file / "file"), ENOTDIR);
    EXPECT_EQ(errorOfOpening(""), ENOENT);
    EXPECT_EQ(errorOfOpening(link), ELOOP);
}

TEST_F(FileHandleTest, SeekToEndReturnsTheSize)
{
    const auto handle = FileHandle::openForReading(file);
    EXPECT_EQ(::lseek(handle.fileDescriptor(), 0, SEEK_CUR), 0);
    for (const std::uint64_t size : {std::uint64_t{11}, std::uint64_t{0}, 0x1'0000'0005UL}) {
        std::filesystem::resize_file(file, size);
        EXPECT_EQ(handle.seekToEndOfFile(), size);
        EXPECT_EQ(::lseek(handle.fileDescriptor(), 0, SEEK_CUR), static_cast<off_t>(size));
    }
}

TEST_F(FileHandleTest, PipeDoesNotBlock)
{
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto run = runForked([&pipe] {
        const auto handle = FileHandle::openForReading(pipe);
        ::_exit(handle.seekToEndOfFile() == 0 ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
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

TEST_F(FileHandleTest, DescriptorZeroIsClosedWithItsOwnerLikeAnyOther)
{
    const auto run = runForked([this] {
        ::close(0);
        {
            auto first = FileHandle::openForReading(file);
            const FileHandle second(std::move(first));
            if (second.fileDescriptor() != 0 || !isOpen(0)) {
                ::_exit(1);
            }
        }
        ::_exit(isOpen(0) ? 2 : 0);
    });
    EXPECT_EQ(run.status, 0);
}

} // namespace
} // namespace orlimo

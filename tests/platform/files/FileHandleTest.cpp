#include "platform/files/FileHandle.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// The number of the host's error with which opening `file` fails; 0 when it does not.
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
    std::filesystem::path file = folder.path() / "file";
};

TEST_F(FileHandleTest, OpensAFileForReadingAlone)
{
    const auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_EQ(::fcntl(descriptor, F_GETFL) & O_ACCMODE, O_RDONLY);
    std::string content(20, '\0');
    EXPECT_EQ(::read(descriptor, content.data(), content.size()), 11);
    EXPECT_EQ(content.substr(0, 11), "eleven byte");
}

TEST_F(FileHandleTest, IsNotHandedDownToOtherPrograms)
{
    const auto handle = FileHandle::openForReading(file);
    EXPECT_EQ(::fcntl(handle.fileDescriptor(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(FileHandleTest, FailsWithTheHostsErrorForAMissingFile)
{
    EXPECT_EQ(errorOfOpening(folder.path() / "missing"), ENOENT);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
    EXPECT_EQ(errorOfOpening(folder.path() / "no folder" / "file"), ENOENT);
    EXPECT_EQ(errorOfOpening(file / "file"), ENOTDIR);
    EXPECT_EQ(errorOfOpening(""), ENOENT);
}

TEST_F(FileHandleTest, FailsWithTheHostsErrorForAFileThatMayNotBeRead)
{
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const auto run = runForked([this] {
        becomeUnprivilegedUser();
        ::_exit(errorOfOpening(file));
    });
    EXPECT_EQ(run.status, EACCES);
}

TEST_F(FileHandleTest, FailsWithTheHostsErrorForALinkToItself)
{
    const auto link = folder.path() / "link";
    std::filesystem::create_symlink(link, link);
    EXPECT_EQ(errorOfOpening(link), ELOOP);
}

TEST_F(FileHandleTest, GoesToTheEndAndTellsHowFarThatIs)
{
    const auto handle = FileHandle::openForReading(file);
    EXPECT_EQ(::lseek(handle.fileDescriptor(), 0, SEEK_CUR), 0);
    EXPECT_EQ(handle.seekToEndOfFile(), 11U);
    EXPECT_EQ(::lseek(handle.fileDescriptor(), 0, SEEK_CUR), 11);

    appendToFile(file, "s");
    EXPECT_EQ(handle.seekToEndOfFile(), 12U);
}

TEST_F(FileHandleTest, TheEndOfAnEmptyFileIsItsBeginning)
{
    writeFile(file, "");
    EXPECT_EQ(FileHandle::openForReading(file).seekToEndOfFile(), 0U);
}

TEST_F(FileHandleTest, TellsAnEndBeyondFourGigabytes)
{
    std::filesystem::resize_file(file, 0x1'0000'0005);
    EXPECT_EQ(FileHandle::openForReading(file).seekToEndOfFile(), 0x1'0000'0005U);
}

TEST_F(FileHandleTest, APipeInTheFilesPlaceBlocksNothing)
{
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    // In a process of its own, which an alarm ends if it does block.
    const auto run = runForked([&pipe] {
        ::alarm(10);
        const auto handle = FileHandle::openForReading(pipe);
        ::_exit(handle.seekToEndOfFile() == 0 ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
}

TEST_F(FileHandleTest, ClosesOnce)
{
    auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_FALSE(handle.close());
    EXPECT_FALSE(isOpen(descriptor));
    EXPECT_EQ(handle.fileDescriptor(), -1);
}

TEST_F(FileHandleTest, ClosingTwiceIsHarmless)
{
    auto handle = FileHandle::openForReading(file);
    const int descriptor = handle.fileDescriptor();
    EXPECT_FALSE(handle.close());
    // Whoever is given the same number next keeps it.
    const auto next = FileHandle::openForReading(file);
    ASSERT_EQ(next.fileDescriptor(), descriptor);
    EXPECT_FALSE(handle.close());
    EXPECT_TRUE(isOpen(descriptor));
}

TEST_F(FileHandleTest, TellsWhatTheHostSaysWhenClosingFails)
{
    auto handle = FileHandle::openForReading(file);
    ::close(handle.fileDescriptor());
    EXPECT_EQ(handle.close(), std::error_code(EBADF, std::generic_category()));
    EXPECT_FALSE(handle.close());
}

TEST_F(FileHandleTest, ClosesWhenItGoes)
{
    int descriptor = -1;
    {
        const auto handle = FileHandle::openForReading(file);
        descriptor = handle.fileDescriptor();
        EXPECT_TRUE(isOpen(descriptor));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST_F(FileHandleTest, HandsTheFileOverWhenItIsMoved)
{
    auto first = FileHandle::openForReading(file);
    const int descriptor = first.fileDescriptor();
    {
        const FileHandle second(std::move(first));
        EXPECT_EQ(second.fileDescriptor(), descriptor);
        EXPECT_TRUE(isOpen(descriptor));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST_F(FileHandleTest, ClosesWhatItHeldWhenItIsGivenAnother)
{
    auto handle = FileHandle::openForReading(file);
    const int old = handle.fileDescriptor();
    handle = FileHandle::openForReading(file);
    EXPECT_FALSE(isOpen(old));
    EXPECT_TRUE(isOpen(handle.fileDescriptor()));
}

} // namespace
} // namespace orlimo

#include "platform/process/JournalStream.h"

#include "platform/files/UniqueFd.h"
#include "tests/support/process/OpenPipe.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

struct stat statusOf(int descriptor)
{
    struct stat status
    {};
    EXPECT_EQ(::fstat(descriptor, &status), 0);
    return status;
}

std::string nameOf(dev_t device, ino_t inode)
{
    return std::to_string(device) + ":" + std::to_string(inode);
}

std::string nameOf(int descriptor)
{
    return nameOf(statusOf(descriptor).st_dev, statusOf(descriptor).st_ino);
}

bool isNamedBy(const std::string& value, int descriptor)
{
    const auto stream = JournalStream::parse(value);
    return stream && stream->matches(descriptor);
}

TEST(JournalStream, IsTheSocketOfItsDeviceAndInode)
{
    std::array<int, 2> sockets{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()), 0);
    const UniqueFd journal(sockets[0]);
    const UniqueFd other(sockets[1]);
    const auto ends = openPipe();
    const UniqueFd reader(ends[0]);
    const UniqueFd writer(ends[1]);

    const std::string name = nameOf(journal.get());
    EXPECT_TRUE(isNamedBy(name, journal.get()));
    EXPECT_FALSE(isNamedBy(name, other.get()));
    EXPECT_FALSE(isNamedBy(name, writer.get()));
    EXPECT_FALSE(isNamedBy(name, -1));
    const auto status = statusOf(journal.get());
    EXPECT_FALSE(isNamedBy(nameOf(status.st_dev + 1, status.st_ino), journal.get()));
}

TEST(JournalStream, IsAbsentWhereTheNameIsMalformed)
{
    for (const char* const value :
         {"",
          ":",
          "8",
          "8:",
          ":12",
          "8:12 ",
          " 8:12",
          "8:12:1",
          "-8:12",
          "0x8:12",
          "8,12",
          "8:99999999999999999999999"})
    {
        EXPECT_EQ(JournalStream::parse(value), std::nullopt) << value;
    }
}

} // namespace
} // namespace orlimo

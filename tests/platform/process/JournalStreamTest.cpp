#include "platform/process/JournalStream.h"

#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

#include <sys/socket.h>
#include <sys/stat.h>

namespace orlimo {
namespace {

bool isNamedBy(const std::string& value, int descriptor)
{
    const auto stream = JournalStream::parse(value);
    return stream && stream->matches(descriptor);
}

TEST(JournalStream, MatchesTheSocketOfItsDeviceAndInode)
{
    std::array<int, 2> sockets{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()), 0);
    const UniqueFd journal(sockets[0]);
    const UniqueFd other(sockets[1]);
    struct stat status
    {};
    ASSERT_EQ(::fstat(journal.get(), &status), 0);
    const std::string inode = ":" + std::to_string(status.st_ino);
    const std::string name = std::to_string(status.st_dev) + inode;
    EXPECT_TRUE(isNamedBy(name, journal.get()));
    EXPECT_FALSE(isNamedBy(name, other.get()));
    EXPECT_FALSE(isNamedBy(name, -1));
    EXPECT_FALSE(isNamedBy(std::to_string(status.st_dev + 1) + inode, journal.get()));
}

TEST(JournalStream, MalformedNameIsAbsent)
{
    for (const std::string_view value :
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

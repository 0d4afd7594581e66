#include "platform/process/JournalStream.h"

#include "platform/files/UniqueFd.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

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

TEST(JournalStream, LogLineIsNotWrittenThere)
{
    // The device and inode of the shell's own output, into which the inner one would write.
    const std::string named = R"(exec 3>&1; JOURNAL_STREAM=$(stat -Lc "$1" /dev/fd/3) "$0" log x)";
    for (const auto& [format, output] : {std::pair{"%d:%i", ""}, std::pair{"%d:1%i", "x\n"}}) {
        ChildProcess shell("sh", {.arguments = {"-c", named, ORLIMO_HOME_PROBE, format}});
        EXPECT_EQ(shell.awaitEnd().status, 0) << shell.errors();
        EXPECT_EQ(shell.output(), output);
    }
}

} // namespace
} // namespace orlimo

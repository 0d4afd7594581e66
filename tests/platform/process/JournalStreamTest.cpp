#include "platform/process/JournalStream.h"

#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace orlimo {
namespace {

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
    for (const auto& [format, output] :
         {std::pair{"%d:%i", ""}, std::pair{"%d:1%i", "x\n"}, std::pair{"1%d:%i", "x\n"}})
    {
        ChildProcess shell("sh", {.arguments = {"-c", named, ORLIMO_HOME_PROBE, format}});
        EXPECT_EQ(shell.awaitEnd().status, 0) << shell.errors();
        EXPECT_EQ(shell.output(), output);
    }
}

} // namespace
} // namespace orlimo

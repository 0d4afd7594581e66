#include "platform/loginitem/linux/RunningProgram.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {
namespace {

TEST(RunningProgram, IsPathOfFileUntilDeletionAndThenFormerPath)
{
    EXPECT_EQ(runningProgram(), std::filesystem::read_symlink("/proc/self/exe"));
    // A name may end like that of a deleted file.
    for (const std::string name : {"program", "program (deleted)"}) {
        const TemporaryFolder folder;
        std::filesystem::copy_file("/bin/cat", folder.path() / name);
        const ChildProcess process(folder.path() / name);
        const auto link = "/proc/" + std::to_string(process.processId()) + "/exe";
        EXPECT_EQ(runningProgram(link), folder.path() / name);
        const auto moved = folder.path() / ("moved " + name);
        std::filesystem::rename(folder.path() / name, moved);
        EXPECT_EQ(runningProgram(link), moved);
        std::filesystem::remove(moved);
        EXPECT_EQ(runningProgram(link), moved);
        writeFile(moved.string() + " (deleted)", "another file");
        EXPECT_EQ(runningProgram(link), moved);
        writeFile(moved, "a newer program");
        EXPECT_EQ(runningProgram(link), moved);
    }
}

TEST(RunningProgram, IsEmptyWithoutLink)
{
    const TemporaryFolder folder;
    EXPECT_EQ(runningProgram(folder.path() / "no link"), "");
    writeFile(folder.path() / "file", "");
    EXPECT_EQ(runningProgram(folder.path() / "file"), "");
}

} // namespace
} // namespace orlimo

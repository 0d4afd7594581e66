#include "platform/loginitem/linux/RunningProgram.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace orlimo {
namespace {

/// With a program that runs until the end of the test.
class RunningProgram : public testing::Test
{
protected:
    void start(const std::string& name)
    {
        std::filesystem::copy_file("/bin/cat", folder / name);
        process.emplace(folder / name);
    }

    [[nodiscard]] std::filesystem::path found() const
    {
        return runningProgram("/proc/" + std::to_string(process->processId()) + "/exe");
    }

    TemporaryFolder parent;
    std::filesystem::path folder = std::filesystem::canonical(parent.path());
    std::optional<ChildProcess> process;
};

TEST_F(RunningProgram, IsPathOfFileUntilDeletionAndThenFormerPath)
{
    EXPECT_EQ(runningProgram(), std::filesystem::read_symlink("/proc/self/exe"));
    start("program");
    EXPECT_EQ(found(), folder / "program");
    std::filesystem::rename(folder / "program", folder / "moved");
    EXPECT_EQ(found(), folder / "moved");
    std::filesystem::remove(folder / "moved");
    EXPECT_EQ(found(), folder / "moved");
    writeFile(folder / "moved (deleted)", "another file");
    EXPECT_EQ(found(), folder / "moved");
    writeFile(folder / "moved", "a newer program");
    EXPECT_EQ(found(), folder / "moved");
}

TEST_F(RunningProgram, NameMayEndLikeThatOfDeletedFile)
{
    start("program (deleted)");
    EXPECT_EQ(found(), folder / "program (deleted)");
    std::filesystem::remove(folder / "program (deleted)");
    EXPECT_EQ(found(), folder / "program (deleted)");
}

TEST_F(RunningProgram, IsEmptyWithoutLink)
{
    EXPECT_EQ(runningProgram(folder / "no link"), "");
    writeFile(folder / "file", "");
    EXPECT_EQ(runningProgram(folder / "file"), "");
}

} // namespace
} // namespace orlimo

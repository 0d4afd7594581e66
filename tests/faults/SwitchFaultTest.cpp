#include "tests/desktop/sessions/DesktopProgram.h"
#include "tests/support/BuiltRecorder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/PreloadEnvironment.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace orlimo {
namespace {

/// The built program on a desktop, with a disk that fills up after its start.
class SwitchOnFullDisk : public testing::Test
{
protected:
    [[nodiscard]] ProgramSession::Settings settings() const
    {
        auto environment = preloadEnvironment(
            {ORLIMO_FAULT_INJECTOR, "libnss_wrapper.so", ORLIMO_SYSLOG_RECORDER});
        environment["ORLIMO_FAULTS"] = "write */Orlimo.conf.* ENOSPC always";
        environment["ORLIMO_FAULTS_SWITCH"] = diskIsFull.string();
        return {.environment = environment};
    }

    void deliver(const std::string& words)
    {
        ProgramSession::waitForThrottle();
        program.session().deliver("text " + words);
    }

    TemporaryFolder folder;
    std::filesystem::path diskIsFull = folder.path() / "disk is full";
    DesktopProgram program{settings()};
};

TEST_F(SwitchOnFullDisk, StopsCopyingForTheRestOfTheRunAndIsStoredWithTheNextWrite)
{
    program.start();
    ASSERT_TRUE(program.awaitPreferences(
        {{"capturingEnabled", "true"},
         {"fourDigitInclude", "true"},
         {"loginItemEnabled", "true"}}));
    deliver("Code 482913");
    ASSERT_TRUE(program.awaitPaste("482913"));

    writeFile(diskIsFull, "");
    program.open();
    program.click("check box", "Auto Copy to Clipboard");
    const std::string line =
        "Orlimo cannot store preferences in " + program.session().preferences().string() + "\n";
    ASSERT_TRUE(awaitWithPolling([&] { return program.process().errors() == line; }));
    program.close();
    const long before = program.count(DesktopProgram::readLine);
    deliver("Code 593024");
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_EQ(program.count(DesktopProgram::readLine), before);
    EXPECT_TRUE(program.awaitPaste("482913"));

    std::filesystem::remove(diskIsFull);
    program.open();
    EXPECT_FALSE(
        program.element("check box", "Auto Copy to Clipboard").is(Accessible::State::checked));
    program.click("check box", "Include 4 digit code");
    EXPECT_TRUE(program.awaitPreferences(
        {{"capturingEnabled", "false"},
         {"fourDigitInclude", "false"},
         {"loginItemEnabled", "true"}}));
    EXPECT_EQ(program.process().errors(), line);
}

} // namespace
} // namespace orlimo

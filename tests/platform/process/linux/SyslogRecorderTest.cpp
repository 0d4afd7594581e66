// The real syslog's place is taken in a program of its own, as the tests of whole programs do it.
#include "tests/support/BuiltRecorder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {
namespace {

/// Where a program's entries arrive when the recorder is preloaded into it.
class SyslogRecorder : public testing::Test
{
protected:
    void run(const std::string& command) const
    {
        ChildProcess program(
            ORLIMO_PLATFORM_PROBE,
            {.arguments = {command},
             .environment = {
                 {"LD_PRELOAD", ORLIMO_SYSLOG_RECORDER},
                 {"ORLIMO_RECORDED_SYSLOG", record.string()},
                 // The sanitizer's library wants to be the first one.
                 {"ASAN_OPTIONS", "verify_asan_link_order=0"}}});
        EXPECT_EQ(program.awaitEnd().status, 0);
        EXPECT_EQ(program.errors(), "");
    }

    TemporaryFolder folder;
    std::filesystem::path record = folder.path() / "record";
};

TEST_F(SyslogRecorder, ReceivesOneLineForEachError)
{
    run("log-errors");
    EXPECT_THAT(
        linesOf(contentOf(record)),
        testing::ElementsAre(
            "11 [org.example.part:main] Failed to begin: 100 % x",
            "11 [org.example.part:main] again"));
}

TEST_F(SyslogRecorder, ReceivesNothingWhereErrorsAreMasked)
{
    run("log-errors-masked");
    EXPECT_FALSE(std::filesystem::exists(record));
}

} // namespace
} // namespace orlimo

#include "tests/scripts/StandInPrograms.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orlimo {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;

/// The script that starts what was built, told that this is a Mac, with the program of this system
/// in a bundle.
class RunOnMacTest : public testing::Test
{
protected:
    RunOnMacTest()
    {
        programs.add("uname", "echo Darwin");
        for (const char* name : {"brew", "codesign", "defaults", "plutil"}) {
            programs.add(name);
        }
        const auto executable = built / "Orlimo.app/Contents/MacOS/Orlimo";
        std::filesystem::create_directories(executable.parent_path());
        std::filesystem::copy_file(ORLIMO_PROGRAM, executable);
        std::filesystem::create_symlink(ORLIMO_SAMPLE_STORE, built / "orlimo-sample-store");
    }

    StandInPrograms programs;
    TemporaryFolder scratch;
    std::filesystem::path built = programs.path() / "build";
};

TEST_F(RunOnMacTest, TheSampleIsABundleWithAnIdentityOfItsOwn)
{
    const auto result = programs.run(
        "run",
        {"--sample", "--built", built},
        {{"QT_QPA_PLATFORM", "offscreen"}, {"TMPDIR", scratch.path()}});
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(result.output, HasSubstr("\ncaptured "));
    EXPECT_THAT(
        programs.calls(),
        Contains(MatchesRegex("plutil -replace CFBundleIdentifier -string "
                              "app.orlimo.Orlimo.sample .*/Orlimo.app/Contents/Info.plist")));
    EXPECT_THAT(
        programs.calls(), Contains(MatchesRegex("codesign --force --sign - .*/Orlimo.app")));
    EXPECT_EQ(programs.calls().back(), "defaults delete app.orlimo.Orlimo.sample");
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

} // namespace
} // namespace orlimo

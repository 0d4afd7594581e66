#include "tests/scripts/FakePrograms.h"
#include "tests/support/BuiltPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace orlimo {
namespace {

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

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
        std::filesystem::create_directories(executable.parent_path());
        std::filesystem::create_symlink(ORLIMO_SAMPLE_STORE, built / "orlimo-sample-store");
        std::filesystem::create_directories(home / "Library/Messages");
    }

    /// Puts a program into the bundle that does what `script` says, and has the system start it: in
    /// a process group of its own, which the terminal's keys do not reach.
    void openProgram(const std::string& script)
    {
        writeFile(executable, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(executable, std::filesystem::perms::owner_all);
        programs.add("open", R"(exec /bin/bash -c '
            while [ $# -gt 1 ]; do
                case "$1" in
                --stdout) output=$2 && shift ;;
                --stderr) errors=$2 && shift ;;
                --env) export "$2" && shift ;;
                esac
                shift
            done
            exec 2>/dev/null
            set -m
            "$1/Contents/MacOS/Orlimo" >"$output" 2>"$errors" &
            echo $! >"$ORLIMO_PROCESS"
            wait $! || true' open "$@")");
        // The script itself is among those that have the pipe open.
        programs.add("lsof", R"(echo $PPID; cat "$ORLIMO_PROCESS")");
    }

    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const
    {
        return {
            {"HOME", home},
            {"ORLIMO_PROCESS", programs.path() / "process"},
            {"ORLIMO_SAMPLE_MESSAGES", "3"},
            {"QT_QPA_PLATFORM", "offscreen"},
            {"TMPDIR", scratch.path()}};
    }

    [[nodiscard]] CommandResult run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--built", built});
        return programs.run("run", arguments, environment());
    }

    FakePrograms programs;
    TemporaryFolder scratch;
    std::filesystem::path home = programs.path() / "home";
    std::filesystem::path built = programs.path() / "build";
    std::filesystem::path executable = built / "Orlimo.app/Contents/MacOS/Orlimo";
};

TEST_F(RunOnMacTest, SampleIsABundleWithAnIdentityOfItsOwn)
{
    std::filesystem::copy_file(ORLIMO_PROGRAM, executable);
    const auto result = run({"--sample"});
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(result.output, HasSubstr("\ncaptured "));
    EXPECT_THAT(
        programs.calls(),
        Contains(MatchesRegex("plutil -replace CFBundleIdentifier -string "
                              "app.orlimo.Orlimo.sample .*/Orlimo.app/Contents/Info.plist")));
    EXPECT_EQ(programs.calls().back(), "defaults delete app.orlimo.Orlimo.sample");
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

TEST_F(RunOnMacTest, SystemStartsTheProgramOnTheStoreAndMissingAccessIsNamed)
{
    writeFile(home / "Library/Messages/chat.db", "");
    openProgram("echo watching $QT_QPA_PLATFORM; echo trouble >&2");
    const auto result = run({});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("\nwatching offscreen\n"));
    EXPECT_EQ(result.errors, "trouble\n");
    EXPECT_THAT(
        programs.calls(),
        Contains(MatchesRegex("open -n -W --stdout .* --stderr .* --env "
                              "QT_QPA_PLATFORM=offscreen .*/Orlimo.app")));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";

    // Without Full Disk Access no program may list the store's folder, not even the superuser's.
    programs.add("ls", "exit 1");
    const auto denied = run({});
    EXPECT_EQ(denied.status, 0);
    EXPECT_THAT(denied.errors, HasSubstr("Privacy & Security > Full Disk Access"));
    EXPECT_THAT(denied.output, HasSubstr("\nwatching offscreen\n"));
    EXPECT_THAT(denied.output, Not(HasSubstr("[sample]")));
}

TEST_F(RunOnMacTest, InterruptEndsTheProgramThatTheSystemStarted)
{
    writeFile(home / "Library/Messages/chat.db", "");
    openProgram("trap 'echo ended; exit' TERM; echo watching; while :; do sleep 0.1; done");
    auto settings = programs.settings("run", {"--built", built}, environment());
    settings.beforeStart = [] {
        ::setpgid(0, 0);
        // Ignored where the tests run in the background, and a shell keeps it so.
        ::signal(SIGINT, SIG_DFL); // NOLINT(cert-err33-c): cannot fail
    };
    ChildProcess script("/bin/bash", settings);
    ASSERT_TRUE(script.awaitLine("watching")) << script.errors();
    ASSERT_EQ(::kill(-script.processId(), SIGINT), 0);
    EXPECT_EQ(script.awaitEnd().status, 130);
    EXPECT_THAT(script.output(), EndsWith("\nended\n"));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

} // namespace
} // namespace orlimo

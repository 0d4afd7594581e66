#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/packaging/BuiltPackage.h"
#include "tests/packaging/CommandResult.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string_view>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Packages have to be fetched and unpacked.
constexpr std::chrono::minutes installationTimeout{15};

constexpr int impossible = 77;

const std::filesystem::path scripts = ORLIMO_PACKAGING_TESTS;

/// The environment of a user who has just logged in, with nothing of the tests in it.
std::map<std::string, std::optional<std::string>> environment()
{
    std::map<std::string, std::optional<std::string>> variables{
        {"DEBIAN_FRONTEND", "noninteractive"},
        {"HOME", "/home/user"},
        {"LC_ALL", "C.UTF-8"},
        {"PATH", "/usr/sbin:/usr/bin:/sbin:/bin"},
    };
    for (const char* foreign :
         {"LD_PRELOAD",
          "QT_QPA_PLATFORM",
          "TMPDIR",
          "XDG_CACHE_HOME",
          "XDG_CONFIG_HOME",
          "XDG_DATA_HOME",
          "XDG_RUNTIME_DIR",
          "XDG_STATE_HOME"})
    {
        variables.emplace(foreign, std::nullopt);
    }
    return variables;
}

/// Whether package managers keep their own state in `path`, or it is nobody's in the long run.
bool isState(const std::string& path)
{
    constexpr std::array folders{
        "/home/",
        "/package/",
        "/tmp/",
        "/var/cache/apt/",
        "/var/lib/apt/",
        "/var/lib/dpkg/",
        "/var/log/"};
    return std::ranges::any_of(
        folders, [&path](std::string_view folder) { return path.starts_with(folder); });
}

/// The package's life in a Debian with nothing in it but what every Debian has, neither the program
/// nor Qt. It is made from this system's archive, which takes a minute.
class InBareSystem : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto made = CommandResult::of(
            scripts / "make-bare-system", {.arguments = {tree.string()}}, installationTimeout);
        if (made.status == impossible) {
            GTEST_SKIP() << made.output;
        }
        ASSERT_EQ(made.status, 0) << made.text();
        expectSuccess({"apt-get", "--quiet", "update"});
        package.emplace();
        ASSERT_FALSE(HasFailure());
    }

    [[nodiscard]] CommandResult run(const std::vector<std::string>& command) const
    {
        std::vector<std::string> arguments{tree.string()};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return CommandResult::of(
            scripts / "in-bare-system",
            {.arguments = arguments, .environment = environment()},
            installationTimeout);
    }

    void expectSuccess(const std::vector<std::string>& command) const
    {
        const auto result = run(command);
        EXPECT_EQ(result.status, 0) << result.text();
    }

    /// Installs what `wanted` names, and no recommendations.
    void install(const std::string& action, const std::string& wanted) const
    {
        expectSuccess({"apt-get", action, "--yes", "--quiet", "--no-install-recommends", wanted});
    }

    /// Every file but those of apt and dpkg themselves, the user's and passing ones.
    [[nodiscard]] std::set<std::string> files() const
    {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(tree)) {
            const std::string path = entry.path().string().substr(tree.string().size());
            if (!isState(path)) {
                found.insert(path);
            }
        }
        return found;
    }

    /// The names of the installed packages.
    [[nodiscard]] std::set<std::string> packages() const
    {
        const auto shown =
            run({"dpkg-query", "--show", "--showformat=${db:Status-Abbrev}${Package}\n"});
        EXPECT_EQ(shown.status, 0) << shown.text();
        std::set<std::string> names;
        for (const std::string& line : linesOf(shown.output)) {
            if (line.starts_with("ii ")) {
                names.insert(line.substr(3));
            }
        }
        return names;
    }

    void expectCodeCopied() const
    {
        const XServer server;
        const auto store = tree / "home/user/Library/Messages/chat.db";
        std::filesystem::create_directories(store.parent_path());
        ChildProcess writer(ORLIMO_SAMPLE_STORE, {.arguments = {"serve", store.string()}});
        ASSERT_TRUE(writer.awaitLine("ready")) << writer.errors();

        auto variables = environment();
        variables["DISPLAY"] = server.display();
        ChildProcess program(
            scripts / "in-bare-system",
            {.arguments = {tree.string(), "orlimo"},
             .environment = variables,
             .beforeStart = dieWithParent});
        ASSERT_TRUE(program.awaitLine("file access allowed")) << program.errors();
        ProgramSession::waitForThrottle();
        EXPECT_THAT(writer.ask("text Your code is 482913"), StartsWith("committed"));
        EXPECT_TRUE(program.awaitLine("file changed!! at message: code? 482913"))
            << program.output() << program.errors();
        EXPECT_TRUE(await([&] { return server.paste("clipboard") == "482913"; }));
        program.terminate();
    }

    const TemporaryFolder folder;
    const std::filesystem::path tree = folder.path() / "tree";
    std::optional<BuiltPackage> package;
};

TEST_F(InBareSystem, PackageNeedsNothingMoreAndLeavesNothing)
{
    install("satisfy", package->field("Depends"));
    const auto filesBefore = files();
    auto expected = packages();
    expected.insert("orlimo");
    std::filesystem::copy_file(package->file(), tree / "package/orlimo.deb");
    install("install", "/package/orlimo.deb");
    EXPECT_EQ(packages(), expected);
    ASSERT_FALSE(HasFailure());
    expectCodeCopied();
    // The program knows where it was installed.
    const std::string entry =
        contentOf(tree / "home/user/.config/autostart/app.orlimo.Orlimo.desktop");
    EXPECT_THAT(entry, HasSubstr("\nExec=\"/usr/bin/orlimo\""));
    // What is missing without a compositor is a display and not Qt's plugin for it.
    const auto start = run({"env", "QT_QPA_PLATFORM=wayland", "orlimo"});
    EXPECT_NE(start.status, 0);
    EXPECT_THAT(start.errors, HasSubstr("wl_display"));
    EXPECT_THAT(start.errors, Not(HasSubstr("Could not find the Qt platform plugin")));
    expectSuccess({"apt-get", "purge", "--yes", "--quiet", "orlimo"});
    EXPECT_EQ(files(), filesBefore);
}

} // namespace
} // namespace orlimo

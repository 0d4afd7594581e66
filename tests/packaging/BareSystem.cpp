#include "tests/packaging/BareSystem.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace orlimo {

namespace {

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

} // namespace

BareSystem::BareSystem()
{
    const auto made = CommandResult::of(
        scripts / "make-bare-system", {.arguments = {tree().string()}}, installationTimeout);
    if (made.status == impossible) {
        setupFailure = made.output;
        return;
    }
    EXPECT_EQ(made.status, 0) << made.text();
    const auto update = run({"apt-get", "--quiet", "update"});
    EXPECT_EQ(update.status, 0) << update.text();
}

CommandResult BareSystem::run(const std::vector<std::string>& command) const
{
    std::vector<std::string> arguments{tree().string()};
    arguments.insert(arguments.end(), command.begin(), command.end());
    return CommandResult::of(
        scripts / "in-bare-system",
        {.arguments = arguments, .environment = environment()},
        installationTimeout);
}

std::unique_ptr<ChildProcess>
BareSystem::start(const std::string& program, const std::string& display) const
{
    auto variables = environment();
    variables["DISPLAY"] = display;
    return std::make_unique<ChildProcess>(
        scripts / "in-bare-system",
        ChildSettings{
            .arguments = {tree().string(), program},
            .environment = variables,
            .beforeStart = dieWithParent,
        });
}

std::set<std::string> BareSystem::files() const
{
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tree())) {
        const std::string path = entry.path().string().substr(tree().string().size());
        if (!isState(path)) {
            found.insert(path);
        }
    }
    return found;
}

std::set<std::string> BareSystem::packages() const
{
    const auto asked =
        run({"dpkg-query", "--show", "--showformat=${db:Status-Abbrev}${Package}\n"});
    EXPECT_EQ(asked.status, 0) << asked.text();
    std::set<std::string> names;
    for (const std::string& line : linesOf(asked.output)) {
        if (line.starts_with("ii ")) {
            names.insert(line.substr(3));
        }
    }
    return names;
}

} // namespace orlimo

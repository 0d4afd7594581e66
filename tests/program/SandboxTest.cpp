#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"

#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

/// What makes a Flatpak of the system for one program: everything as it is, and the file that only
/// a Flatpak has. `folder` is the test's own.
std::vector<std::string> sandboxLauncher(const std::filesystem::path& folder)
{
    const auto mark = folder / "flatpak-info";
    writeFile(mark, "[Application]\nname=app.orlimo.Orlimo\n");
    std::vector<std::string> command{"/usr/bin/bwrap", "--die-with-parent"};
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
        const std::string path = entry.path().string();
        if (entry.is_symlink()) {
            const std::string target = std::filesystem::read_symlink(entry.path()).string();
            command.insert(command.end(), {"--symlink", target, path});
        } else {
            command.insert(command.end(), {"--dev-bind", path, path});
        }
    }
    command.insert(command.end(), {"--ro-bind", mark.string(), "/.flatpak-info", "--"});
    return command;
}

TEST(SandboxedProgram, RequestsAStartAtLoginFromThePortalAndLogsALateRefusal)
{
    const TemporaryFolder folder;
    const auto launcher = sandboxLauncher(folder.path());
    std::vector<std::string> arguments(launcher.begin() + 1, launcher.end());
    arguments.emplace_back("/usr/bin/true");
    if (ChildProcess(launcher.front(), {.arguments = arguments}).awaitEnd().status != 0) {
        GTEST_SKIP() << "this process may not make a sandbox";
    }
    const MessageBus bus(folder.path());
    ScriptedPortal portal(bus.address());
    ProgramSession session(
        {.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}, .launcher = launcher});
    session.start();
    ASSERT_TRUE(await([&] { return !portal.requests().empty(); }));
    const auto& options = portal.requests().front().options;
    EXPECT_TRUE(options.value(QStringLiteral("autostart")).toBool());
    EXPECT_EQ(
        options.value(QStringLiteral("commandline")).toStringList(),
        (QStringList{QStringLiteral("orlimo"), QStringLiteral("--launched-at-login")}));
    EXPECT_FALSE(std::filesystem::exists(session.autostartEntry()));
    EXPECT_THAT(session.systemLog(), IsEmpty());

    portal.respond(portal.requests().front(), 1, {});
    EXPECT_TRUE(awaitWithPolling([&] { return !session.systemLog().empty(); }));
    EXPECT_THAT(
        session.systemLog(),
        ElementsAre(EndsWith("[app.orlimo.Orlimo.LaunchAtLogin:main] Failed to enable launch at "
                             "login: org.freedesktop.portal.Background: Operation canceled")));
    session.awaitOpenThrottle();
    session.deliver("text Your code is 482913.");
    EXPECT_EQ(session.readReaction(), ProgramSession::reactionTo("Your code is 482913.", "482913"));
    EXPECT_THAT(session.systemLog(), testing::SizeIs(1));
}

} // namespace
} // namespace orlimo

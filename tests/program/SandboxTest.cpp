#include "tests/program/Sandbox.h"

#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/program/ProgramSession.h"
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

/// The program inside a Flatpak's walls, on a bus with a portal that does what the test says.
class SandboxedProgram : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!canSandbox(launcher)) {
            GTEST_SKIP() << "this process may not make a sandbox";
        }
    }

    [[nodiscard]] ProgramSession::Settings settings() const
    {
        return {
            .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}},
            .launcher = launcher,
        };
    }

    static void expectToWork(ProgramSession& session)
    {
        session.awaitOpenThrottle();
        session.deliver("text Your code is 482913.");
        EXPECT_EQ(
            session.readReaction(), ProgramSession::reactionTo("Your code is 482913.", "482913"));
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
    std::vector<std::string> launcher = sandboxLauncher(folder.path());
};

TEST_F(SandboxedProgram, AsksThePortalToBeStartedAtLogin)
{
    ScriptedPortal portal(bus.address());
    ProgramSession session(settings());
    session.start();
    ASSERT_TRUE(await([&] { return !portal.requests().empty(); }));
    const auto& options = portal.requests().front().options;
    EXPECT_TRUE(options.value(QStringLiteral("autostart")).toBool());
    EXPECT_EQ(
        options.value(QStringLiteral("commandline")).toStringList(),
        (QStringList{QStringLiteral("orlimo"), QStringLiteral("--launched-at-login")}));
    EXPECT_FALSE(std::filesystem::exists(session.autostartEntry()));
    EXPECT_THAT(session.systemLog(), IsEmpty());
}

TEST_F(SandboxedProgram, LogsARefusalThatComesLaterAndGoesOn)
{
    ScriptedPortal portal(bus.address());
    ProgramSession session(settings());
    session.start();
    ASSERT_TRUE(await([&] { return !portal.requests().empty(); }));
    portal.respond(portal.requests().front(), 1, {});
    EXPECT_TRUE(awaitWithPolling([&] { return !session.systemLog().empty(); }));
    EXPECT_THAT(
        session.systemLog(),
        ElementsAre(EndsWith("[app.orlimo.Orlimo.LaunchAtLogin:main] Failed to enable launch at "
                             "login: org.freedesktop.portal.Background: Operation canceled")));
    expectToWork(session);
    EXPECT_THAT(session.systemLog(), testing::SizeIs(1));
}

TEST_F(SandboxedProgram, StartsWhereNobodyAnswers)
{
    ScriptedPortal portal(bus.address());
    portal.onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    ProgramSession session(settings());
    session.start();
    expectToWork(session);
}

TEST_F(SandboxedProgram, LogsThatThereIsNoPortal)
{
    ProgramSession session(settings());
    session.start();
    EXPECT_TRUE(awaitWithPolling([&] { return !session.systemLog().empty(); }));
    EXPECT_THAT(
        session.systemLog(), ElementsAre(testing::HasSubstr("Failed to enable launch at login: ")));
}

TEST_F(SandboxedProgram, LogsThatThereIsNoBus)
{
    auto withoutBus = settings();
    withoutBus.environment["DBUS_SESSION_BUS_ADDRESS"] =
        "unix:path=" + (folder.path() / "none").string();
    ProgramSession session(withoutBus);
    session.start();
    EXPECT_TRUE(awaitWithPolling([&] { return !session.systemLog().empty(); }));
    EXPECT_THAT(
        session.systemLog(), ElementsAre(testing::HasSubstr("Failed to enable launch at login: ")));
}

} // namespace
} // namespace orlimo

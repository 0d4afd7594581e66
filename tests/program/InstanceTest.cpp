#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/program/ApplicationCaller.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/MessageBus.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <QDBusPendingCall>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;

/// How a program has ended, and what it said.
struct ExitResult
{
    std::optional<int> status;
    std::string output;
    std::string errors;
};

/// The line that the program prints each time its window opens.
constexpr const char* appearLine = "Opened PopupWindow : APPEAR";

constexpr const char* shownLine = "orlimo: already running in this session; its window opens\n";

constexpr const char* silentLine =
    "orlimo: already running in this session, but it does not answer\n";

/// Far more than the two seconds that a start may wait for another program, and far less than what
/// the bus lets it wait.
constexpr std::chrono::seconds tooLong{16};

ExitResult endOf(ChildProcess& process, std::chrono::seconds limit = defaultTimeout)
{
    const auto end = process.awaitEnd(limit);
    return {end.status, process.output(), process.errors()};
}

/// Starts of the program in one session: a bus, but no screen.
class Instance : public testing::Test
{
protected:
    [[nodiscard]] ProgramSession::Settings
    onBus(std::vector<std::string> arguments = {}, const std::string& platform = "offscreen") const
    {
        return {
            .arguments = std::move(arguments),
            .environment =
                {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}, {"QT_QPA_PLATFORM", platform}},
            .beforeStart = dieWithParent};
    }

    /// Starts the program anew in a home of its own and waits until it ends.
    [[nodiscard]] ExitResult startAgain(std::vector<std::string> arguments = {}) const
    {
        // No screen either: a second instance works without a display.
        ProgramSession session(onBus(std::move(arguments), "none"));
        session.startProgram();
        return endOf(session.program());
    }

    /// Has the desktops' own tool do something on the bus.
    [[nodiscard]] ExitResult useTool(const std::vector<std::string>& arguments) const
    {
        ChildProcess tool(
            "/usr/bin/gdbus",
            {.arguments = arguments, .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}});
        return endOf(tool, toolTimeout);
    }

    /// Calls a method of the running program.
    [[nodiscard]] ExitResult
    call(const std::string& method, const std::vector<std::string>& rest) const
    {
        std::vector<std::string> arguments{
            "call",
            "--session",
            "--dest=app.orlimo.Orlimo",
            "--object-path=/app/orlimo/Orlimo",
            "--method=org.freedesktop.Application." + method};
        arguments.insert(arguments.end(), rest.begin(), rest.end());
        return useTool(arguments);
    }

    static long timesOpened(ProgramSession& session)
    {
        const auto lines = linesOf(session.program().output());
        return std::ranges::count(lines, appearLine);
    }

    [[nodiscard]] static bool awaitOpened(ProgramSession& session)
    {
        return await([&session] { return timesOpened(session) == 1; });
    }

    /// Whether further starts in this session show the program of `session`.
    [[nodiscard]] bool isSoleInstance(ProgramSession& session) const
    {
        const ExitResult again = startAgain();
        return again.status == 0 && again.errors == shownLine && awaitOpened(session);
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
};

TEST_F(Instance, SecondStartShowsRunningInstance)
{
    ProgramSession first(onBus());
    first.start();
    const ExitResult second = startAgain();
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors, shownLine);
    EXPECT_TRUE(awaitOpened(first));
    EXPECT_TRUE(first.program().isRunning());
}

TEST_F(Instance, SecondLoginStartLeavesRunningInstanceAlone)
{
    ProgramSession first(onBus({"--launched-at-login"}));
    first.start();
    const ExitResult second = startAgain({"--launched-at-login"});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors, "");

    // Anything that the login start had requested would have happened before this is refused.
    EXPECT_NE(call("ActivateAction", {"dance", "[]", "{}"}).status, 0);
    EXPECT_EQ(timesOpened(first), 0);
    EXPECT_TRUE(isSoleInstance(first));
}

/// How many starts come at once.
class SimultaneousStarts : public Instance, public testing::WithParamInterface<std::size_t>
{};

TEST_P(SimultaneousStarts, LeaveOneInstanceRunning)
{
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (std::size_t count = 0; count < GetParam(); ++count) {
        programs.push_back(std::make_unique<ChildProcess>(
            ORLIMO_PROGRAM,
            ChildSettings{
                .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}},
                .beforeStart = dieWithParent}));
    }
    const auto isRunning = [](const auto& program) { return program->isRunning(); };
    EXPECT_TRUE(awaitWithPolling(
        [&] { return std::ranges::count_if(programs, isRunning) <= 1; }, 2 * defaultTimeout));

    const auto one = std::ranges::find_if(programs, isRunning);
    ASSERT_NE(one, programs.end());
    for (const auto& program : programs) {
        if (program != *one) {
            const ExitResult other = endOf(*program);
            EXPECT_EQ(other.status, 0);
            EXPECT_EQ(other.output, "");
            EXPECT_EQ(other.errors, shownLine);
        }
    }
    EXPECT_TRUE(await([&] { return (*one)->output().find(appearLine) != std::string::npos; }));
    EXPECT_EQ(startAgain().errors, shownLine);
    EXPECT_TRUE((*one)->isRunning());
}

INSTANTIATE_TEST_SUITE_P(Few, SimultaneousStarts, testing::Values(8U));
#if defined(ORLIMO_SANITIZED)
// A start takes many times as long, and no other one is to miss its limit for that.
INSTANTIATE_TEST_SUITE_P(SlowMany, SimultaneousStarts, testing::Values(25U));
#else
INSTANTIATE_TEST_SUITE_P(SlowMany, SimultaneousStarts, testing::Values(100U));
#endif

TEST_F(Instance, FrozenInstanceIsNotWaitedForAndOpensOnceItGoesOn)
{
    ProgramSession first(onBus());
    first.start();
    first.program().signal(SIGSTOP);
    const auto before = std::chrono::steady_clock::now();
    const ExitResult second = startAgain();
    EXPECT_LT(std::chrono::steady_clock::now() - before, tooLong);
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors, silentLine);
    EXPECT_EQ(startAgain({"--launched-at-login"}).status, 0);
    first.program().signal(SIGCONT);
    EXPECT_TRUE(awaitOpened(first));
}

TEST_F(Instance, StartingInstanceOpensOnceItHasStarted)
{
    const XServer server;
    auto settings = onBus({}, "xcb");
    settings.environment["DISPLAY"] = server.display();
    server.freeze();
    ProgramSession first(std::move(settings));
    first.startWriter();
    first.startProgram();
    ASSERT_EQ(useTool({"wait", "--session", "app.orlimo.Orlimo"}).status, 0);
    const ExitResult second = startAgain();
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.errors, shownLine);
    EXPECT_EQ(first.program().output(), "");
    server.thaw();
    EXPECT_TRUE(awaitOpened(first));
}

TEST_F(Instance, EndedInstanceIsReplaced)
{
    ProgramSession first(onBus());
    first.start();
    EXPECT_EQ(call("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(first.program().awaitEnd().status, 0);

    ProgramSession second(onBus());
    second.start();
    second.program().signal(SIGKILL);
    (void)second.program().awaitEnd();

    ProgramSession third(onBus());
    third.start();
    EXPECT_TRUE(isSoleInstance(third));
}

TEST_F(Instance, SideBySideInstanceIsNeverTheSoleOne)
{
    ProgramSession before(onBus({"--side-by-side", "--launched-at-login"}));
    before.start();
    ProgramSession first(onBus());
    first.start();
    ProgramSession after(onBus({"--side-by-side", "--launched-at-login"}));
    after.start();
    EXPECT_TRUE(isSoleInstance(first));
    EXPECT_EQ(timesOpened(before), 0);
    EXPECT_EQ(timesOpened(after), 0);
}

TEST_F(Instance, InstancesWithoutABusRunBesideEachOther)
{
    for (const std::optional<std::string>& address : {std::optional<std::string>(), {"no address"}})
    {
        auto settings = onBus();
        settings.environment["DBUS_SESSION_BUS_ADDRESS"] = address;
        ProgramSession first(settings);
        first.start();
        ProgramSession second(settings);
        second.start();
        EXPECT_TRUE(first.program().isRunning()) << address.value_or("no variable");
        EXPECT_THAT(second.program().errors(), Not(HasSubstr("orlimo:")));
    }
}

TEST_F(Instance, UnresponsiveBusIsDoneWithout)
{
    ProgramSession session(onBus());
    session.startWriter();
    bus.freeze();
    const auto before = std::chrono::steady_clock::now();
    session.startProgram();
    EXPECT_TRUE(session.program().awaitLine("file access allowed", tooLong));
    EXPECT_LT(std::chrono::steady_clock::now() - before, tooLong);
    ProgramSession::waitForThrottle();
    session.deliver("text Your code is 482913.");
    EXPECT_EQ(
        session.readReaction().back(), std::string(ProgramSession::reactionPrefix) + "482913");
    EXPECT_THAT(
        session.program().errors(),
        HasSubstr("orlimo: the session bus does not answer; running without it\n"));
    bus.thaw();
}

TEST_F(Instance, LoginStartWaitsForASlowBus)
{
    ProgramSession session(onBus({"--launched-at-login"}));
    session.startWriter();
    bus.freeze();
    session.startProgram();
    // Longer than a start that somebody waits for.
    runEventLoop(std::chrono::seconds(3));
    EXPECT_EQ(session.program().output(), "");
    bus.thaw();
    EXPECT_TRUE(session.program().awaitLine("file access allowed"));
    EXPECT_TRUE(isSoleInstance(session));
}

/// A bus that was requested to start the program, and holds the call until it has.
class DBusActivatedInstance : public Instance
{
protected:
    [[nodiscard]] static bool awaitReply(const QDBusPendingCall& call)
    {
        return await([&call] { return call.isFinished(); }) && !call.isError();
    }

    /// Installs the service and calls `method`, for which the bus starts it.
    [[nodiscard]] QDBusPendingCall call(const std::string& method, const QVariantList& arguments)
    {
        // What the bus starts only notes that: the program itself ends with the test that started
        // it.
        const auto programs = folder.path() / "bin";
        const auto started = folder.path() / "started";
        writeFile(
            programs / "orlimo", "#!/bin/sh\necho \"$# arguments\" >'" + started.string() + "'\n");
        std::filesystem::permissions(programs / "orlimo", std::filesystem::perms::owner_all);
        auto service = QString::fromStdString(contentOf(ORLIMO_SERVICE_TEMPLATE));
        service.replace(
            QStringLiteral("@CMAKE_INSTALL_FULL_BINDIR@"),
            QString::fromStdString(programs.string()));
        service.replace(QStringLiteral("@ORLIMO_IDENTIFIER@"), QStringLiteral("app.orlimo.Orlimo"));
        writeFile(bus.servicesFolder() / "app.orlimo.Orlimo.service", service.toStdString());

        // Not by the tool, which begins with another call.
        const auto reply = caller.call(method, arguments);
        EXPECT_TRUE(await([&started] {
            return std::filesystem::exists(started) && contentOf(started) == "0 arguments\n";
        }));
        return reply;
    }

private:
    ApplicationCaller caller{bus.address()};
};

TEST_F(DBusActivatedInstance, IsShown)
{
    const auto reply = call("Activate", {QVariantMap()});
    ProgramSession first(onBus());
    first.start();
    EXPECT_TRUE(awaitOpened(first));
    EXPECT_TRUE(awaitReply(reply));
    EXPECT_THAT(first.program().errors(), Not(HasSubstr("orlimo:")));
}

/// The arguments with which each method of the interface shows the program.
class InstanceCall : public Instance, public testing::WithParamInterface<std::vector<std::string>>
{};

TEST_P(InstanceCall, ShowsTheProgram)
{
    ProgramSession first(onBus());
    first.start();
    const auto& arguments = GetParam();
    const ExitResult made = call(arguments.front(), {arguments.begin() + 1, arguments.end()});
    EXPECT_EQ(made.status, 0) << made.errors;
    EXPECT_EQ(made.output, "()\n");
    EXPECT_TRUE(awaitOpened(first));
}

INSTANTIATE_TEST_SUITE_P(
    Methods,
    InstanceCall,
    testing::Values(
        std::vector<std::string>{
            "Activate", "{'activation-token': <'a'>, 'desktop-startup-id': <'b'>, 'other': <3>}"},
        std::vector<std::string>{"Open", "['file:///tmp/a', 'b']", "{}"},
        std::vector<std::string>{"ActivateAction", "open", "[<1>, <'x'>]", "{}"}));

TEST_F(Instance, UnknownRequestsAreRefused)
{
    ProgramSession first(onBus());
    first.start();
    const ExitResult action = call("ActivateAction", {"dance", "[]", "{}"});
    EXPECT_NE(action.status, 0);
    EXPECT_THAT(action.errors, HasSubstr("org.freedesktop.DBus.Error.InvalidArgs"));
    EXPECT_THAT(action.errors, HasSubstr("there is no action \"dance\""));
    EXPECT_THAT(call("Dance", {}).errors, HasSubstr("org.freedesktop.DBus.Error.UnknownMethod"));
}

} // namespace
} // namespace orlimo

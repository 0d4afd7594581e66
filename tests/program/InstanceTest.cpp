#include "tests/program/ApplicationCaller.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/MessageBus.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The line that the program prints each time its window opens.
constexpr const char* appearLine = "Opened PopupWindow : APPEAR";

constexpr const char* shownLine = "orlimo: already running in this session; its window opens\n";

constexpr const char* silentLine =
    "orlimo: already running in this session, but it does not answer\n";

/// Far more than the two seconds that a start may wait for another program, and far less than what
/// the bus lets it wait.
constexpr std::chrono::seconds tooLong{16};

/// Starts of the program in one session: a bus, but no screen.
class Instance : public testing::Test
{
protected:
    [[nodiscard]] ProgramSession::Settings onBus(std::vector<std::string> arguments = {}) const
    {
        return {
            .arguments = std::move(arguments),
            .environment =
                {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}, {"QT_QPA_PLATFORM", "offscreen"}},
            .beforeStart = dieWithParent};
    }

    /// Starts the program anew in a home of its own and expects it to end like this.
    void expectSecondStart(
        int status, const std::string& errors, std::vector<std::string> arguments = {}) const
    {
        auto settings = onBus(std::move(arguments));
        settings.environment["QT_QPA_PLATFORM"] = "none"; // it works without a display
        ProgramSession session(std::move(settings));
        session.startProgram();
        EXPECT_EQ(session.program().awaitEnd().status, status);
        EXPECT_EQ(session.program().output(), "");
        EXPECT_EQ(session.program().errors(), errors);
    }

    /// Calls a method of the running program and waits for the reply.
    [[nodiscard]] QDBusPendingCall
    call(const std::string& method, const QVariantList& arguments) const
    {
        const auto reply = caller.call(method, arguments);
        EXPECT_TRUE(await([&reply] { return reply.isFinished(); }));
        return reply;
    }

    [[nodiscard]] QDBusPendingCall callAction(const QString& action) const
    {
        return call("ActivateAction", {action, QVariant(QVariantList()), QVariantMap()});
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

    /// Expects that a further start in this session shows the program of `session`.
    void expectSoleInstance(ProgramSession& session) const
    {
        expectSecondStart(0, shownLine);
        EXPECT_TRUE(awaitOpened(session));
        EXPECT_TRUE(session.program().isRunning());
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
    ApplicationCaller caller{bus.address()};
};

TEST_F(Instance, SecondLoginStartLeavesRunningInstanceAloneAndSecondStartShowsIt)
{
    ProgramSession first(onBus({"--launched-at-login"}));
    first.start();
    expectSecondStart(0, "", {"--launched-at-login"});
    // Anything that the login start had requested would have happened before this is refused.
    EXPECT_TRUE(callAction(QStringLiteral("dance")).isError());
    EXPECT_EQ(timesOpened(first), 0);
    expectSoleInstance(first);
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
            EXPECT_EQ(program->awaitEnd().status, 0);
            EXPECT_EQ(program->output(), "");
            EXPECT_EQ(program->errors(), shownLine);
        }
    }
    EXPECT_TRUE(await([&] { return (*one)->output().find(appearLine) != std::string::npos; }));
    expectSecondStart(0, shownLine);
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
    expectSecondStart(1, silentLine);
    EXPECT_LT(std::chrono::steady_clock::now() - before, tooLong);
    expectSecondStart(0, "", {"--launched-at-login"});
    first.program().signal(SIGCONT);
    EXPECT_TRUE(awaitOpened(first));
}

TEST_F(Instance, EndedInstanceIsReplaced)
{
    ProgramSession first(onBus());
    first.start();
    EXPECT_FALSE(callAction(QStringLiteral("quit")).isError());
    EXPECT_EQ(first.program().awaitEnd().status, 0);

    ProgramSession second(onBus());
    second.start();
    second.program().signal(SIGKILL);
    (void)second.program().awaitEnd();

    ProgramSession third(onBus());
    third.start();
    expectSoleInstance(third);
}

TEST_F(Instance, SideBySideInstanceIsNeverTheSoleOne)
{
    ProgramSession before(onBus({"--side-by-side", "--launched-at-login"}));
    before.start();
    ProgramSession first(onBus());
    first.start();
    ProgramSession after(onBus({"--side-by-side", "--launched-at-login"}));
    after.start();
    expectSoleInstance(first);
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
    expectSoleInstance(session);
}

TEST_F(Instance, StartedByTheBusShowsItself)
{
    // What the bus starts only notes that: the program itself ends with the test that started it.
    const auto program = folder.path() / "orlimo";
    const auto note = folder.path() / "started";
    writeFile(program, "#!/bin/sh\necho \"$# arguments\" >'" + note.string() + "'\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    auto service = QString::fromStdString(contentOf(ORLIMO_SERVICE_TEMPLATE));
    service.replace(
        QStringLiteral("@CMAKE_INSTALL_FULL_BINDIR@"),
        QString::fromStdString(folder.path().string()));
    service.replace(QStringLiteral("@ORLIMO_IDENTIFIER@"), QStringLiteral("app.orlimo.Orlimo"));
    writeFile(bus.servicesFolder() / "app.orlimo.Orlimo.service", service.toStdString());

    // The bus holds the call until the program is there.
    const auto reply = caller.call("Activate", {QVariantMap()});
    EXPECT_TRUE(await(
        [&note] { return std::filesystem::exists(note) && contentOf(note) == "0 arguments\n"; }));
    ProgramSession first(onBus());
    first.start();
    EXPECT_TRUE(awaitOpened(first));
    EXPECT_TRUE(await([&reply] { return reply.isFinished(); }));
    EXPECT_FALSE(reply.isError());
    EXPECT_THAT(first.program().errors(), Not(HasSubstr("orlimo:")));
}

TEST_F(Instance, EachMethodOfTheInterfaceShowsIt)
{
    const QVariantMap platformData{
        {QStringLiteral("activation-token"), QStringLiteral("a")},
        {QStringLiteral("desktop-startup-id"), QStringLiteral("b")},
        {QStringLiteral("other"), 3}};
    const QStringList files{QStringLiteral("file:///tmp/a"), QStringLiteral("b")};
    const QVariantList parameter{1, QStringLiteral("x")};
    const std::vector<std::pair<const char*, QVariantList>> calls{
        {"Activate", {platformData}},
        {"Open", {files, QVariantMap()}},
        {"ActivateAction", {QStringLiteral("open"), QVariant(parameter), QVariantMap()}},
    };
    for (const auto& [method, arguments] : calls) {
        SCOPED_TRACE(method);
        ProgramSession first(onBus());
        first.start();
        const auto made = call(method, arguments);
        EXPECT_FALSE(made.isError()) << made.error().message().toStdString();
        EXPECT_TRUE(made.reply().arguments().isEmpty());
        EXPECT_TRUE(awaitOpened(first));
    }
}

TEST_F(Instance, UnknownRequestsAreRefused)
{
    ProgramSession first(onBus());
    first.start();
    const auto action = callAction(QStringLiteral("dance"));
    EXPECT_EQ(action.error().type(), QDBusError::InvalidArgs);
    EXPECT_THAT(action.error().message().toStdString(), HasSubstr("there is no action \"dance\""));
    EXPECT_EQ(call("Dance", {}).error().type(), QDBusError::UnknownMethod);
}

} // namespace
} // namespace orlimo

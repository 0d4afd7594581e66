#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/program/ApplicationCaller.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/process/MessageBus.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <QDBusPendingCall>
#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>
#include <optional>
#include <string>

namespace orlimo {
namespace {

using testing::ElementsAre;
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

ExitResult endOf(ChildProcess& process)
{
    const auto end = process.awaitEnd();
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

    /// For a program that runs beside another and opens nothing by itself.
    static std::vector<std::string> sideBySideArguments()
    {
        return {"--side-by-side", "--launched-at-login"};
    }

    /// Starts the program anew in a home of its own and waits until it ends.
    [[nodiscard]] ExitResult startAgain(std::vector<std::string> arguments = {}) const
    {
        // No screen either: a start that is one too many needs none.
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
        return endOf(tool);
    }

    /// What has it call a method of the running program.
    [[nodiscard]] static std::vector<std::string>
    callArguments(const std::string& method, const std::vector<std::string>& rest)
    {
        std::vector<std::string> arguments{
            "call",
            "--session",
            "--dest=app.orlimo.Orlimo",
            "--object-path=/app/orlimo/Orlimo",
            "--method=org.freedesktop.Application." + method};
        arguments.insert(arguments.end(), rest.begin(), rest.end());
        return arguments;
    }

    [[nodiscard]] ExitResult
    call(const std::string& method, const std::vector<std::string>& rest) const
    {
        return useTool(callArguments(method, rest));
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

    /// Whether `session`'s program is the one that starts in this session show.
    [[nodiscard]] bool isSoleInstance(ProgramSession& session) const
    {
        const ExitResult again = startAgain();
        return again.status == 0 && again.errors == shownLine && awaitOpened(session);
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
};

TEST_F(Instance, IsShownByASecondStart)
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

TEST_F(Instance, IsLeftInPeaceByASecondLogin)
{
    ProgramSession first(onBus());
    first.start();
    const ExitResult second = startAgain({"--launched-at-login"});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors, "");

    // What the login might have asked for would have been done before this.
    EXPECT_TRUE(isSoleInstance(first));
}

TEST_F(Instance, LaunchedAtLoginIsShownByASecondStart)
{
    ProgramSession first(onBus({"--launched-at-login"}));
    first.start();
    EXPECT_TRUE(isSoleInstance(first));
}

TEST_F(Instance, IsOneOfManyStartsAtOnce)
{
#if defined(ORLIMO_SANITIZED)
    // A start takes many times as long, and no other one is to miss its limit for that.
    constexpr std::size_t starts = 25;
#else
    constexpr std::size_t starts = 100;
#endif
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (std::size_t count = 0; count < starts; ++count) {
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

TEST_F(Instance, ThatStandsStillIsNotWaitedFor)
{
    ProgramSession first(onBus());
    first.start();
    ASSERT_TRUE(isSoleInstance(first));
    ASSERT_EQ(call("ActivateAction", {"open", "[]", "{}"}).status, 0);

    first.program().signal(SIGSTOP);
    const auto before = std::chrono::steady_clock::now();
    const ExitResult second = startAgain();
    EXPECT_LT(std::chrono::steady_clock::now() - before, tooLong);
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors, silentLine);
    EXPECT_EQ(startAgain({"--launched-at-login"}).status, 0);
    first.program().signal(SIGCONT);
}

TEST_F(Instance, ThatStoodStillIsShownOnceItGoesOn)
{
    ProgramSession first(onBus());
    first.start();
    first.program().signal(SIGSTOP);
    EXPECT_EQ(startAgain().status, 1);
    first.program().signal(SIGCONT);
    EXPECT_TRUE(awaitOpened(first));
}

TEST_F(Instance, ThatIsStillStartingIsShownOnceItHasStarted)
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

TEST_F(Instance, ThatHasEndedIsReplaced)
{
    ProgramSession first(onBus());
    first.start();
    EXPECT_EQ(call("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(first.program().awaitEnd().status, 0);

    ProgramSession second(onBus());
    second.start();
    EXPECT_TRUE(isSoleInstance(second));
    second.program().signal(SIGKILL);
    (void)second.program().awaitEnd();

    ProgramSession third(onBus());
    third.start();
    EXPECT_TRUE(isSoleInstance(third));
}

TEST_F(Instance, RunsBesideAnotherWhereItIsAskedTo)
{
    ProgramSession first(onBus());
    first.start();
    ProgramSession second(onBus(sideBySideArguments()));
    second.start();
    EXPECT_TRUE(isSoleInstance(first));
    EXPECT_EQ(timesOpened(second), 0);
    EXPECT_TRUE(second.program().isRunning());
}

TEST_F(Instance, ThatRunsBesideOthersIsNotTheOne)
{
    ProgramSession beside(onBus(sideBySideArguments()));
    beside.start();
    ProgramSession first(onBus());
    first.start();
    EXPECT_TRUE(isSoleInstance(first));
    EXPECT_EQ(timesOpened(beside), 0);
}

TEST_F(Instance, IsNotAloneWithoutABus)
{
    const std::vector<std::optional<std::string>> addresses{
        std::nullopt, "", "unix:path=/nonexistent", "no address"};
    for (const auto& address : addresses) {
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

TEST_F(Instance, RunsWithoutABusThatDoesNotAnswer)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>(), std::vector<std::string>{"--side-by-side"}})
    {
        ProgramSession session(onBus(arguments));
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
}

TEST_F(Instance, AtLoginWaitsForABusThatIsSlow)
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

TEST_F(Instance, OutlivesItsBus)
{
    ProgramSession first(onBus());
    first.start();
    ASSERT_TRUE(isSoleInstance(first));
    bus.end();
    ProgramSession::waitForThrottle();
    first.deliver("text Your code is 482913.");
    EXPECT_EQ(first.readReaction().back(), std::string(ProgramSession::reactionPrefix) + "482913");
    EXPECT_THAT(first.program().errors(), Not(HasSubstr("Bus")));
    EXPECT_THAT(first.program().errors(), Not(HasSubstr("orlimo")));

    ProgramSession second(onBus());
    second.start();
    EXPECT_TRUE(first.program().isRunning());
}

/// A bus that has been asked to start the program, for a call that it keeps until then.
class DBusActivatedInstance : public Instance
{
protected:
    [[nodiscard]] QDBusPendingCall askFor(const std::string& method, const QVariantList& arguments)
    {
        // What the bus starts only notes that: the program itself ends with the test that started
        // it.
        const auto programs = folder.path() / "bin";
        const auto started = folder.path() / "started";
        writeFile(
            programs / "orlimo", "#!/bin/sh\necho \"$# arguments\" >'" + started.string() + "'\n");
        std::filesystem::permissions(programs / "orlimo", std::filesystem::perms::owner_all);
        std::string service = contentOf(ORLIMO_SERVICE_TEMPLATE);
        const std::map<std::string, std::string> placeholders{
            {"@CMAKE_INSTALL_FULL_BINDIR@", programs.string()},
            {"@ORLIMO_IDENTIFIER@", "app.orlimo.Orlimo"}};
        for (const auto& [placeholder, text] : placeholders) {
            const auto place = service.find(placeholder);
            EXPECT_NE(place, std::string::npos) << placeholder;
            service.replace(place, placeholder.size(), text);
        }
        writeFile(bus.servicesFolder() / "app.orlimo.Orlimo.service", service);

        // Not by the tool, whose first question would be another one.
        const auto answer = caller.call(method, arguments);
        EXPECT_TRUE(await([&started] {
            return std::filesystem::exists(started) && contentOf(started) == "0 arguments\n";
        }));
        return answer;
    }

    /// Waits until what was asked for is answered.
    [[nodiscard]] static bool awaitReply(const QDBusPendingCall& call)
    {
        return await([&call] { return call.isFinished(); }) && !call.isError();
    }

private:
    ApplicationCaller caller{bus.address()};
};

TEST_F(DBusActivatedInstance, IsShown)
{
    const auto call = askFor("Activate", {QVariantMap()});
    ProgramSession first(onBus());
    first.start();
    EXPECT_TRUE(awaitOpened(first));
    EXPECT_TRUE(awaitReply(call));
    EXPECT_THAT(first.program().errors(), Not(HasSubstr("orlimo:")));
}

TEST_F(DBusActivatedInstance, OpensNothingWhenItIsToQuit)
{
    const auto call =
        askFor("ActivateAction", {QStringLiteral("quit"), QVariant(QVariantList()), QVariantMap()});
    ProgramSession first(onBus());
    first.startWriter();
    first.startProgram();
    const ExitResult ended = endOf(first.program());
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.output, Not(HasSubstr(appearLine)));
    EXPECT_TRUE(awaitReply(call));
}

/// The arguments with which each method of the interface shows the program.
class InstanceCall : public Instance, public testing::WithParamInterface<std::vector<std::string>>
{};

TEST_P(InstanceCall, ShowsTheProgram)
{
    ProgramSession first(onBus());
    first.start();
    const auto& words = GetParam();
    const ExitResult made = call(words.front(), {words.begin() + 1, words.end()});
    EXPECT_EQ(made.status, 0) << made.errors;
    EXPECT_EQ(made.output, "()\n");
    EXPECT_TRUE(awaitOpened(first));
}

INSTANTIATE_TEST_SUITE_P(
    Methods,
    InstanceCall,
    testing::Values(
        std::vector<std::string>{"Activate", "{}"},
        std::vector<std::string>{
            "Activate", "{'activation-token': <'a'>, 'desktop-startup-id': <'b'>, 'other': <3>}"},
        std::vector<std::string>{"Open", "['file:///tmp/a', 'b']", "{}"},
        std::vector<std::string>{"ActivateAction", "open", "[<1>, <'x'>]", "{}"}));

TEST_F(Instance, RefusesWhatItDoesNotKnow)
{
    ProgramSession first(onBus());
    first.start();
    const ExitResult action = call("ActivateAction", {"dance", "[]", "{}"});
    EXPECT_NE(action.status, 0);
    EXPECT_THAT(action.errors, HasSubstr("org.freedesktop.DBus.Error.InvalidArgs"));
    EXPECT_THAT(action.errors, HasSubstr("there is no action \"dance\""));
    EXPECT_THAT(call("Dance", {}).errors, HasSubstr("org.freedesktop.DBus.Error.UnknownMethod"));
    EXPECT_TRUE(isSoleInstance(first));
}

TEST_F(Instance, DescribesItself)
{
    ProgramSession first(onBus());
    first.start();
    const ExitResult description = useTool(
        {"introspect",
         "--session",
         "--dest=app.orlimo.Orlimo",
         "--object-path=/app/orlimo/Orlimo",
         "--xml"});
    ASSERT_EQ(description.status, 0) << description.errors;

    std::vector<std::string> methods;
    bool isInside = false;
    QXmlStreamReader reader(QByteArray::fromStdString(description.output));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const auto attribute = [&reader](const char* name) {
            return reader.attributes().value(QLatin1String(name)).toString().toStdString();
        };
        if (reader.name() == QLatin1String("interface")) {
            isInside = attribute("name") == "org.freedesktop.Application";
        } else if (isInside && reader.name() == QLatin1String("method")) {
            methods.push_back(attribute("name"));
        } else if (isInside && reader.name() == QLatin1String("arg")) {
            methods.back() += " " + attribute("type");
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_THAT(
        methods, ElementsAre("Activate a{sv}", "Open as a{sv}", "ActivateAction s av a{sv}"));
}

} // namespace
} // namespace orlimo

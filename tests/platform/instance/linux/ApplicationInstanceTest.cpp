#include "platform/instance/ApplicationInstance.h"

#include "platform/bus/linux/SessionBus.h"
#include "platform/desktop/ApplicationDelegate.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/threads/UptimeClock.h"
#include "tests/program/ApplicationCaller.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QThread>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Claim = ApplicationInstance::Claim;

/// One bus for all tests: a process keeps the address that it first used.
class ApplicationInstanceTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        folder = new TemporaryFolder;
        bus = new MessageBus(folder->path());
        qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(bus->address()));
    }

    static void TearDownTestSuite()
    {
        delete bus;
        delete folder;
    }

    ~ApplicationInstanceTest() override
    {
        for (const char* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
            qunsetenv(variable);
        }
    }

    static std::unique_ptr<ApplicationInstance> start()
    {
        return ApplicationInstance::create(false);
    }

    /// Has `instance` note each opening with the token that the toolkit finds at that moment.
    void serve(ApplicationInstance& instance)
    {
        instance.onActivation([this] {
            openings.push_back(
                qEnvironmentVariable("XDG_ACTIVATION_TOKEN", QStringLiteral("none")).toStdString());
        });
    }

    std::vector<std::string> openings;

    static MessageBus* bus;

private:
    static TemporaryFolder* folder;
};

TemporaryFolder* ApplicationInstanceTest::folder = nullptr;
MessageBus* ApplicationInstanceTest::bus = nullptr;

TEST_F(ApplicationInstanceTest, IsTheFirstUntilItIsGone)
{
    auto first = start();
    EXPECT_EQ(first->claim(), Claim::first);
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    serve(*first);
    first.reset();
    first = start();
    EXPECT_EQ(first->claim(), Claim::first);
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
}

TEST_F(ApplicationInstanceTest, DoesOnceWhatWasAskedBeforeItHasStarted)
{
    const auto first = start();
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    // Events may be handled before launching has finished.
    runEventLoop(std::chrono::milliseconds(100));
    serve(*first);
    EXPECT_THAT(openings, ElementsAre("none"));
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_THAT(openings, ElementsAre("none"));
}

TEST_F(ApplicationInstanceTest, DoesWhatWasAskedBeforeTheEventLoopRan)
{
    const auto first = start();
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    serve(*first);
    EXPECT_THAT(openings, ElementsAre("none"));
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_THAT(openings, ElementsAre("none"));
}

TEST_F(ApplicationInstanceTest, AsksNothingAtLogin)
{
    const auto first = start();
    serve(*first);
    EXPECT_EQ(ApplicationInstance::create(true)->claim(), Claim::activatedOther);
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_THAT(openings, IsEmpty());
}

TEST_F(ApplicationInstanceTest, IsFirstAtLoginToo)
{
    const auto first = ApplicationInstance::create(true);
    EXPECT_EQ(first->claim(), Claim::first);
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
}

TEST_F(ApplicationInstanceTest, ThatHasStartedAndHandlesNothingDoesNotAnswer)
{
    const auto first = start();
    serve(*first);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(start()->claim(), Claim::otherUnresponsive);
    const auto waited = std::chrono::steady_clock::now() - before;
    EXPECT_GE(waited, std::chrono::milliseconds(1400));
    EXPECT_LT(waited, std::chrono::seconds(16));
    EXPECT_TRUE(await([this] { return openings.size() == 1; }));
}

TEST_F(ApplicationInstanceTest, AnswersBeforeItOpens)
{
    const auto first = start();
    const ApplicationCaller caller(bus->address());
    std::optional<QDBusPendingCall> answer;
    bool wasAnswered = false;
    first->onActivation([&] {
        answer->waitForFinished();
        wasAnswered = answer->reply().type() == QDBusMessage::ReplyMessage;
    });
    answer = caller.call("Activate", {QVariantMap()});
    EXPECT_TRUE(await([&answer] { return answer->isFinished(); }));
    EXPECT_TRUE(await([&wasAnswered] { return wasAnswered; }));
}

TEST_F(ApplicationInstanceTest, OpensAgainWhenItIsAskedAgain)
{
    const auto first = start();
    serve(*first);
    const ApplicationCaller caller(bus->address());
    for (std::size_t time = 1; time <= 3; ++time) {
        (void)caller.call("Activate", {QVariantMap()});
        EXPECT_TRUE(await([this, time] { return openings.size() == time; }));
    }
}

TEST_F(ApplicationInstanceTest, GivesItsNamesUpBeforeItLeavesTheBus)
{
    auto first = start();
    serve(*first);
    const ApplicationCaller caller(bus->address());
    QStringList releases;
    QDBusServiceWatcher watcher;
    watcher.setConnection(caller.bus());
    watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    watcher.setWatchedServices(
        {QStringLiteral("app.orlimo.Orlimo"), QStringLiteral("app.orlimo.Orlimo.Started")});
    QObject::connect(
        &watcher, &QDBusServiceWatcher::serviceUnregistered, [&releases](const QString& name) {
            releases.push_back(name);
        });
    first.reset();
    EXPECT_TRUE(await([&releases] { return releases.size() == 2; }));
    // A bus that ends a connection takes its names away the other way round.
    EXPECT_EQ(releases, watcher.watchedServices());
}

TEST_F(ApplicationInstanceTest, EndsThoughItsBusStandsStill)
{
    auto first = start();
    bus->freeze();
    const auto before = std::chrono::steady_clock::now();
    first.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(16));
    bus->thaw();
    EXPECT_EQ(start()->claim(), Claim::first);
}

TEST_F(ApplicationInstanceTest, TakesABusThatStandsStillForNone)
{
    const SessionBus own;
    const QString name = QStringLiteral("app.orlimo.Test");
    bus->freeze();
    const auto before = currentUptime();
    const auto deadline = before + std::chrono::milliseconds(100);
    EXPECT_EQ(own.requestName(name, deadline), SessionBus::Ownership::refused);
    EXPECT_GE(currentUptime() - before, std::chrono::milliseconds(50));
    EXPECT_EQ(own.ownerOf(name, deadline), QString());
    EXPECT_LT(currentUptime() - before, std::chrono::seconds(16));
    bus->thaw();
}

TEST_F(ApplicationInstanceTest, HandsTheRightToTheFocusToTheToolkit)
{
    const auto first = start();
    qputenv("XDG_ACTIVATION_TOKEN", "token");
    qputenv("DESKTOP_STARTUP_ID", "id");
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("DESKTOP_STARTUP_ID");
    runEventLoop(std::chrono::milliseconds(100));
    serve(*first);
    EXPECT_THAT(openings, ElementsAre("token"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(ApplicationInstanceTest, TakesTheStartsIdForTheRightToTheFocusWhereThereIsNoOther)
{
    const auto first = start();
    qputenv("DESKTOP_STARTUP_ID", "id");
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    runEventLoop(std::chrono::milliseconds(100));
    serve(*first);
    EXPECT_THAT(openings, ElementsAre("id"));
}

/// Some other program in the name and the place of the first one, which does something else when
/// it is called.
class Impostor final : public QDBusVirtualObject
{
public:
    enum class Behavior {
        refuse,
        leave,
    };

    explicit Impostor(Behavior newBehavior)
        : behavior(newBehavior)
        , connection(QDBusConnection::connectToBus(
              QDBusConnection::SessionBus, QStringLiteral("impostor")))
    {
        connection.registerVirtualObject(
            QStringLiteral("/app/orlimo/Orlimo"), this, QDBusConnection::SubPath);
        // Calls are handled while the test's own thread waits for the start that makes them.
        moveToThread(&thread);
        thread.start();
        for (const char* name : {"app.orlimo.Orlimo", "app.orlimo.Orlimo.Started"}) {
            EXPECT_TRUE(connection.registerService(QLatin1String(name)));
        }
    }

    ~Impostor() override
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("impostor"));
        thread.quit();
        thread.wait();
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (behavior == Behavior::refuse) {
            return bus.send(message.createErrorReply(QDBusError::AccessDenied, QString()));
        }
        for (const char* name : {"app.orlimo.Orlimo", "app.orlimo.Orlimo.Started"}) {
            EXPECT_TRUE(QDBusConnection(bus).unregisterService(QLatin1String(name)));
        }
        return bus.send(message.createErrorReply(QDBusError::NoReply, QString()));
    }

private:
    Behavior behavior;
    QDBusConnection connection;
    QThread thread;
};

TEST_F(ApplicationInstanceTest, IsTheFirstWhenTheOtherLeavesInsteadOfAnswering)
{
    const Impostor impostor(Impostor::Behavior::leave);
    EXPECT_EQ(start()->claim(), Claim::first);
}

TEST_F(ApplicationInstanceTest, TakesARefusalForNoAnswer)
{
    const Impostor impostor(Impostor::Behavior::refuse);
    EXPECT_EQ(start()->claim(), Claim::otherUnresponsive);
}

class IdleDelegate final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override {}
    void applicationDidFinishLaunching() override {}
    void applicationWillBecomeActive() override {}
};

TEST_F(ApplicationInstanceTest, AskedToQuitWhileItStartsQuitsAndOpensNothing)
{
    const auto first = start();
    const ApplicationCaller caller(bus->address());
    const auto answer = caller.call(
        "ActivateAction", {QStringLiteral("quit"), QVariant(QVariantList()), QVariantMap()});
    EXPECT_TRUE(await([&answer] { return answer.isFinished(); }));
    EXPECT_FALSE(answer.isError());
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    runEventLoop(std::chrono::milliseconds(100));
    serve(*first);
    EXPECT_THAT(openings, IsEmpty());
    EXPECT_TRUE(sharedApplication().isTerminating());
    IdleDelegate delegate;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, [] {
        ADD_FAILURE() << "the program does not quit";
        sharedApplication().terminate();
    });
    limit.start(defaultTimeout);
    EXPECT_EQ(sharedApplication().run(delegate), 0);
}

} // namespace
} // namespace orlimo

#include "platform/instance/ApplicationInstance.h"

#include "platform/bus/linux/SessionBus.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/threads/UptimeClock.h"
#include "tests/program/ApplicationCaller.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/process/MessageBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QThread>
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

/// The names that a started instance owns.
const QStringList names{
    QStringLiteral("app.orlimo.Orlimo"), QStringLiteral("app.orlimo.Orlimo.Started")};

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

    static std::unique_ptr<ApplicationInstance> start()
    {
        return ApplicationInstance::create(false);
    }

    /// Records each activation of `instance` with the token that Qt finds at that moment.
    void serve(ApplicationInstance& instance)
    {
        instance.onActivation([this] {
            openings.push_back(
                qEnvironmentVariable("XDG_ACTIVATION_TOKEN", QStringLiteral("none")).toStdString());
        });
    }

    std::vector<std::string> openings;

    static inline TemporaryFolder* folder = nullptr;
    static inline MessageBus* bus = nullptr;
};

TEST_F(ApplicationInstanceTest, FirstInstanceHoldsClaimAndServesEarlyRequestsOnce)
{
    for (int time = 0; time < 2; ++time) {
        openings.clear();
        const auto first = start();
        EXPECT_EQ(first->claim(), Claim::first);
        EXPECT_EQ(start()->claim(), Claim::activatedOther);
        EXPECT_EQ(start()->claim(), Claim::activatedOther);
        EXPECT_EQ(ApplicationInstance::create(true)->claim(), Claim::activatedOther);
        // Events may be handled before launching has finished.
        runEventLoop(std::chrono::milliseconds(100));
        serve(*first);
        EXPECT_EQ(ApplicationInstance::create(true)->claim(), Claim::activatedOther);
        runEventLoop(std::chrono::milliseconds(100));
        EXPECT_THAT(openings, ElementsAre("none")) << "a launch at login requests nothing";
    }
}

TEST_F(ApplicationInstanceTest, BlockedInstanceIsUnresponsive)
{
    const auto first = start();
    serve(*first);
    const auto before = currentUptime();
    EXPECT_EQ(start()->claim(), Claim::otherUnresponsive);
    const auto waited = currentUptime() - before;
    EXPECT_GE(waited, std::chrono::milliseconds(1400));
    EXPECT_LT(waited, std::chrono::seconds(16));
    EXPECT_TRUE(await([this] { return openings.size() == 1; }));
}

TEST_F(ApplicationInstanceTest, EachRequestOpensAgainAndNamesAreReleasedInOrder)
{
    auto first = start();
    serve(*first);
    const ApplicationCaller caller(bus->address());
    for (std::size_t time = 1; time <= 3; ++time) {
        (void)caller.call("Activate", {QVariantMap()});
        EXPECT_TRUE(await([this, time] { return openings.size() == time; }));
    }
    QStringList releases;
    QDBusServiceWatcher watcher;
    watcher.setConnection(caller.bus());
    watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    watcher.setWatchedServices(names);
    QObject::connect(
        &watcher, &QDBusServiceWatcher::serviceUnregistered, [&releases](const QString& name) {
            releases.push_back(name);
        });
    first.reset();
    EXPECT_TRUE(await([&releases] { return releases.size() == 2; }));
    // A bus that ends a connection releases its names in the opposite order.
    EXPECT_EQ(releases, names);
}

TEST_F(ApplicationInstanceTest, FrozenBusRefusesNameAndDoesNotDelayEnd)
{
    const SessionBus own;
    const QString name = QStringLiteral("app.orlimo.Test");
    auto first = start();
    bus->freeze();
    const auto before = currentUptime();
    const auto deadline = before + std::chrono::milliseconds(100);
    EXPECT_EQ(own.requestName(name, deadline), SessionBus::Ownership::refused);
    EXPECT_GE(currentUptime() - before, std::chrono::milliseconds(50));
    EXPECT_EQ(own.ownerOf(name, deadline), QString());
    first.reset();
    EXPECT_LT(currentUptime() - before, std::chrono::seconds(16));
    bus->thaw();
    EXPECT_EQ(start()->claim(), Claim::first);
}

TEST_F(ApplicationInstanceTest, ActivationTokenOrElseStartupIdIsPassedOn)
{
    const EnvironmentChange startupId("DESKTOP_STARTUP_ID", "id");
    const EnvironmentChange activationToken("XDG_ACTIVATION_TOKEN", std::nullopt);
    for (const char* token : {"id", "token"}) {
        const auto first = start();
        EXPECT_EQ(start()->claim(), Claim::activatedOther);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        runEventLoop(std::chrono::milliseconds(100));
        openings.clear();
        serve(*first);
        EXPECT_THAT(openings, ElementsAre(token));
        EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
        qputenv("XDG_ACTIVATION_TOKEN", "token");
    }
}

/// Another program under the names of the first one, which refuses requests; when `isLeaving` it
/// gives up the names instead of handling one.
class Impostor final : public QDBusVirtualObject
{
public:
    explicit Impostor(bool leaves)
        : isLeaving(leaves)
    {
        connection.registerVirtualObject(
            QStringLiteral("/app/orlimo/Orlimo"), this, QDBusConnection::SubPath);
        // Calls are handled while the test's own thread waits for the start that makes them.
        moveToThread(&thread);
        thread.start();
        for (const QString& name : names) {
            EXPECT_TRUE(connection.registerService(name));
        }
    }

    ~Impostor() override
    {
        QDBusConnection::disconnectFromBus(connection.name());
        thread.quit();
        thread.wait();
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        for (const QString& name : isLeaving ? names : QStringList()) {
            EXPECT_TRUE(QDBusConnection(bus).unregisterService(name));
        }
        return bus.send(message.createErrorReply(QDBusError::AccessDenied, QString()));
    }

private:
    bool isLeaving;
    QDBusConnection connection =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("impostor"));
    QThread thread;
};

TEST_F(ApplicationInstanceTest, RefusedRequestIsUnresponsiveAndLeavingOwnerIsReplaced)
{
    {
        const Impostor impostor(false);
        EXPECT_EQ(start()->claim(), Claim::otherUnresponsive);
    }
    const Impostor impostor(true);
    EXPECT_EQ(start()->claim(), Claim::first);
}

TEST_F(ApplicationInstanceTest, QuitRequestDuringLaunchQuitsAndOpensNothing)
{
    const auto first = start();
    const ApplicationCaller caller(bus->address());
    const auto reply = caller.call(
        "ActivateAction", {QStringLiteral("quit"), QVariant(QVariantList()), QVariantMap()});
    EXPECT_TRUE(await([&reply] { return reply.isFinished(); }));
    EXPECT_FALSE(reply.isError());
    EXPECT_EQ(start()->claim(), Claim::activatedOther);
    runEventLoop(std::chrono::milliseconds(100));
    serve(*first);
    EXPECT_THAT(openings, IsEmpty());
    EXPECT_TRUE(sharedApplication().isTerminating());
}

} // namespace
} // namespace orlimo

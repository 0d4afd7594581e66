#include "platform/loginitem/linux/PortalLoginItemService.h"

#include "platform/loginitem/linux/XdgLoginItemService.h"
#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/platform/loginitem/linux/ScriptedPortal.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/MessageBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const auto clientName = QStringLiteral("client");

QVariantMap autostart(bool on)
{
    return {{QStringLiteral("background"), true}, {QStringLiteral("autostart"), on}};
}

/// How an error is reported.
std::string failure(const std::string& reason)
{
    return "org.freedesktop.portal.Background: " + reason;
}

/// Accepts each request and then responds.
ScriptedPortal::Script responding(uint response, const QVariantMap& results)
{
    return [=](ScriptedPortal& portal, const ScriptedPortal::Request& request) {
        portal.accept(request);
        portal.respond(request, response, results);
    };
}

/// The service on the test's bus with a scripted portal.
class PortalLoginItem : public testing::Test
{
protected:
    PortalLoginItem()
    {
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), clientName);
        portal.emplace(bus.address());
        startService();
    }

    ~PortalLoginItem() override
    {
        service.reset();
        QDBusConnection::disconnectFromBus(clientName);
    }
    Q_DISABLE_COPY_MOVE(PortalLoginItem)

    void
    startService(std::chrono::milliseconds longestCall = PortalLoginItemService::defaultCallTimeout)
    {
        service.emplace(QDBusConnection(clientName), longestCall);
        service->setResponseHandler([this](bool registering, const auto& error) {
            responses.push_back(
                std::string(registering ? "register" : "unregister") + ": " +
                (error ? error->localizedDescription : "done"));
        });
    }

    [[nodiscard]] bool awaitRequests(std::size_t count) const
    {
        return await([&] { return portal->requests().size() >= count; });
    }

    [[nodiscard]] bool awaitResponses(std::size_t count) const
    {
        return await([&] { return responses.size() >= count; });
    }

    /// Requests and waits until there are `count` responses.
    [[nodiscard]] bool requestAndAwait(bool registering, std::size_t count)
    {
        EXPECT_EQ(registering ? service->registerItem() : service->unregisterItem(), std::nullopt);
        return awaitResponses(count);
    }

    /// Registers and waits until the portal has the first request.
    [[nodiscard]] bool requestRegistration()
    {
        EXPECT_EQ(service->registerItem(), std::nullopt);
        return awaitRequests(1);
    }

    /// Waits until the service has received everything that the portal has sent so far.
    [[nodiscard]] bool awaitNotified() const
    {
        QDBusPendingCallWatcher ping(QDBusConnection(clientName)
                                         .asyncCall(QDBusMessage::createMethodCall(
                                             QStringLiteral("org.freedesktop.portal.Desktop"),
                                             QStringLiteral("/"),
                                             QStringLiteral("org.freedesktop.DBus.Peer"),
                                             QStringLiteral("Ping"))));
        bool isBack = false;
        QObject::connect(&ping, &QDBusPendingCallWatcher::finished, [&] { isBack = true; });
        return await([&] { return isBack; }) && !ping.isError();
    }

    /// The requested values in their order.
    [[nodiscard]] std::vector<bool> autostartRequests() const
    {
        std::vector<bool> list;
        for (const auto& request : portal->requests()) {
            list.push_back(request.options.value(QStringLiteral("autostart")).toBool());
        }
        return list;
    }

    TemporaryFolder folder;
    MessageBus bus{folder.path()};
    std::optional<ScriptedPortal> portal;
    std::optional<PortalLoginItemService> service;
    std::vector<std::string> responses;
};

TEST_F(PortalLoginItem, RequestHasCommandAndReason)
{
    const MarkingTranslator translator;
    ASSERT_TRUE(requestRegistration());
    const auto& [call, options, path] = portal->requests().front();
    EXPECT_EQ(call.arguments().front(), QString()) << "no window";
    const QString token = options.value(QStringLiteral("handle_token")).toString();
    EXPECT_THAT(token.toStdString(), testing::MatchesRegex("orlimo_[0-9a-f]{32}"));
    EXPECT_EQ(
        options,
        (QVariantMap{
            {QStringLiteral("handle_token"), token},
            {QStringLiteral("reason"),
             QStringLiteral(
                 "LoginItemService: Orlimo copies verification codes as soon as they arrive.")},
            {QStringLiteral("autostart"), true},
            {QStringLiteral("commandline"),
             QStringList{QStringLiteral("orlimo"), QStringLiteral("--launched-at-login")}},
            {QStringLiteral("dbus-activatable"), false},
        }));
}

TEST_F(PortalLoginItem, ResponseSetsStatusAndIsReported)
{
    using enum LoginItemStatus;
    const QVariantMap none;
    const std::string done = "done";
    const std::string notPermitted = failure("Operation not permitted");
    const std::string cancelled = failure("Operation canceled");
    const std::string failed = failure("Input/output error");
    struct Case
    {
        bool registering;
        uint response;
        QVariantMap results;
        LoginItemStatus status;
        std::string reported;
    };
    for (const auto& [registering, response, results, status, reported] : {
             Case{true, 0, autostart(true), enabled, done},
             Case{true, 0, autostart(false), requiresApproval, notPermitted},
             Case{true, 0, none, requiresApproval, notPermitted},
             Case{true, 1, none, requiresApproval, cancelled},
             Case{true, 1, autostart(false), requiresApproval, cancelled},
             Case{true, 1, autostart(true), requiresApproval, cancelled},
             Case{true, 2, none, enabled, failed},
             Case{true, 3, autostart(false), enabled, failed},
             Case{false, 0, autostart(false), notRegistered, done},
             Case{false, 0, none, notRegistered, done},
             Case{false, 1, autostart(false), notRegistered, done},
             Case{false, 0, autostart(true), enabled, notPermitted},
             Case{false, 1, none, enabled, cancelled},
         })
    {
        startService();
        responses.clear();
        EXPECT_EQ(service->status(), notRegistered);
        portal->onRequest(responding(0, autostart(true)));
        ASSERT_TRUE(requestAndAwait(true, 1));
        portal->onRequest(responding(response, results));
        ASSERT_TRUE(requestAndAwait(registering, 2));
        EXPECT_EQ(service->status(), status) << registering << response;
        EXPECT_EQ(responses.back(), (registering ? "register: " : "unregister: ") + reported);
        const auto paths = portal->requests().rbegin();
        EXPECT_NE(paths[0].path, paths[1].path);
    }
}

TEST_F(PortalLoginItem, OnlyFirstResponseCounts)
{
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.respond(request, 0, autostart(true));
        me.respond(request, 1, {});
    });
    ASSERT_TRUE(requestAndAwait(true, 1));
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.refuse(me.requests().front(), QStringLiteral("too late"));
        me.respond(request, 0, autostart(true));
        me.accept(request);
    });
    ASSERT_TRUE(requestAndAwait(true, 2));
    EXPECT_EQ(service->status(), LoginItemStatus::enabled);
    EXPECT_THAT(responses, ElementsAre("register: done", "register: done"));
}

TEST_F(PortalLoginItem, RefusalAndMissingOrLeavingPortalAreErrors)
{
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.refuse(request, QStringLiteral("not for you"));
    });
    ASSERT_TRUE(requestAndAwait(true, 1));
    portal.reset();
    ASSERT_TRUE(requestAndAwait(true, 2));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(
        responses,
        ElementsAre(
            "register: " + failure("not for you"),
            testing::MatchesRegex("register: org.freedesktop.portal.Background: "
                                  ".*org.freedesktop.portal.Desktop.*")));
    portal.emplace(bus.address());
    responses.clear();
    ASSERT_TRUE(requestRegistration());
    portal.reset();
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(responses, ElementsAre("register: " + failure("Connection reset by peer")));
    portal.emplace(bus.address());
    portal->onRequest(responding(0, autostart(true)));
    ASSERT_TRUE(requestAndAwait(true, 2));
    EXPECT_EQ(service->status(), LoginItemStatus::enabled);
}

TEST_F(PortalLoginItem, MissingBusIsErrorAtOnce)
{
    PortalLoginItemService lost(QDBusConnection(QStringLiteral("no such connection")));
    for (const auto& error : {lost.registerItem(), lost.unregisterItem()}) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code, ENOTCONN);
        EXPECT_THAT(error->localizedDescription, StartsWith(failure("")));
    }
    EXPECT_EQ(lost.status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItem, TimeoutIsErrorUnlessPortalAccepts)
{
    startService(std::chrono::milliseconds(200));
    ASSERT_TRUE(requestRegistration());
    runEventLoop(std::chrono::milliseconds(600));
    EXPECT_THAT(responses, IsEmpty());
    portal->respond(portal->requests().front(), 1, {});
    ASSERT_TRUE(awaitResponses(1));
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->registerItem(), std::nullopt);
    // Sooner than the bus would give up by itself.
    ASSERT_TRUE(await([this] { return responses.size() == 2; }, std::chrono::seconds(20)));
    EXPECT_EQ(service->status(), LoginItemStatus::requiresApproval);
    EXPECT_THAT(
        responses,
        ElementsAre(
            "register: " + failure("Operation canceled"), StartsWith("register: " + failure(""))));
}

TEST_F(PortalLoginItem, OnlyLastRequestFollowsPendingOne)
{
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    ASSERT_TRUE(requestRegistration());
    EXPECT_EQ(service->registerItem(), std::nullopt);
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    portal->accept(portal->requests().front());
    portal->respond(portal->requests().front(), 1, {});
    ASSERT_TRUE(awaitRequests(2));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, false));
    EXPECT_THAT(portal->closedPaths(), IsEmpty());
    EXPECT_THAT(responses, IsEmpty()) << "the first request was withdrawn";
    portal->respond(portal->requests().back(), 0, autostart(false));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(responses, ElementsAre("unregister: done"));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItem, LaterRequestClosesOpenOne)
{
    ASSERT_TRUE(requestRegistration());
    ASSERT_TRUE(awaitNotified());
    std::vector<QString> closedBefore;
    portal->onRequest([&](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        closedBefore = me.closedPaths();
        me.accept(request);
    });
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(2));
    EXPECT_THAT(closedBefore, ElementsAre(portal->requests().front().path));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, false));

    portal->respond(portal->requests().front(), 0, autostart(true));
    ASSERT_TRUE(awaitNotified());
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(responses, IsEmpty()) << "this request was closed";

    portal->respond(portal->requests().back(), 0, autostart(false));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(responses, ElementsAre("unregister: done"));
}

TEST_F(PortalLoginItem, LaterRequestReplacesPendingOne)
{
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    ASSERT_TRUE(requestRegistration());
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    portal->accept(portal->requests().front());
    ASSERT_TRUE(awaitNotified());
    portal->onRequest(responding(0, autostart(true)));
    ASSERT_TRUE(requestAndAwait(true, 1));
    EXPECT_THAT(responses, ElementsAre("register: done"));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, true));
}

TEST_F(PortalLoginItem, ResponseOfStrangerIsIgnored)
{
    ASSERT_TRUE(requestRegistration());
    const auto& request = portal->requests().front();

    const auto name = QStringLiteral("stranger");
    auto stranger = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
    QDBusMessage signal = QDBusMessage::createSignal(
        request.path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal.setArguments({0U, autostart(true)});
    stranger.send(signal);
    // Returns when the bus has passed on what was sent before.
    (void)stranger.interface()->isServiceRegistered(name);
    QDBusConnection::disconnectFromBus(name);

    portal->respond(request, 1, {});
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), LoginItemStatus::requiresApproval);
}

TEST_F(PortalLoginItem, ServiceMayBeDestroyedWithRequestOpen)
{
    ASSERT_TRUE(requestRegistration());
    service.reset();
    portal->respond(portal->requests().front(), 0, autostart(true));
    startService();
    portal->onRequest(responding(0, autostart(false)));
    ASSERT_TRUE(requestAndAwait(false, 1));
    EXPECT_THAT(responses, ElementsAre("unregister: done"));
}

TEST(NativeLoginItemService, PortalIsUsedOnlyInsideSandbox)
{
    const TemporaryFolder folder;
    const auto mark = folder.path() / ".flatpak-info";
    const auto outside = makeLoginItemService(mark);
    EXPECT_NE(dynamic_cast<XdgLoginItemService*>(outside.get()), nullptr);
    writeFile(mark, "");
    const auto inside = makeLoginItemService(mark);
    EXPECT_NE(dynamic_cast<PortalLoginItemService*>(inside.get()), nullptr);
}

} // namespace
} // namespace orlimo

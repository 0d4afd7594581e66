#include "platform/loginitem/linux/PortalLoginItemService.h"

#include "platform/loginitem/linux/MainAppService.h"
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
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const auto clientName = QStringLiteral("client");

QVariantMap autostart(bool on)
{
    return {{QStringLiteral("background"), true}, {QStringLiteral("autostart"), on}};
}

/// Accepts each request and then responds.
ScriptedPortal::Script responding(uint response, const QVariantMap& results)
{
    return [=](ScriptedPortal& portal, const ScriptedPortal::Request& request) {
        portal.accept(request);
        portal.respond(request, response, results);
    };
}

/// The service on a bus of the test's, with a portal that does what the test says.
class PortalLoginItem : public testing::Test
{
protected:
    PortalLoginItem()
    {
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), clientName);
        startPortal();
        startService();
    }

    ~PortalLoginItem() override
    {
        service.reset();
        QDBusConnection::disconnectFromBus(clientName);
    }
    Q_DISABLE_COPY_MOVE(PortalLoginItem)

    void startPortal() { portal.emplace(bus.address()); }

    void
    startService(std::chrono::milliseconds longestCall = PortalLoginItemService::defaultCallTimeout)
    {
        service.emplace(QDBusConnection(clientName), longestCall);
        service->setResponseHandler([this](bool registering, const auto& error) {
            answers.push_back(
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
        return await([&] { return answers.size() >= count; });
    }

    /// Waits until the service has been told everything that the portal has sent so far.
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

    /// What was asked for, in the order in which it came.
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
    std::vector<std::string> answers;
};

TEST_F(PortalLoginItem, IsNotRegisteredBeforeTheFirstAnswer)
{
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(PortalLoginItem, AsksToBeStartedAtLogin)
{
    const MarkingTranslator translator;
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    const auto& [call, window, options, path] = portal->requests().front();
    EXPECT_EQ(window, QString());
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

TEST_F(PortalLoginItem, AsksNoLongerToBeStarted)
{
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    EXPECT_THAT(autostartRequests(), ElementsAre(false));
}

TEST_F(PortalLoginItem, NamesEachRequestAnew)
{
    portal->onRequest(responding(0, autostart(true)));
    std::set<QString> paths;
    for (std::size_t count = 1; count <= 3; ++count) {
        EXPECT_EQ(service->registerItem(), std::nullopt);
        ASSERT_TRUE(awaitResponses(count));
        paths.insert(portal->requests().back().path);
    }
    EXPECT_THAT(paths, SizeIs(3));
}

/// What the portal answers to a question, and what comes of it where the program was not
/// registered before.
struct ResponseCase
{
    const char* name;
    bool registering;
    uint response;
    QVariantMap results;
    LoginItemStatus status;
    const char* told;
};

class PortalResponse : public PortalLoginItem, public testing::WithParamInterface<ResponseCase>
{};

TEST_P(PortalResponse, BecomesTheStatusAndIsTold)
{
    const auto& [name, registering, response, results, status, told] = GetParam();
    portal->onRequest(responding(response, results));
    EXPECT_EQ(registering ? service->registerItem() : service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), status);
    EXPECT_THAT(answers, ElementsAre(told));
}

INSTANTIATE_TEST_SUITE_P(
    OfEachKind,
    PortalResponse,
    testing::Values(
        ResponseCase{
            "Granted", true, 0, autostart(true), LoginItemStatus::enabled, "register: done"},
        ResponseCase{
            "NotAutostarted",
            true,
            0,
            autostart(false),
            LoginItemStatus::requiresApproval,
            "register: org.freedesktop.portal.Background: Operation not permitted"},
        ResponseCase{
            "WithoutResults",
            true,
            0,
            {},
            LoginItemStatus::requiresApproval,
            "register: org.freedesktop.portal.Background: Operation not permitted"},
        ResponseCase{
            "Cancelled",
            true,
            1,
            {},
            LoginItemStatus::requiresApproval,
            "register: org.freedesktop.portal.Background: Operation canceled"},
        ResponseCase{
            "ForbiddenInTheSettings",
            true,
            1,
            autostart(false),
            LoginItemStatus::requiresApproval,
            "register: org.freedesktop.portal.Background: Operation canceled"},
        ResponseCase{
            "CancelledWhateverElseItSays",
            true,
            1,
            autostart(true),
            LoginItemStatus::requiresApproval,
            "register: org.freedesktop.portal.Background: Operation canceled"},
        ResponseCase{
            "Failed",
            true,
            2,
            {},
            LoginItemStatus::notRegistered,
            "register: org.freedesktop.portal.Background: Input/output error"},
        ResponseCase{
            "OfALaterKind",
            true,
            3,
            autostart(true),
            LoginItemStatus::notRegistered,
            "register: org.freedesktop.portal.Background: Input/output error"},
        ResponseCase{
            "Ended",
            false,
            0,
            autostart(false),
            LoginItemStatus::notRegistered,
            "unregister: done"},
        ResponseCase{
            "EndedWithoutResults",
            false,
            0,
            {},
            LoginItemStatus::notRegistered,
            "unregister: done"},
        ResponseCase{
            "EndedForWhoMayNotRun",
            false,
            1,
            autostart(false),
            LoginItemStatus::notRegistered,
            "unregister: done"},
        ResponseCase{
            "NotEnded",
            false,
            0,
            autostart(true),
            LoginItemStatus::enabled,
            "unregister: org.freedesktop.portal.Background: Operation not permitted"},
        ResponseCase{
            "EndingCancelled",
            false,
            1,
            {},
            LoginItemStatus::notRegistered,
            "unregister: org.freedesktop.portal.Background: Operation canceled"}),
    [](const auto& suite) { return suite.param.name; });

TEST_F(PortalLoginItem, ComesAndGoes)
{
    portal->onRequest(responding(0, autostart(true)));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    portal->onRequest(responding(0, autostart(false)));
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(2));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(answers, ElementsAre("register: done", "unregister: done"));
}

TEST_F(PortalLoginItem, StaysAsItIsWhereNothingIsDecided)
{
    portal->onRequest(responding(0, autostart(true)));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    portal->onRequest(responding(1, {}));
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(2));
    EXPECT_EQ(service->status(), LoginItemStatus::enabled);
}

TEST_F(PortalLoginItem, HearsAnAnswerThatComesBeforeTheCallReturns)
{
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.respond(request, 0, autostart(true));
        me.accept(request);
    });
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), LoginItemStatus::enabled);
    EXPECT_THAT(answers, ElementsAre("register: done"));
}

TEST_F(PortalLoginItem, IsToldOncePerQuestion)
{
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.respond(request, 0, autostart(true));
        me.respond(request, 1, {});
    });
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.refuse(me.requests().front(), QStringLiteral("too late"));
        me.accept(request);
        me.respond(request, 0, autostart(true));
    });
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(2));
    EXPECT_THAT(answers, ElementsAre("register: done", "register: done"));
}

TEST_F(PortalLoginItem, TellsWhatThePortalSaysAgainstTheCall)
{
    portal->onRequest([](ScriptedPortal& me, const ScriptedPortal::Request& request) {
        me.refuse(request, QStringLiteral("not for you"));
    });
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(answers, ElementsAre("register: org.freedesktop.portal.Background: not for you"));
}

TEST_F(PortalLoginItem, TellsThatThereIsNoPortal)
{
    portal.reset();
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(
        answers,
        ElementsAre(testing::MatchesRegex(
            "register: org.freedesktop.portal.Background: .*org.freedesktop.portal.Desktop.*")));
    startPortal();
    portal->onRequest(responding(0, autostart(true)));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(2));
    EXPECT_EQ(service->status(), LoginItemStatus::enabled);
}

TEST_F(PortalLoginItem, FailsAtOnceWithoutABus)
{
    PortalLoginItemService lost(QDBusConnection(QStringLiteral("no such connection")));
    for (const auto& error : {lost.registerItem(), lost.unregisterItem()}) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code, ENOTCONN);
        EXPECT_THAT(error->localizedDescription, StartsWith("org.freedesktop.portal.Background: "));
    }
    EXPECT_EQ(lost.status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItem, TellsOfAPortalThatDoesNotEvenAccept)
{
    startService(std::chrono::milliseconds(200));
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->registerItem(), std::nullopt);
    // Sooner than the bus would give up by itself.
    ASSERT_TRUE(await([this] { return !answers.empty(); }, std::chrono::seconds(20)));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(answers, ElementsAre(StartsWith("register: org.freedesktop.portal.Background: ")));
}

TEST_F(PortalLoginItem, WaitsForTheUserLongerThanForThePortal)
{
    startService(std::chrono::milliseconds(200));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    runEventLoop(std::chrono::milliseconds(600));
    EXPECT_THAT(answers, IsEmpty());
    portal->respond(portal->requests().front(), 0, autostart(true));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre("register: done"));
}

TEST_F(PortalLoginItem, TellsOfAPortalThatGoesWhileTheUserIsAsked)
{
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    portal.reset();
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
    EXPECT_THAT(
        answers,
        ElementsAre("register: org.freedesktop.portal.Background: Connection reset by peer"));
}

TEST_F(PortalLoginItem, TellsOfAPortalThatGoesBeforeItAccepts)
{
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    portal.reset();
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre(StartsWith("register: org.freedesktop.portal.Background: ")));
}

TEST_F(PortalLoginItem, AsksOneQuestionAtATimeAndThenTheLast)
{
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    portal->accept(portal->requests().front());
    portal->respond(portal->requests().front(), 1, {});
    ASSERT_TRUE(awaitRequests(2));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, false));
    EXPECT_THAT(portal->closedPaths(), IsEmpty());
    EXPECT_THAT(answers, IsEmpty()) << "the first wish has been taken back";
    portal->respond(portal->requests().back(), 0, autostart(false));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre("unregister: done"));
    EXPECT_EQ(service->status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItem, TakesAnOpenQuestionBackForALaterWish)
{
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
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
    EXPECT_THAT(answers, IsEmpty()) << "the portal answered what was taken back";

    portal->respond(portal->requests().back(), 0, autostart(false));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre("unregister: done"));
}

TEST_F(PortalLoginItem, TakesBackWhatWaitedForTheOpenQuestion)
{
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    portal->accept(portal->requests().front());
    ASSERT_TRUE(awaitNotified());
    portal->onRequest(responding(0, autostart(true)));
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre("register: done"));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, true));
    EXPECT_THAT(portal->closedPaths(), ElementsAre(portal->requests().front().path));
}

TEST_F(PortalLoginItem, WaitsForTheQuestionInPlaceOfOneTakenBack)
{
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    ASSERT_TRUE(awaitNotified());
    portal->onRequest([](ScriptedPortal&, const ScriptedPortal::Request&) {});
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(2));
    ASSERT_TRUE(awaitNotified());
    EXPECT_THAT(autostartRequests(), ElementsAre(true, false));
    portal->onRequest(responding(0, autostart(true)));
    portal->respond(portal->requests().back(), 0, autostart(false));
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(autostartRequests(), ElementsAre(true, false, true));
    EXPECT_THAT(portal->closedPaths(), SizeIs(1));
    EXPECT_THAT(answers, ElementsAre("register: done"));
}

TEST_F(PortalLoginItem, BelievesNobodyButThePortal)
{
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
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

TEST_F(PortalLoginItem, GoesWithItsQuestionOpen)
{
    EXPECT_EQ(service->registerItem(), std::nullopt);
    ASSERT_TRUE(awaitRequests(1));
    service.reset();
    portal->respond(portal->requests().front(), 0, autostart(true));
    startService();
    portal->onRequest(responding(0, autostart(false)));
    EXPECT_EQ(service->unregisterItem(), std::nullopt);
    ASSERT_TRUE(awaitResponses(1));
    EXPECT_THAT(answers, ElementsAre("unregister: done"));
}

TEST(NativeLoginItemService, IsThePortalsInsideASandboxAlone)
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

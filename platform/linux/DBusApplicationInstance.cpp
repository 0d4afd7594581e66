#include "platform/ApplicationIdentity.h"
#include "platform/ApplicationInstance.h"
#include "platform/MainThread.h"
#include "platform/SharedApplication.h"
#include "platform/ToQString.h"
#include "platform/linux/ApplicationInterface.h"
#include "platform/linux/SessionBus.h"

#include <QDBusError>

#include <array>
#include <chrono>
#include <optional>
#include <utility>

namespace orlimo {

namespace {

using Claim = ApplicationInstance::Claim;

/// How long the program that runs already may take to answer. With what a start needs besides, less
/// than two seconds.
constexpr std::chrono::milliseconds answerLimit{1500};

/// Where the toolkit looks for the right to the focus when a window is to be activated.
constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";

/// The name under which the program is found on the bus.
QString applicationName()
{
    return toQString(identity::applicationIdentifier);
}

/// A second name, taken when the program is through with starting. Until then its main thread
/// answers nobody, which may take longer than another start waits.
QString startedName()
{
    return applicationName() + QStringLiteral(".Started");
}

/// The object's path, which follows from the name.
QString objectPath()
{
    return QLatin1Char('/') + applicationName().replace(QLatin1Char('.'), QLatin1Char('/'));
}

/// What the desktop gave this start to pass on to the program that shows itself.
QVariantMap platformData()
{
    constexpr std::array<std::pair<const char*, const char*>, 2> sources{{
        {"activation-token", tokenVariable},
        {"desktop-startup-id", "DESKTOP_STARTUP_ID"},
    }};
    QVariantMap data;
    for (const auto& [key, variable] : sources) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty()) {
            data.insert(QLatin1String(key), value);
        }
    }
    return data;
}

QDBusMessage callToOther(const QString& interface, const QString& method)
{
    auto call = QDBusMessage::createMethodCall(applicationName(), objectPath(), interface, method);
    // One that has just ended is not started anew: this start takes its place.
    call.setAutoStartService(false);
    return call;
}

/// Asks the other program to open its window. The reply says that it has, or while that program is
/// still starting, that the request has reached it.
QDBusMessage activateOther(const SessionBus& bus, const QDeadlineTimer& deadline)
{
    auto request =
        callToOther(QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    request << platformData();
    if (bus.hasOwner(startedName())) {
        return bus.call(request, deadline);
    }
    bus.send(request);
    // The connection answers this one by itself, after it has received the request.
    return bus.call(
        callToOther(QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping")), deadline);
}

/// Whether the other program ended before it could reply.
bool hasEnded(const QDBusMessage& reply)
{
    const auto error = QDBusError(reply).type();
    return error == QDBusError::ServiceUnknown || error == QDBusError::NoReply;
}

/// What came of asking the other program; none when there is no other one any more.
std::optional<Claim> claimBesideOther(const SessionBus& bus, const QDeadlineTimer& deadline)
{
    const QDBusMessage reply = activateOther(bus, deadline);
    if (reply.type() == QDBusMessage::ReplyMessage) {
        return Claim::activatedOther;
    }
    if (!bus.isConnected()) {
        return Claim::alone;
    }
    if (deadline.hasExpired() || !hasEnded(reply)) {
        return Claim::otherDoesNotAnswer;
    }
    return std::nullopt;
}

Claim claimOn(const SessionBus& bus, bool launchedAtLogin)
{
    std::optional<QDeadlineTimer> deadline;
    for (;;) {
        switch (bus.take(applicationName())) {
        case SessionBus::Ownership::taken:
            return Claim::first;
        case SessionBus::Ownership::refused:
            return Claim::alone;
        case SessionBus::Ownership::another:
            break;
        }
        if (launchedAtLogin) {
            return Claim::activatedOther;
        }
        if (!deadline) {
            deadline.emplace(answerLimit);
        }
        if (const auto claim = claimBesideOther(bus, *deadline)) {
            return *claim;
        }
    }
}

/// Does what is asked, with the right to the focus that came with it.
void carryOut(const ApplicationRequest& request, const std::function<void()>& open)
{
    if (request.kind == ApplicationRequest::Kind::quit) {
        sharedApplication().terminate();
        return;
    }
    if (request.activationToken.isEmpty()) {
        open();
        return;
    }
    qputenv(tokenVariable, request.activationToken);
    open();
    qunsetenv(tokenVariable);
}

/// The claim as the ownership of the program's name on the session bus.
class DBusApplicationInstance final : public ApplicationInstance
{
public:
    explicit DBusApplicationInstance(bool launchedAtLogin)
    {
        requireMainThread();
        // Before the name is taken: whoever finds the name finds the object.
        bus.put(interface, objectPath());
        ownClaim = claimOn(bus, launchedAtLogin);
    }

    [[nodiscard]] Claim claim() const override { return ownClaim; }

    void onActivation(std::function<void()> open) override
    {
        interface.serve([open = std::move(open)](const ApplicationRequest& request) {
            carryOut(request, open);
        });
        if (ownClaim == Claim::first) {
            static_cast<void>(bus.take(startedName()));
        }
    }

private:
    ApplicationInterface interface;
    SessionBus bus;
    Claim ownClaim = Claim::alone;
};

} // namespace

std::unique_ptr<ApplicationInstance> ApplicationInstance::create(bool launchedAtLogin)
{
    return std::make_unique<DBusApplicationInstance>(launchedAtLogin);
}

} // namespace orlimo

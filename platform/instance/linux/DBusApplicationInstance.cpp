#include "platform/ApplicationIdentity.h"
#include "platform/bus/linux/SessionBus.h"
#include "platform/bus/linux/SessionBusProbe.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/linux/ActivationToken.h"
#include "platform/instance/ApplicationInstance.h"
#include "platform/instance/linux/ApplicationInterface.h"
#include "platform/process/ToQString.h"
#include "platform/threads/MainThread.h"
#include "platform/threads/UptimeClock.h"

#include <array>
#include <chrono>
#include <utility>

namespace orlimo {

namespace {

using Claim = ApplicationInstance::Claim;

/// Limit for the bus and the running instance together, until the claim is settled. With the rest
/// of a launch, less than two seconds.
constexpr std::chrono::milliseconds claimTimeout{1500};

/// The same for a launch at login, where nobody waits and the bus may be under its highest load:
/// without the bus there may be no icon.
constexpr std::chrono::seconds loginClaimTimeout{10};

/// How long the bus may delay the end of the program.
constexpr std::chrono::milliseconds releaseTimeout{500};

/// The name under which the program is found on the bus.
QString applicationName()
{
    return toQString(identity::applicationIdentifier);
}

/// A second name, acquired when launching has finished. Until then the main thread does not reply,
/// possibly for longer than another instance waits.
QString startedName()
{
    return applicationName() + QStringLiteral(".Started");
}

/// The object's path, which follows from the name.
QString objectPath()
{
    return QLatin1Char('/') + applicationName().replace(QLatin1Char('.'), QLatin1Char('/'));
}

/// The desktop's data of this launch, for the instance that opens its window.
QVariantMap platformData()
{
    constexpr std::array<std::pair<const char*, const char*>, 2> sources{{
        {"activation-token", ActivationToken::variable},
        {"desktop-startup-id", ActivationToken::startupIdVariable},
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

/// Requests the instance at `other` to open its window. True when it confirms, or when the request
/// has reached an instance that is still launching.
bool activate(const QString& other, const SessionBus& bus, Uptime deadline)
{
    auto request = QDBusMessage::createMethodCall(
        other,
        objectPath(),
        QStringLiteral("org.freedesktop.Application"),
        QStringLiteral("Activate"));
    request << platformData();
    if (bus.ownerOf(startedName(), deadline) == other) {
        return bus.call(request, deadline).type() == QDBusMessage::ReplyMessage;
    }
    bus.send(request);
    // The connection itself replies to this one, after it has received the request.
    const auto ping = QDBusMessage::createMethodCall(
        other, objectPath(), QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    // One that is ending, and not starting, has given up the name before its connection.
    return bus.call(ping, deadline).type() == QDBusMessage::ReplyMessage &&
           bus.ownerOf(applicationName(), deadline) == other;
}

Claim claimOn(const SessionBus& bus, bool launchedAtLogin, Uptime deadline)
{
    bool foundOtherInstance = false;
    for (;;) {
        switch (bus.requestName(applicationName(), deadline)) {
        case SessionBus::Ownership::acquired:
            return Claim::first;
        case SessionBus::Ownership::refused:
            return foundOtherInstance ? Claim::otherUnresponsive : Claim::unmanaged;
        case SessionBus::Ownership::ownedByOther:
            foundOtherInstance = true;
            break;
        }
        if (launchedAtLogin) {
            return Claim::activatedOther;
        }
        const QString other = bus.ownerOf(applicationName(), deadline);
        if (!other.isEmpty() && activate(other, bus, deadline)) {
            return Claim::activatedOther;
        }
        if (!other.isEmpty() && bus.ownerOf(applicationName(), deadline) == other) {
            return Claim::otherUnresponsive;
        }
        // It has ended in the meantime, and this instance replaces it; or the time is up.
    }
}

/// Handles the request with the permission to take the focus that came with it.
void handleRequest(const ApplicationRequest& request, const std::function<void()>& open)
{
    if (request.kind == ApplicationRequest::Kind::quit) {
        sharedApplication().terminate();
        return;
    }
    const ActivationToken activationToken(request.activationToken);
    open();
}

/// The claim as the ownership of the program's name on the session bus.
class DBusApplicationInstance final : public ApplicationInstance
{
public:
    DBusApplicationInstance(bool launchedAtLogin, Uptime deadline)
    {
        // Before the name is acquired: a process that finds the name must find the object.
        bus.registerObject(interface, objectPath());
        ownClaim = claimOn(bus, launchedAtLogin, deadline);
    }

    DBusApplicationInstance(const DBusApplicationInstance&) = delete;
    DBusApplicationInstance& operator=(const DBusApplicationInstance&) = delete;

    ~DBusApplicationInstance() override
    {
        if (ownClaim == Claim::first) {
            // Before the object is destroyed, and blocking: a process that finds the name must find
            // it.
            const Uptime deadline = currentUptime() + releaseTimeout;
            bus.releaseName(applicationName(), deadline);
            bus.releaseName(startedName(), deadline);
        }
    }

    [[nodiscard]] Claim claim() const override { return ownClaim; }

    void onActivation(std::function<void()> open) override
    {
        interface.setRequestHandler([open = std::move(open)](const ApplicationRequest& request) {
            handleRequest(request, open);
        });
        if (ownClaim == Claim::first) {
            static_cast<void>(bus.requestName(startedName(), currentUptime() + claimTimeout));
        }
    }

private:
    ApplicationInterface interface;
    SessionBus bus;
    Claim ownClaim = Claim::unmanaged;
};

} // namespace

std::unique_ptr<ApplicationInstance> ApplicationInstance::create(bool launchedAtLogin)
{
    requireMainThread();
    const Uptime deadline = currentUptime() + (launchedAtLogin ? loginClaimTimeout : claimTimeout);
    disableUnresponsiveSessionBus(deadline);
    return std::make_unique<DBusApplicationInstance>(launchedAtLogin, deadline);
}

} // namespace orlimo

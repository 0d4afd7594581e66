#include "platform/ApplicationIdentity.h"
#include "platform/ApplicationInstance.h"
#include "platform/MainThread.h"
#include "platform/SharedApplication.h"
#include "platform/ToQString.h"
#include "platform/linux/ApplicationInterface.h"
#include "platform/linux/SessionBus.h"

#include <array>
#include <chrono>
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

/// Asks the program at `other` to open its window. True when it says that it has, or while it is
/// still starting, when the request has reached it.
bool activate(const QString& other, const SessionBus& bus)
{
    auto request = QDBusMessage::createMethodCall(
        other,
        objectPath(),
        QStringLiteral("org.freedesktop.Application"),
        QStringLiteral("Activate"));
    request << platformData();
    if (bus.ownerOf(startedName()) == other) {
        return bus.call(request, answerLimit).type() == QDBusMessage::ReplyMessage;
    }
    bus.send(request);
    // The connection answers this one by itself, after it has received the request.
    const auto ping = QDBusMessage::createMethodCall(
        other, objectPath(), QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    return bus.call(ping, answerLimit).type() == QDBusMessage::ReplyMessage;
}

Claim claimOn(const SessionBus& bus, bool launchedAtLogin)
{
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
        const QString other = bus.ownerOf(applicationName());
        if (!other.isEmpty() && activate(other, bus)) {
            return Claim::activatedOther;
        }
        if (!other.isEmpty() && bus.ownerOf(applicationName()) == other) {
            return Claim::otherDoesNotAnswer;
        }
        // It has ended in the meantime: this start takes its place.
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

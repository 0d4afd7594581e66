#pragma once

#include "platform/loginitem/ServiceError.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

class QDBusPendingCall;

namespace orlimo {

/// The desktop's Background portal, through which a program in a sandbox asks to be started at
/// login. The portal may have to ask the user, so its answer can take any time or never come; no
/// call waits for it. Main thread.
class AutostartPortal : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AutostartPortal)

public:
    struct Result
    {
        /// Whether the desktop starts the program from now on; absent when that was not decided.
        std::optional<bool> isAutostartEnabled;
        /// Why it is not as it was asked for.
        std::optional<ServiceError> error;
    };
    using Handler = std::function<void(const Result&)>;

    /// `timeout` is how long the portal may take to accept a question, which it does before it
    /// asks the user.
    AutostartPortal(QDBusConnection sessionBus, std::chrono::milliseconds timeout);
    ~AutostartPortal() override = default;

    /// Asks for the program to be started at login, or no longer to be. `completion` is called
    /// once, later, unless the answer never comes, the question is taken back or the object goes
    /// first. The error, when there is no bus to ask on; then nothing is called. One question at a
    /// time.
    [[nodiscard]] std::optional<ServiceError> requestAutostart(bool autostart, Handler completion);

    /// Whether the answer to a question is still to come.
    [[nodiscard]] bool isRequesting() const { return static_cast<bool>(handler); }

    /// Whether the portal has accepted the question, so that only the answer is missing. Nothing
    /// but the portal going away puts a limit to that.
    [[nodiscard]] bool isOpen() const { return isRequesting() && isAccepted; }

    /// Takes the open question back: the portal is told to close it, and its answer is not heard
    /// any more. Does not wait for the portal.
    void cancelRequest();

private:
    /// The portal's signal. The message tells which question it answers.
    Q_SLOT void
    didReceiveResponse(uint response, const QVariantMap& results, const QDBusMessage& message);
    [[nodiscard]] QString requestPath(const QString& token) const;
    [[nodiscard]] bool listen(bool on);
    void callDidFinish(const QString& path, const QDBusPendingCall& call);
    void portalDidDisappear();
    void finish(const Result& result);

    QDBusConnection bus;
    const std::chrono::milliseconds callTimeout;
    QDBusServiceWatcher portalWatcher;

    /// The question that is being asked.
    Handler handler;
    QString openRequest;
    bool isAutostartRequested = false;
    bool isAccepted = false;
};

} // namespace orlimo

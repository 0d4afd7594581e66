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

/// The desktop's Background portal, through which a program in a sandbox requests to be started at
/// login. The portal may have to ask the user, so its response can take any time or never arrive;
/// no call waits for it. Main thread.
class AutostartPortal : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AutostartPortal)

public:
    struct Result
    {
        /// Whether the desktop starts the program from now on; absent when that was not decided.
        std::optional<bool> isAutostartEnabled;
        /// Why the request was not granted.
        std::optional<ServiceError> error;
    };
    using Handler = std::function<void(const Result&)>;

    /// `timeout` is how long the portal may take to accept a request, before it asks the user.
    AutostartPortal(QDBusConnection sessionBus, std::chrono::milliseconds timeout);
    ~AutostartPortal() override = default;

    /// Requests that the program is started at login, or no longer. `completion` is called once,
    /// later, unless no response arrives, the request is cancelled or the object is destroyed
    /// first. Returns the error without a bus; `completion` is not called then. One request at a
    /// time.
    [[nodiscard]] std::optional<ServiceError> requestAutostart(bool autostart, Handler completion);

    /// Whether a response is outstanding.
    [[nodiscard]] bool isRequesting() const { return static_cast<bool>(handler); }

    /// Whether the portal has accepted the request and only the response is missing, for which
    /// there is no time limit.
    [[nodiscard]] bool isOpen() const { return isRequesting() && isAccepted; }

    /// Closes the open request; its response is ignored. Does not wait for the portal.
    void cancelRequest();

private:
    /// The portal's signal. The path of the message identifies the request.
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

    /// Of the current request.
    Handler handler;
    QString openRequest;
    bool isAutostartRequested = false;
    bool isAccepted = false;
};

} // namespace orlimo

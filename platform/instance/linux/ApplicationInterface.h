#pragma once

#include "platform/instance/linux/ApplicationRequest.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace orlimo {

/// The D-Bus interface by which desktops start an application and its actions, to be registered
/// with all its slots. Replies at once and handles the request later in the event loop, or keeps it
/// until there is a handler. Main thread; may be constructed before the application object.
class ApplicationInterface final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using RequestHandler = std::function<void(const ApplicationRequest&)>;

    ApplicationInterface();
    ApplicationInterface(const ApplicationInterface&) = delete;
    ApplicationInterface& operator=(const ApplicationInterface&) = delete;
    ~ApplicationInterface() override = default;

    /// Sets the handler and passes it a pending request within the call. Requests that arrive
    /// together are handled as one.
    void setRequestHandler(RequestHandler newHandler);

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers): it makes slots
    /// Shows the program.
    void Activate(const QVariantMap& platformData);

    /// Shows the program, which opens no files.
    void Open(const QStringList& addresses, const QVariantMap& platformData);

    /// Supports "open" and "quit"; anything else gets an error reply.
    void ActivateAction(
        const QString& action, const QVariantList& parameters, const QVariantMap& platformData);

private:
    void enqueue(const ApplicationRequest& request);
    void flushPendingRequests();

    RequestHandler handleRequest;
    std::optional<ApplicationRequest> pendingRequest;
    QTimer flushTimer;
};

} // namespace orlimo

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
/// with all its slots. What is asked is answered at once and done in a later turn of the event
/// loop, or kept until somebody serves. Main thread; may be made before the toolkit's application
/// object.
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

    /// Has requests done by `newHandler` from now on, once what was asked more than once in the
    /// meantime; the kept one first, within the call.
    void setRequestHandler(RequestHandler newHandler);

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers): it makes slots
    /// Shows the program.
    void Activate(const QVariantMap& platformData);

    /// Shows the program, which opens no files.
    void Open(const QStringList& addresses, const QVariantMap& platformData);

    /// Knows "open" and "quit"; anything else is answered with an error.
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

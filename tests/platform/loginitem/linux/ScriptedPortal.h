#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// A fake desktop portal on the test's bus, which handles requests to run in the background as the
/// test scripts them and serves the user's colour scheme. It has its own connection and works in
/// the test's event loop, which must not be blocked by a caller.
class ScriptedPortal final : public QDBusVirtualObject
{
public:
    struct Request
    {
        QDBusMessage call;
        QString window;
        QVariantMap options;
        QString path;
    };
    using Script = std::function<void(ScriptedPortal&, const Request&)>;

    explicit ScriptedPortal(const std::string& address);
    ScriptedPortal(const ScriptedPortal&) = delete;
    ScriptedPortal& operator=(const ScriptedPortal&) = delete;
    ~ScriptedPortal() override;

    /// Sets the handling of each request. Initially: accepted, without a response.
    void onRequest(Script newScript) { script = std::move(newScript); }
    [[nodiscard]] const std::vector<Request>& requests() const { return received; }
    /// The paths of the requests that callers have closed, in this order.
    [[nodiscard]] const std::vector<QString>& closedPaths() const { return closed; }

    /// Lets the call return, as the portal does before it asks the user.
    void accept(const Request& request);
    void refuse(const Request& request, const QString& words);
    /// Sends the response to a request, whether its call has returned or not.
    void respond(const Request& request, uint response, const QVariantMap& results);

    /// The value of the colour scheme setting. Initially invalid: the setting does not exist.
    void setColorScheme(const QVariant& value) { colorScheme = value; }
    void changeColorScheme(const QVariant& value);
    void sendSettingChanged(const QString& group, const QString& key, const QVariant& value);
    /// Delays the replies to reads until `replyToReads`.
    void holdReads() { holdsReads = true; }
    void replyToReads();
    [[nodiscard]] int reads() const { return readCount; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    [[nodiscard]] bool handleRead(const QDBusMessage& message);
    void replyToRead(const QDBusMessage& message);

    QDBusConnection bus;
    Script script = [](ScriptedPortal& portal, const Request& request) { portal.accept(request); };
    std::vector<Request> received;
    std::vector<QString> closed;
    QVariant colorScheme;
    bool holdsReads = false;
    std::vector<QDBusMessage> heldReads;
    int readCount = 0;
};

} // namespace orlimo

#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>
#include <string>

namespace orlimo {

/// The clipboard as the mutter compositor knows it, read as a remote viewer of its desktop
/// reads it: without X, and without a window.
class MutterClipboard
{
public:
    /// Connects to the compositor on the session bus at `busAddress`, and waits until it responds.
    /// What does not respond is a test failure.
    explicit MutterClipboard(const std::string& busAddress);
    MutterClipboard(const MutterClipboard&) = delete;
    MutterClipboard& operator=(const MutterClipboard&) = delete;
    ~MutterClipboard();

    /// What the clipboard holds as `type`, byte for byte. Absent when nobody owns it, the type is
    /// not offered, or its text does not end within ten seconds.
    [[nodiscard]] std::optional<std::string>
    paste(const std::string& type = "text/plain;charset=utf-8") const;

    [[nodiscard]] static std::string problem()
    {
        return "nobody owns it, or its text does not end";
    }

private:
    QString connectionName;
    QDBusConnection bus;
    QString remoteSession;
};

} // namespace orlimo

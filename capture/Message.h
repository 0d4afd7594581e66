#pragma once

#include "capture/CaptureServices.h"
#include "watch/FileMonitorDelegate.h"

#include <QObject>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// The capture controller: turns changes of the message store into a published verification code.
/// The application has one, shared with its delegate and its views. Main thread.
class Message : public QObject,
                public FileMonitorDelegate,
                public std::enable_shared_from_this<Message>
{
    Q_OBJECT

public:
    /// Shared from the start, because the file monitor holds its delegate weakly.
    [[nodiscard]] static std::shared_ptr<Message> create(CaptureServices services);

    /// Starts watching the store's write-ahead log. False, with a line in the log, if the file
    /// cannot be watched; checks are then refused. Nothing is retried. A user without a Library
    /// folder is a fatal stop.
    bool registFileObserver();

    /// Reads the ten newest messages, publishes the code of the newest one that holds one, "No
    /// Code" if none does, and returns the code. Refused, with a line in the log, until the store
    /// is watched. A message with neither text nor body is a fatal stop.
    std::optional<std::string> checkMessages();

    /// Checks and, if there is a code, puts it on the general pasteboard, at every change of the
    /// store even if it is the same code. Does nothing while the preference `capturingEnabled` is
    /// off.
    void fileDidChange() override;

    /// Published; stays empty, as message texts are not kept.
    [[nodiscard]] const std::string& text() const { return textField; }
    void setText(std::string newText);

    /// Published: empty before the first check, then the code last found, or "No Code".
    [[nodiscard]] const std::string& verificationCode() const { return verificationCodeField; }
    void setVerificationCode(std::string code);

    /// Whether the store is watched.
    [[nodiscard]] bool ready() const { return readyField; }

    /// The user's Library folder as it was at construction.
    [[nodiscard]] const std::optional<std::filesystem::path>& libraryDirectory() const
    {
        return libraryDirectoryField;
    }

Q_SIGNALS:
    /// A published property is about to be assigned, even if its value stays the same.
    void objectWillChange();

private:
    explicit Message(CaptureServices captureServices);

    [[nodiscard]] std::optional<std::string> newestCode();

    CaptureServices services;
    std::string textField;
    std::string verificationCodeField;
    std::optional<std::filesystem::path> libraryDirectoryField;
    bool readyField = false;
};

} // namespace orlimo

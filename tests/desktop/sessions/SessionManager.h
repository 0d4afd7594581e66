#pragma once

#include <optional>
#include <string>

#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>

namespace orlimo {

/// A session manager for one program on an X server, which saves that program's session once. At
/// most one at a time; it works while the test waits for it.
class SessionManager
{
public:
    SessionManager();
    SessionManager(const SessionManager&) = delete;
    SessionManager& operator=(const SessionManager&) = delete;
    ~SessionManager();

    /// The value of SESSION_MANAGER for the program.
    [[nodiscard]] const std::string& address() const { return ownAddress; }

    /// Waits until the program belongs to the session.
    [[nodiscard]] bool awaitClient();

    /// Has the program save itself, as before a logout, and waits until it says that it has.
    [[nodiscard]] bool save();

    /// When the program is to be restarted, as far as it has said so: one of the hints that the
    /// session management library names SmRestart...
    [[nodiscard]] std::optional<int> restartStyle() const { return style; }

private:
    static Status welcome(
        SmsConn newClient,
        SmPointer data,
        unsigned long* mask,
        SmsCallbacks* callbacks,
        char** failure);
    void processInput();

    std::string ownAddress;
    int listenerCount = 0;
    IceListenObj* listeners = nullptr;
    IceConn connection = nullptr;
    SmsConn client = nullptr;
    bool isRegistered = false;
    bool isSaved = false;
    std::optional<int> style;
};

} // namespace orlimo

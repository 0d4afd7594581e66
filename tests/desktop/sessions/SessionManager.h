#pragma once

#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// A session manager for programs on an X server, which saves its one program's session when it is
/// told to. At most one at a time; it works while the test waits for it.
class SessionManager
{
public:
    SessionManager();
    SessionManager(const SessionManager&) = delete;
    SessionManager& operator=(const SessionManager&) = delete;
    ~SessionManager();

    /// The value of SESSION_MANAGER for the program.
    [[nodiscard]] const std::string& address() const;

    /// Waits until the program belongs to the session.
    [[nodiscard]] bool awaitClient();

    /// Has the program save itself, as before a logout, and waits until it says that it has.
    [[nodiscard]] bool save();

    /// When the program wants to be started again, as it has told so far: one of the hints that the
    /// session management library names SmRestart...
    [[nodiscard]] std::optional<int> restartStyle() const;

private:
    class Protocol;
    std::unique_ptr<Protocol> protocol;
};

} // namespace orlimo

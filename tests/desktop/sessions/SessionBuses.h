#pragma once

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/MessageBus.h"

#include <filesystem>
#include <memory>
#include <string>

namespace orlimo {

/// A session message bus of its own, and the accessibility bus that it leads to. Both end with the
/// object.
class SessionBuses
{
public:
    /// Starts both in `runtimeFolder`, which only the user may enter, and waits until they serve. A
    /// bus that does not start is a test failure.
    explicit SessionBuses(const std::filesystem::path& runtimeFolder);
    SessionBuses(const SessionBuses&) = delete;
    SessionBuses& operator=(const SessionBuses&) = delete;
    ~SessionBuses();

    /// The value of DBUS_SESSION_BUS_ADDRESS for programs that are to use the session bus.
    [[nodiscard]] const std::string& sessionAddress() const { return bus.address(); }

    [[nodiscard]] const std::string& accessibilityAddress() const { return accessibility; }

private:
    MessageBus bus;
    std::unique_ptr<ChildProcess> accessibilityLauncher;
    std::string accessibility;
};

} // namespace orlimo

#pragma once

#include "tests/support/ChildProcess.h"

#include <filesystem>
#include <string>

namespace orlimo {

/// A session message bus of its own, which ends with the object. It starts no service: nothing of
/// the machine's desktop gets into a test.
class OwnSessionBus
{
public:
    /// Starts it in `folder`, which only the user may enter, and waits until it serves. A bus that
    /// does not start is a test failure.
    explicit OwnSessionBus(const std::filesystem::path& folder);

    /// The value of DBUS_SESSION_BUS_ADDRESS for programs that are to use the bus.
    [[nodiscard]] const std::string& address() const { return servedAt; }

private:
    ChildProcess daemon;
    std::string servedAt;
};

} // namespace orlimo

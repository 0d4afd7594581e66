#pragma once

#include "tests/support/process/ChildProcess.h"

#include <filesystem>
#include <memory>
#include <string>

namespace orlimo {

/// A session message bus of its own, ended with the object.
class MessageBus
{
public:
    /// Starts the bus in `runtimeFolder`, which only the user may enter, and waits until it serves.
    /// One that does not start is a test failure.
    explicit MessageBus(const std::filesystem::path& runtimeFolder);

    /// The value of DBUS_SESSION_BUS_ADDRESS for programs that are to use it.
    [[nodiscard]] const std::string& address() const { return ownAddress; }

    /// Where the descriptions of the services lie that it starts. Nothing of the machine's desktop
    /// is among them.
    [[nodiscard]] const std::filesystem::path& servicesFolder() const { return services; }

    /// Has the bus stand still: it takes what it is sent, and replies when it goes on.
    void freeze() const;
    void thaw() const;

    /// Ends the bus before its time.
    void end();

private:
    std::filesystem::path services;
    std::unique_ptr<ChildProcess> daemon;
    std::string ownAddress;
};

} // namespace orlimo

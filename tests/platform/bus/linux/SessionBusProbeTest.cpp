#include "platform/bus/linux/SessionBusProbe.h"

#include "tests/platform/clipboard/linux/ListeningSocket.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/process/MessageBus.h"

#include <QtGlobal>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

namespace orlimo {
namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* line = "orlimo: the session bus does not answer; running without it\n";

/// More than any responsive bus needs.
constexpr std::chrono::seconds generous{60};
constexpr std::chrono::milliseconds brief{100};

class SessionBusProbe : public testing::Test
{
protected:
    /// Probes the session bus at `address`. True when it was disabled, with the line on standard
    /// error.
    [[nodiscard]] static bool
    isDisabled(const std::optional<std::string>& address, std::chrono::milliseconds limit)
    {
        const EnvironmentChange bus(variable, address);
        testing::internal::CaptureStderr();
        const auto before = currentUptime();
        disableUnresponsiveSessionBus(before + limit);
        EXPECT_LT(currentUptime() - before, limit + std::chrono::seconds(30));
        const std::string errors = testing::internal::GetCapturedStderr();
        const bool isSet = qEnvironmentVariableIsSet(variable);
        const std::string now = qgetenv(variable).toStdString();
        if (errors == line) {
            EXPECT_EQ(now, "disabled:");
            return true;
        }
        EXPECT_EQ(errors, "");
        EXPECT_EQ(isSet ? std::optional(now) : std::nullopt, address);
        return false;
    }

    [[nodiscard]] std::string path(const std::string& name) const
    {
        return (folder.path() / name).string();
    }

    const TemporaryFolder folder;
    const EnvironmentChange runtimeFolder{"XDG_RUNTIME_DIR", folder.path().string()};
};

TEST_F(SessionBusProbe, ResponsiveBusIsKeptAndFrozenOneDisabled)
{
    const MessageBus bus(folder.path());
    EXPECT_FALSE(isDisabled("unix:path=" + path("none") + ";" + bus.address(), generous));
    bus.freeze();
    EXPECT_TRUE(isDisabled(bus.address(), brief));
    bus.thaw();
    EXPECT_FALSE(isDisabled(bus.address(), generous));
}

TEST_F(SessionBusProbe, SilentSocketIsDisabledUnderEveryAddress)
{
    EXPECT_FALSE(isDisabled(std::nullopt, generous)) << "the runtime folder has no socket yet";
    const UniqueFd standard = listeningSocket(path("bus"), 30);
    EXPECT_TRUE(isDisabled(std::nullopt, brief));
    EXPECT_TRUE(isDisabled("", brief));
    const UniqueFd socket = listeningSocket(path("a bus"), 30);
    EXPECT_TRUE(isDisabled("unix:guid=0123,path=" + path("a%20bus") + ",x=y", brief));
    EXPECT_TRUE(isDisabled("unix:path=" + path("none") + ";unix:path=" + path("a%20bus"), brief));
}

TEST_F(SessionBusProbe, SilentAbstractSocketIsDisabled)
{
    const std::string name = path("abstract");
    sockaddr_un address = socketAddress("x" + name);
    address.sun_path[0] = '\0';
    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(
        ::bind(
            socket.get(),
            reinterpret_cast<const sockaddr*>(&address),
            static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size())),
        0);
    ASSERT_EQ(::listen(socket.get(), 30), 0);
    EXPECT_TRUE(isDisabled("unix:abstract=" + name, brief));
}

TEST_F(SessionBusProbe, SocketWithFullQueueIsDisabled)
{
    const UniqueFd socket = listeningSocket(path("full"), 0);
    const UniqueFd waiting(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = socketAddress(path("full"));
    ASSERT_EQ(
        ::connect(waiting.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_TRUE(isDisabled("unix:path=" + path("full"), brief));
}

TEST_F(SessionBusProbe, UnprobeableAddressIsKept)
{
    for (const std::string& address :
         {"unix:path=" + path("none"),
          "unix:path=" + std::string(200, 'x'),
          std::string("unix:path="),
          std::string("unix:"),
          std::string("tcp:host=localhost,port=1"),
          std::string("autolaunch:"),
          std::string("disabled:"),
          std::string("no address"),
          std::string(";")})
    {
        EXPECT_FALSE(isDisabled(address, generous)) << address;
    }
}

} // namespace
} // namespace orlimo

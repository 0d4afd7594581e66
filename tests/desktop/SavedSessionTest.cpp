#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <poll.h>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

namespace orlimo {
namespace {

Bool acceptEveryHost(char* /*name*/)
{
    return True;
}

bool hasInput(int descriptor)
{
    pollfd input{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&input, 1, 0) == 1;
}

/// A session manager for one program on an X server. It works while the test waits for it.
class SessionManager
{
public:
    SessionManager()
    {
        std::array<char, 256> error{};
        const int length = error.size();
        const auto accept = &acceptEveryHost;
        EXPECT_NE(
            SmsInitialize("Orlimo's tests", "1", welcome, this, accept, length, error.data()), 0)
            << error.data();
        EXPECT_NE(IceListenForConnections(&listenerCount, &listeners, length, error.data()), 0)
            << error.data();
        for (int index = 0; index < listenerCount; ++index) {
            IceSetHostBasedAuthProc(listeners[index], accept);
        }
        char* const list = IceComposeNetworkIdList(listenerCount, listeners);
        address = list;
        std::free(list);
    }
    SessionManager(const SessionManager&) = delete;
    SessionManager& operator=(const SessionManager&) = delete;
    ~SessionManager()
    {
        if (client != nullptr) {
            SmsCleanUp(client);
        }
        if (connection != nullptr) {
            IceSetShutdownNegotiation(connection, False);
            IceCloseConnection(connection);
        }
        IceFreeListenObjs(listenerCount, listeners);
    }

    [[nodiscard]] bool awaitWorking(const std::function<bool()>& condition)
    {
        return await([&] {
            processInput();
            return condition();
        });
    }

    void requestSave() const { SmsSaveYourself(client, SmSaveBoth, False, SmInteractStyleNone, 0); }

    /// The value of SESSION_MANAGER for the program.
    std::string address;
    bool isRegistered = false;
    bool isSaved = false;
    /// When the program is to be restarted, as far as it has said so.
    std::optional<int> restartStyle;

private:
    static Status
    welcome(SmsConn newClient, SmPointer data, unsigned long* mask, SmsCallbacks* callbacks, char**)
    {
        static_cast<SessionManager*>(data)->client = newClient;
        *mask = SmsRegisterClientProcMask | SmsSaveYourselfDoneProcMask |
                SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsInteractRequestProcMask |
                SmsInteractDoneProcMask | SmsSaveYourselfP2RequestProcMask |
                SmsDeletePropertiesProcMask;
        *callbacks = {};
        callbacks->register_client = {
            [](SmsConn conn, SmPointer manager, char*) -> Status {
                char* const id = SmsGenerateClientID(conn);
                const Status status = SmsRegisterClientReply(conn, id);
                std::free(id);
                static_cast<SessionManager*>(manager)->isRegistered = true;
                return status;
            },
            data};
        callbacks->save_yourself_done = {
            [](SmsConn conn, SmPointer manager, Bool) {
                static_cast<SessionManager*>(manager)->isSaved = true;
                SmsSaveComplete(conn);
            },
            data};
        callbacks->close_connection = {
            [](SmsConn, SmPointer, int count, char** reasons) { SmFreeReasons(count, reasons); },
            data};
        callbacks->interact_request.callback = [](SmsConn, SmPointer, int) {};
        callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
        callbacks->save_yourself_phase2_request.callback = [](SmsConn, SmPointer) {};
        callbacks->delete_properties.callback = [](SmsConn, SmPointer, int count, char** names) {
            SmFreeReasons(count, names);
        };
        callbacks->set_properties = {
            [](SmsConn, SmPointer manager, int count, SmProp** properties) {
                for (int index = 0; index < count; ++index) {
                    const SmProp& property = *properties[index];
                    if (std::strcmp(property.name, SmRestartStyleHint) == 0 &&
                        property.num_vals == 1) {
                        static_cast<SessionManager*>(manager)->restartStyle =
                            *static_cast<const unsigned char*>(property.vals[0].value);
                    }
                    SmFreeProperty(properties[index]);
                }
                std::free(properties);
            },
            data};
        return 1;
    }

    void processInput()
    {
        for (int index = 0; index < listenerCount; ++index) {
            if (hasInput(IceGetListenConnectionNumber(listeners[index]))) {
                IceAcceptStatus status{};
                connection = IceAcceptConnection(listeners[index], &status);
            }
        }
        while (connection != nullptr && hasInput(IceConnectionNumber(connection))) {
            if (IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesSuccess) {
                ADD_FAILURE() << "the program left its session";
                connection = nullptr;
            }
        }
    }

    int listenerCount = 0;
    IceListenObj* listeners = nullptr;
    IceConn connection = nullptr;
    SmsConn client = nullptr;
};

TEST(SavedSession, IsNotRestarted)
{
    SessionManager manager;
    DesktopProgram program({.environment = {{"SESSION_MANAGER", manager.address}}});
    program.session().startProgram();
    ASSERT_TRUE(manager.awaitWorking([&] { return manager.isRegistered; }));
    manager.requestSave();
    EXPECT_TRUE(manager.awaitWorking([&] { return manager.isSaved; }));
    EXPECT_EQ(manager.restartStyle, SmRestartNever);
    EXPECT_TRUE(program.process().isRunning());
}

} // namespace
} // namespace orlimo

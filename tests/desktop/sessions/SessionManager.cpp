#include "tests/desktop/sessions/SessionManager.h"

#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <poll.h>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

namespace orlimo {

/// The library's side: its callbacks find the object through the pointer that they are given.
class SessionManager::Protocol
{
public:
    Protocol()
    {
        std::array<char, 256> error{};
        static const bool isReady = SmsInitialize(
                                        "Orlimo's tests",
                                        "1",
                                        &Protocol::welcome,
                                        nullptr,
                                        &Protocol::acceptEveryHost,
                                        error.size(),
                                        error.data()) != 0;
        EXPECT_TRUE(isReady) << error.data();
        EXPECT_NE(
            IceListenForConnections(&listenerCount, &listeners, error.size(), error.data()), 0)
            << error.data();
        for (int index = 0; index < listenerCount; ++index) {
            IceSetHostBasedAuthProc(listeners[index], &Protocol::acceptEveryHost);
        }
        char* const list = IceComposeNetworkIdList(listenerCount, listeners);
        ownAddress = list;
        std::free(list);
        current = this;
    }

    Protocol(const Protocol&) = delete;
    Protocol& operator=(const Protocol&) = delete;

    ~Protocol()
    {
        current = nullptr;
        disconnect();
        IceFreeListenObjs(listenerCount, listeners);
    }

    /// Deals with what the program has sent.
    void work()
    {
        for (int index = 0; index < listenerCount; ++index) {
            if (hasInput(IceGetListenConnectionNumber(listeners[index]))) {
                IceAcceptStatus status{};
                connection = IceAcceptConnection(listeners[index], &status);
            }
        }
        while (connection != nullptr && hasInput(IceConnectionNumber(connection))) {
            switch (IceProcessMessages(connection, nullptr, nullptr)) {
            case IceProcessMessagesSuccess:
                break;
            case IceProcessMessagesIOError:
                disconnect();
                break;
            case IceProcessMessagesConnectionClosed: // and given back by the library
                connection = nullptr;
                break;
            }
        }
    }

    std::string ownAddress;
    SmsConn client = nullptr;
    bool isRegistered = false;
    int saves = 0;
    std::optional<int> restartStyle;

private:
    void disconnect()
    {
        if (client != nullptr) {
            SmsCleanUp(std::exchange(client, nullptr));
        }
        if (connection != nullptr) {
            IceSetShutdownNegotiation(connection, False);
            IceCloseConnection(std::exchange(connection, nullptr));
        }
    }

    static bool hasInput(int descriptor)
    {
        pollfd input{.fd = descriptor, .events = POLLIN, .revents = 0};
        return ::poll(&input, 1, 0) == 1;
    }

    static Bool acceptEveryHost(char* /*host*/) { return True; }

    static Protocol& of(SmPointer data) { return *static_cast<Protocol*>(data); }

    static Status welcome(
        SmsConn client,
        SmPointer /*data*/,
        unsigned long* mask,
        SmsCallbacks* callbacks,
        char** /*failure*/)
    {
        current->client = client;
        *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
                SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
                SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask |
                SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
        *callbacks = {};
        SmPointer const self = current;
        callbacks->register_client = {
            [](SmsConn conn, SmPointer data, char* /*previous*/) -> Status {
                char* const id = SmsGenerateClientID(conn);
                const Status status = SmsRegisterClientReply(conn, id);
                std::free(id);
                of(data).isRegistered = true;
                return status;
            },
            self};
        callbacks->interact_request = {[](SmsConn, SmPointer, int) {}, self};
        callbacks->interact_done = {[](SmsConn, SmPointer, Bool) {}, self};
        callbacks->save_yourself_request = {
            [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}, self};
        callbacks->save_yourself_phase2_request = {[](SmsConn, SmPointer) {}, self};
        callbacks->save_yourself_done = {
            [](SmsConn conn, SmPointer data, Bool /*success*/) {
                ++of(data).saves;
                SmsSaveComplete(conn);
            },
            self};
        callbacks->close_connection = {
            [](SmsConn, SmPointer data, int count, char** reasons) {
                SmFreeReasons(count, reasons);
                of(data).disconnect();
            },
            self};
        callbacks->set_properties = {
            [](SmsConn, SmPointer data, int count, SmProp** properties) {
                for (int index = 0; index < count; ++index) {
                    of(data).note(*properties[index]);
                    SmFreeProperty(properties[index]);
                }
                std::free(properties);
            },
            self};
        callbacks->delete_properties = {
            [](SmsConn, SmPointer, int count, char** names) {
                for (int index = 0; index < count; ++index) {
                    std::free(names[index]);
                }
                std::free(names);
            },
            self};
        callbacks->get_properties = {[](SmsConn, SmPointer) {}, self};
        return 1;
    }

    void note(const SmProp& property)
    {
        if (std::strcmp(property.name, SmRestartStyleHint) == 0 && property.num_vals == 1) {
            restartStyle = *static_cast<const unsigned char*>(property.vals[0].value);
        }
    }

    /// The library asks for a new program's callbacks without saying for whom.
    static inline Protocol* current = nullptr;

    int listenerCount = 0;
    IceListenObj* listeners = nullptr;
    IceConn connection = nullptr;
};

SessionManager::SessionManager()
    : protocol(std::make_unique<Protocol>())
{}

SessionManager::~SessionManager() = default;

const std::string& SessionManager::address() const
{
    return protocol->ownAddress;
}

bool SessionManager::awaitClient()
{
    return await([this] {
        protocol->work();
        return protocol->isRegistered;
    });
}

bool SessionManager::save()
{
    const int before = protocol->saves;
    SmsSaveYourself(protocol->client, SmSaveBoth, False, SmInteractStyleNone, False);
    return await([this, before] {
        protocol->work();
        return protocol->saves > before;
    });
}

std::optional<int> SessionManager::restartStyle() const
{
    return protocol->restartStyle;
}

} // namespace orlimo

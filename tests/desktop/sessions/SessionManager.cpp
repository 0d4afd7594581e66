#include "tests/desktop/sessions/SessionManager.h"

#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>

#include <poll.h>

#include <X11/ICE/ICEutil.h>

namespace orlimo {

namespace {

/// The library asks for a new program's callbacks without saying for whom.
SessionManager* current = nullptr;

Bool acceptEveryHost(char* /*name*/)
{
    return True;
}

bool hasInput(int descriptor)
{
    pollfd input{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&input, 1, 0) == 1;
}

} // namespace

SessionManager::SessionManager()
{
    std::array<char, 256> error{};
    static const bool isReady = SmsInitialize(
                                    "Orlimo's tests",
                                    "1",
                                    &SessionManager::welcome,
                                    nullptr,
                                    &acceptEveryHost,
                                    error.size(),
                                    error.data()) != 0;
    EXPECT_TRUE(isReady) << error.data();
    EXPECT_NE(IceListenForConnections(&listenerCount, &listeners, error.size(), error.data()), 0)
        << error.data();
    for (int index = 0; index < listenerCount; ++index) {
        IceSetHostBasedAuthProc(listeners[index], &acceptEveryHost);
    }
    char* const list = IceComposeNetworkIdList(listenerCount, listeners);
    ownAddress = list;
    std::free(list);
    current = this;
}

SessionManager::~SessionManager()
{
    current = nullptr;
    if (client != nullptr) {
        SmsCleanUp(client);
    }
    if (connection != nullptr) {
        IceSetShutdownNegotiation(connection, False);
        IceCloseConnection(connection);
    }
    IceFreeListenObjs(listenerCount, listeners);
}

Status SessionManager::welcome(
    SmsConn newClient,
    SmPointer /*data*/,
    unsigned long* mask,
    SmsCallbacks* callbacks,
    char** /*failure*/)
{
    current->client = newClient;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    *callbacks = {};
    callbacks->register_client.callback = [](SmsConn conn, SmPointer, char*) -> Status {
        char* const id = SmsGenerateClientID(conn);
        const Status status = SmsRegisterClientReply(conn, id);
        std::free(id);
        current->isRegistered = true;
        return status;
    };
    callbacks->interact_request.callback = [](SmsConn, SmPointer, int) {};
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {
    };
    callbacks->save_yourself_phase2_request.callback = [](SmsConn, SmPointer) {};
    callbacks->save_yourself_done.callback = [](SmsConn conn, SmPointer, Bool) {
        current->isSaved = true;
        SmsSaveComplete(conn);
    };
    callbacks->close_connection.callback = [](SmsConn, SmPointer, int count, char** reasons) {
        SmFreeReasons(count, reasons);
    };
    callbacks->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp** properties) {
        for (int index = 0; index < count; ++index) {
            const SmProp& property = *properties[index];
            if (std::strcmp(property.name, SmRestartStyleHint) == 0 && property.num_vals == 1) {
                current->style = *static_cast<const unsigned char*>(property.vals[0].value);
            }
            SmFreeProperty(properties[index]);
        }
        std::free(properties);
    };
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int count, char** names) {
        for (int index = 0; index < count; ++index) {
            std::free(names[index]);
        }
        std::free(names);
    };
    callbacks->get_properties.callback = [](SmsConn, SmPointer) {};
    return 1;
}

void SessionManager::processInput()
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

bool SessionManager::awaitClient()
{
    return await([this] {
        processInput();
        return isRegistered;
    });
}

bool SessionManager::save()
{
    SmsSaveYourself(client, SmSaveBoth, False, SmInteractStyleNone, False);
    return await([this] {
        processInput();
        return isSaved;
    });
}

} // namespace orlimo

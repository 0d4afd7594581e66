#include "platform/linux/SystemTraySelection.h"

#include "platform/linux/XcbReply.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QGuiApplication>

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace orlimo {

namespace {

xcb_connection_t* toolkitsConnection()
{
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

/// The number of the screen that DISPLAY names; the first one where it names none.
int screenNumber()
{
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    static_cast<void>(owned(host));
    return screen;
}

xcb_window_t rootOf(xcb_connection_t* connection, int screen)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int number = 0; number < screen && screens.rem > 1; ++number) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name)
{
    const auto reply = owned(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : XCB_NONE;
}

/// Has the server tell of changes of `window`, too, beside what it tells this connection already.
void listenTo(xcb_connection_t* connection, xcb_window_t window)
{
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!attributes) {
        return;
    }
    const std::array<std::uint32_t, 1> mask{
        attributes->your_event_mask | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    // The answer is awaited, or the toolkit complained of a window that has gone.
    static_cast<void>(owned(xcb_request_check(
        connection,
        xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, mask.data()))));
}

} // namespace

SystemTraySelection::SystemTraySelection(std::function<void()> whoIsTold)
    : didChange(std::move(whoIsTold))
    , connection(toolkitsConnection())
{
    if (connection == nullptr) {
        return;
    }
    lookSoon.setSingleShot(true);
    lookSoon.setInterval(0);
    QObject::connect(&lookSoon, &QTimer::timeout, this, &SystemTraySelection::look);
    const int screen = screenNumber();
    selection = atom(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screen));
    manager = atom(connection, "MANAGER");
    qGuiApp->installNativeEventFilter(this);
    listenTo(connection, rootOf(connection, screen));
    owner = listenToOwner();
}

bool SystemTraySelection::nativeEventFilter(
    const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType == "xcb_generic_event_t" &&
        tellsOfTrays(*static_cast<const xcb_generic_event_t*>(message)))
    {
        // Later, when the toolkit has dealt with it as well: it docks its icons anew.
        lookSoon.start();
    }
    return false;
}

bool SystemTraySelection::tellsOfTrays(const xcb_generic_event_t& event) const
{
    constexpr std::uint8_t sentByAProgram = 0x80;
    switch (event.response_type & ~sentByAProgram) {
    case XCB_CLIENT_MESSAGE: {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        return message.type == manager && message.data.data32[1] == selection;
    }
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == owner;
    default:
        return false;
    }
}

void SystemTraySelection::look()
{
    const bool had = hasOwner();
    owner = listenToOwner();
    if (hasOwner() != had) {
        didChange();
    }
}

xcb_window_t SystemTraySelection::listenToOwner() const
{
    if (const xcb_window_t first = currentOwner(); first != XCB_NONE) {
        listenTo(connection, first);
    }
    // Asked once more, because only from here on its end is told.
    return currentOwner();
}

xcb_window_t SystemTraySelection::currentOwner() const
{
    const auto reply = owned(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : XCB_NONE;
}

} // namespace orlimo

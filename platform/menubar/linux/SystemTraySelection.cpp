#include "platform/menubar/linux/SystemTraySelection.h"

#include "platform/display/linux/X11Connection.h"
#include "platform/display/linux/XcbReply.h"

#include <QByteArray>
#include <QGuiApplication>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace orlimo {

namespace {

/// Adds changes of `window` to the events that this connection receives.
void subscribeToEvents(xcb_connection_t* connection, xcb_window_t window)
{
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!attributes) {
        return;
    }
    const std::array<std::uint32_t, 1> mask{
        attributes->your_event_mask | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
        XCB_EVENT_MASK_PROPERTY_CHANGE};
    // Checked here, because Qt would log the error of a window that is gone.
    static_cast<void>(owned(xcb_request_check(
        connection,
        xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, mask.data()))));
}

} // namespace

SystemTraySelection::SystemTraySelection(std::function<void()> changed)
    : didChange(std::move(changed))
    , connection(x11Connection())
{
    if (connection == nullptr) {
        return;
    }
    refreshTimer.setSingleShot(true);
    refreshTimer.setInterval(0);
    QObject::connect(&refreshTimer, &QTimer::timeout, this, &SystemTraySelection::refresh);
    const int screen = x11ScreenNumber();
    selection = x11Atom(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screen));
    manager = x11Atom(connection, "MANAGER");
    colors = x11Atom(connection, "_NET_SYSTEM_TRAY_COLORS");
    qGuiApp->installNativeEventFilter(this);
    subscribeToEvents(connection, x11Root(connection, screen));
    owner = subscribeToOwner();
    color = publishedColor();
}

void SystemTraySelection::iconWasCreated()
{
    if (connection != nullptr) {
        refreshTimer.start();
    }
}

bool SystemTraySelection::nativeEventFilter(
    const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType == "xcb_generic_event_t" &&
        isTrayEvent(*static_cast<const xcb_generic_event_t*>(message)))
    {
        // Later, when Qt has handled the event too and docked its icons again.
        refreshTimer.start();
    }
    return false;
}

bool SystemTraySelection::isTrayEvent(const xcb_generic_event_t& event) const
{
    constexpr std::uint8_t sentEventFlag = 0x80;
    switch (event.response_type & ~sentEventFlag) {
    case XCB_CLIENT_MESSAGE: {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        return message.type == manager && message.data.data32[1] == selection;
    }
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == owner;
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        return change.window == owner && change.atom == colors;
    }
    default:
        return false;
    }
}

void SystemTraySelection::refresh()
{
    const bool hadOwner = hasOwner();
    const auto before = color;
    owner = subscribeToOwner();
    color = publishedColor();
    if (hasOwner() != hadOwner || color != before) {
        didChange();
    }
}

xcb_window_t SystemTraySelection::subscribeToOwner() const
{
    if (const xcb_window_t first = currentOwner(); first != XCB_NONE) {
        subscribeToEvents(connection, first);
    }
    // Queried again: only from here on is its end reported.
    return currentOwner();
}

xcb_window_t SystemTraySelection::currentOwner() const
{
    const auto reply = owned(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : XCB_NONE;
}

std::optional<QColor> SystemTraySelection::publishedColor() const
{
    if (!hasOwner()) {
        return std::nullopt;
    }
    // Four colors of three 16-bit parts each; the first one is that of text and symbols.
    constexpr std::uint32_t componentCount = 3;
    const auto reply = owned(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, owner, colors, XCB_ATOM_CARDINAL, 0, componentCount),
        nullptr));
    if (!reply || reply->format != 32 || reply->value_len != componentCount) {
        return std::nullopt;
    }
    const std::span values(
        static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())), componentCount);
    const auto component = [&](std::size_t index) {
        return static_cast<int>(values[index] >> 8U & 0xFFU);
    };
    return QColor(component(0), component(1), component(2));
}

} // namespace orlimo

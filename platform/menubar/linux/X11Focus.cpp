#include "platform/menubar/linux/X11Focus.h"

#include "platform/display/linux/X11Connection.h"
#include "platform/display/linux/XcbReply.h"
#include "platform/process/EnvironmentVariable.h"

#include <QByteArray>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include <sys/uio.h>
#include <xcb/xcbext.h>

namespace orlimo {

namespace {

/// The X Input extension, version 2, as its protocol numbers it.
namespace xinput {

constexpr std::string_view name = "XInputExtension";
constexpr std::uint8_t selectEvents = 46;
constexpr std::uint16_t allMasterDevices = 1;
constexpr std::uint16_t rawButtonPress = 15;

/// The request that selects events of one kind of device.
struct SelectEvents
{
    std::uint8_t majorOpcode;
    std::uint8_t minorOpcode;
    std::uint16_t length;
    std::uint32_t window;
    std::uint16_t maskCount;
    std::uint16_t padding;
    std::uint16_t device;
    std::uint16_t maskLength;
    std::uint32_t mask;
};
static_assert(sizeof(SelectEvents) == 20);

} // namespace xinput

/// How long before a loss of focus the press that caused it may have been: the window manager moves
/// the focus with a delay, and Qt waits for a focus that returns.
constexpr std::chrono::milliseconds gestureInterval{500};

/// The server reports wheels as buttons 4 to 7.
bool isWheel(std::uint32_t button)
{
    constexpr std::uint32_t first = 4;
    constexpr std::uint32_t last = 7;
    return button >= first && button <= last;
}

/// The button of a raw event: the field after event type, device and time.
std::uint32_t buttonOf(const xcb_ge_generic_event_t& event)
{
    constexpr std::size_t offset = 16;
    std::uint32_t button = 0;
    std::memcpy(&button, reinterpret_cast<const char*>(&event) + offset, sizeof(button));
    return button;
}

} // namespace

X11Focus::X11Focus(QWidget& window, PressHandler pressHandler, UptimeClock uptimeClock)
    : content(window)
    , handlePress(std::move(pressHandler))
    , clock(std::move(uptimeClock))
    , connection(x11Connection())
    , root(x11Root(connection, x11ScreenNumber()))
    , activeWindow(x11Atom(connection, "_NET_ACTIVE_WINDOW"))
{
    const auto extension = owned(xcb_query_extension_reply(
        connection,
        xcb_query_extension(
            connection, static_cast<std::uint16_t>(xinput::name.size()), xinput::name.data()),
        nullptr));
    if (extension && extension->present != 0) {
        inputExtension = extension->major_opcode;
    }
    content.installEventFilter(this);
    qGuiApp->installNativeEventFilter(this);
}

FocusLoss X11Focus::lastLoss() const
{
    // Without reported presses the window would never close afterwards.
    return inputExtension == 0 || wasJustPressed() ? FocusLoss::deliberate : loss;
}

/// Selects presses only while the window is visible, as each one wakes the program.
bool X11Focus::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &content && event->type() == QEvent::Show) {
        selectPresses(true);
    } else if (watched == &content && event->type() == QEvent::Hide) {
        selectPresses(false);
    }
    return QObject::eventFilter(watched, event);
}

bool X11Focus::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if (isPress(event)) {
        lastPress = clock();
        handlePress(QCursor::pos());
    } else if (isFocusChange(event) && event.response_type == XCB_FOCUS_IN) {
        recordTopLevels();
    } else if (isFocusChange(event)) {
        loss = !wasJustPressed() && isPointerInFocusedWindow() ? FocusLoss::followedPointer
                                                               : FocusLoss::deliberate;
    }
    return false;
}

void X11Focus::selectPresses(bool areSelected) const
{
    if (inputExtension == 0) {
        return;
    }
    xinput::SelectEvents request{
        .majorOpcode = inputExtension,
        .minorOpcode = xinput::selectEvents,
        .length = sizeof(xinput::SelectEvents) / 4,
        .window = root,
        .maskCount = 1,
        .padding = 0,
        .device = xinput::allMasterDevices,
        .maskLength = 1,
        .mask = areSelected ? 1U << xinput::rawButtonPress : 0U,
    };
    // The library writes to the two elements before the one passed.
    std::array<iovec, 3> parts{};
    parts[2] = {.iov_base = &request, .iov_len = sizeof(request)};
    const xcb_protocol_request_t kind{
        .count = 1, .ext = nullptr, .opcode = inputExtension, .isvoid = 1};
    xcb_send_request(connection, 0, &parts[2], &kind);
    xcb_flush(connection);
}

bool X11Focus::isPress(const xcb_generic_event_t& event) const
{
    if (inputExtension == 0 || event.response_type != XCB_GE_GENERIC) {
        return false;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    return generic.extension == inputExtension && generic.event_type == xinput::rawButtonPress &&
           !isWheel(buttonOf(generic));
}

bool X11Focus::isFocusChange(const xcb_generic_event_t& event) const
{
    if (event.response_type != XCB_FOCUS_IN && event.response_type != XCB_FOCUS_OUT) {
        return false;
    }
    static_assert(std::is_same_v<xcb_focus_in_event_t, xcb_focus_out_event_t>);
    const auto& change = reinterpret_cast<const xcb_focus_in_event_t&>(event);
    // A keyboard grab, for example for a menu, does not move the focus.
    return change.event == content.internalWinId() && change.mode != XCB_NOTIFY_MODE_GRAB &&
           change.mode != XCB_NOTIFY_MODE_UNGRAB && change.detail != XCB_NOTIFY_DETAIL_INFERIOR;
}

void X11Focus::recordTopLevels()
{
    const auto tree =
        owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    if (tree) {
        const std::span children(
            xcb_query_tree_children(tree.get()),
            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
        topLevels.assign(children.begin(), children.end());
    }
}

bool X11Focus::wasJustPressed() const
{
    return lastPress && clock() - *lastPress < gestureInterval;
}

bool X11Focus::isPointerInFocusedWindow() const
{
    const auto pointer =
        owned(xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr));
    const auto focus =
        owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (!pointer || !focus) {
        return false;
    }
    if (pointer->child == XCB_NONE) {
        // Over the bare desktop. XWayland reports the same over the windows of Wayland clients.
        return environmentVariable("WAYLAND_DISPLAY").empty() && !isAnotherWindowActive();
    }
    const bool isNew = std::ranges::find(topLevels, pointer->child) == topLevels.end();
    return !isNew && x11TopLevelOf(connection, root, focus->focus) == pointer->child;
}

bool X11Focus::isAnotherWindowActive() const
{
    const auto reply = owned(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, root, activeWindow, XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    if (!reply || reply->format != 32 || reply->value_len != 1) {
        return false;
    }
    const xcb_window_t active =
        *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    return active != XCB_NONE && active != content.internalWinId();
}

} // namespace orlimo

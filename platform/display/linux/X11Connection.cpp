#include "platform/display/linux/X11Connection.h"

#include "platform/display/linux/XcbReply.h"

#include <QGuiApplication>

#include <cstdint>

namespace orlimo {

xcb_connection_t* x11Connection()
{
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

int x11ScreenNumber()
{
    char* hostName = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &hostName, &display, &screen);
    static_cast<void>(owned(hostName));
    return screen;
}

xcb_window_t x11Root(xcb_connection_t* connection, int screen)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int number = 0; number < screen && screens.rem > 1; ++number) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

xcb_atom_t x11Atom(xcb_connection_t* connection, std::string_view name)
{
    const auto reply = owned(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : XCB_NONE;
}

xcb_window_t x11TopLevelOf(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window)
{
    while (const auto tree =
               owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr)))
    {
        if (tree->parent == root || tree->parent == XCB_NONE) {
            return window;
        }
        window = tree->parent;
    }
    return XCB_NONE;
}

} // namespace orlimo

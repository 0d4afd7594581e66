#include "tests/desktop/sessions/x11/SelectionOwnerChanges.h"

#include "platform/display/linux/XcbReply.h"

#include <gtest/gtest.h>

#include <string_view>

#include <xcb/xfixes.h>

namespace orlimo {

SelectionOwnerChanges::SelectionOwnerChanges(const std::string& display)
    : connection(xcb_connect(display.c_str(), nullptr))
{
    EXPECT_EQ(xcb_connection_has_error(connection), 0) << display;
    (void)owned(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
    constexpr std::string_view name = "CLIPBOARD";
    const auto clipboard = owned(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr));
    xcb_xfixes_select_selection_input(
        connection,
        xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root,
        clipboard->atom,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    awaitServer();
}

SelectionOwnerChanges::~SelectionOwnerChanges()
{
    xcb_disconnect(connection);
}

std::size_t SelectionOwnerChanges::count()
{
    awaitServer();
    // No other events were asked for.
    while (owned(xcb_poll_for_event(connection))) {
        ++seen;
    }
    return seen;
}

/// Returns when the server has done what it was asked, and its events are here.
void SelectionOwnerChanges::awaitServer() const
{
    (void)owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

} // namespace orlimo

#include "tests/desktop/sessions/x11/XWindows.h"

#include "platform/display/linux/XcbReply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <span>

namespace orlimo {

XWindows::XWindows(const std::string& display)
    : connection(xcb_connect(display.c_str(), nullptr))
{
    if (xcb_connection_has_error(connection.get()) != 0) {
        ADD_FAILURE() << "no connection to the X server " << display;
        return;
    }
    root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
}

bool XWindows::hasWindowManager() const
{
    return !numbers(root, "_NET_SUPPORTING_WM_CHECK").empty();
}

bool XWindows::hasTray() const
{
    return tray() != XCB_NONE;
}

xcb_window_t XWindows::tray() const
{
    const auto reply = owned(xcb_get_selection_owner_reply(
        connection.get(),
        xcb_get_selection_owner(connection.get(), atom("_NET_SYSTEM_TRAY_S0")),
        nullptr));
    return reply ? reply->owner : XCB_NONE;
}

void XWindows::triggerPropertyChange() const
{
    const xcb_atom_t property = atom("ORLIMO_TEST");
    xcb_change_property(
        connection.get(), XCB_PROP_MODE_REPLACE, root, property, XCB_ATOM_INTEGER, 8, 0, nullptr);
    xcb_flush(connection.get());
}

std::vector<XWindow> XWindows::windowsOf(std::uint32_t process) const
{
    triggerPropertyChange();
    std::vector<XWindow> found;
    for (const xcb_window_t window : numbers(root, "_NET_CLIENT_LIST_STACKING")) {
        const auto description = describe(window);
        if (description && (process == 0 || description->process == process)) {
            found.push_back(*description);
        }
    }
    return found;
}

std::optional<XWindow> XWindows::activeWindow() const
{
    triggerPropertyChange();
    const auto active = numbers(root, "_NET_ACTIVE_WINDOW");
    return active.empty() ? std::nullopt : describe(active.front());
}

std::optional<QRect> XWindows::trayIconOf(std::uint32_t process) const
{
    triggerPropertyChange();
    for (const xcb_window_t topLevel : childrenOf(root)) {
        for (const xcb_window_t child : childrenOf(topLevel)) {
            if (const auto icon = embeddedIn(child, process)) {
                return icon;
            }
        }
    }
    return std::nullopt;
}

std::optional<QRect> XWindows::menuOf(std::uint32_t process) const
{
    for (const xcb_window_t topLevel : childrenOf(root)) {
        if (belongsTo(topLevel, process) && isViewable(topLevel)) {
            return areaOf(topLevel);
        }
    }
    return std::nullopt;
}

QImage XWindows::picture(const QRect& area) const
{
    const auto reply = owned(xcb_get_image_reply(
        connection.get(),
        xcb_get_image(
            connection.get(),
            XCB_IMAGE_FORMAT_Z_PIXMAP,
            root,
            static_cast<std::int16_t>(area.x()),
            static_cast<std::int16_t>(area.y()),
            static_cast<std::uint16_t>(area.width()),
            static_cast<std::uint16_t>(area.height()),
            ~0U),
        nullptr));
    // Four bytes a pixel, of which the last means nothing.
    return reply ? QImage(
                       xcb_get_image_data(reply.get()),
                       area.width(),
                       area.height(),
                       QImage::Format_RGB32)
                       .copy()
                 : QImage();
}

std::size_t XWindows::colorsIn(const QRect& area) const
{
    const QImage shown = picture(area);
    std::set<QRgb> colors;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            colors.insert(shown.pixelColor(x, y).rgb());
        }
    }
    return colors.size();
}

void XWindows::publishTrayColor(const QColor& textColor) const
{
    const xcb_window_t owner = tray();
    ASSERT_NE(owner, XCB_NONE) << "no tray";
    // Text, error, warning and success; 16 bits of red, green and blue each.
    constexpr std::uint32_t widen = 0x101;
    std::array<std::uint32_t, 12> values{};
    values[0] = static_cast<std::uint32_t>(textColor.red()) * widen;
    values[1] = static_cast<std::uint32_t>(textColor.green()) * widen;
    values[2] = static_cast<std::uint32_t>(textColor.blue()) * widen;
    xcb_change_property(
        connection.get(),
        XCB_PROP_MODE_REPLACE,
        owner,
        atom("_NET_SYSTEM_TRAY_COLORS"),
        XCB_ATOM_CARDINAL,
        32,
        values.size(),
        values.data());
    xcb_flush(connection.get());
}

bool XWindows::belongsTo(xcb_window_t window, std::uint32_t process) const
{
    const auto owner = numbers(window, "_NET_WM_PID");
    return !owner.empty() && owner.front() == process;
}

std::optional<QRect> XWindows::embeddedIn(xcb_window_t window, std::uint32_t process) const
{
    if (belongsTo(window, process)) {
        const auto managed = numbers(root, "_NET_CLIENT_LIST");
        const bool isIcon = isViewable(window) && std::ranges::count(managed, window) == 0;
        return isIcon ? areaOf(window) : std::nullopt;
    }
    for (const xcb_window_t child : childrenOf(window)) {
        if (const auto icon = embeddedIn(child, process)) {
            return icon;
        }
    }
    return std::nullopt;
}

std::optional<XWindow> XWindows::describe(xcb_window_t window) const
{
    const auto area = areaOf(window);
    if (!area || !isViewable(window)) {
        return std::nullopt;
    }
    const auto processes = numbers(window, "_NET_WM_PID");
    const std::string title = text(window, "_NET_WM_NAME");
    XWindow description{
        .id = window,
        .process = processes.empty() ? 0 : processes.front(),
        .title = title.empty() ? text(window, "WM_NAME") : title,
        .area = *area,
    };
    const auto extents = numbers(window, "_NET_FRAME_EXTENTS");
    if (extents.size() == 4) {
        description.frame = {
            static_cast<int>(extents[0]),
            static_cast<int>(extents[2]),
            static_cast<int>(extents[1]),
            static_cast<int>(extents[3])};
    }
    // The hints start with flags; the smallest and the largest size follow four numbers later.
    const auto hints = numbers(window, "WM_NORMAL_HINTS");
    constexpr std::uint32_t bothSizes = 16 + 32;
    description.resizable = hints.size() < 9 || (hints[0] & bothSizes) != bothSizes ||
                            hints[5] != hints[7] || hints[6] != hints[8];
    // These start with flags, too; the functions that the window is to have are the second number.
    const auto motifHints = numbers(window, "_MOTIF_WM_HINTS");
    constexpr std::uint32_t namesFunctions = 1;
    if (motifHints.size() > 1 && (motifHints[0] & namesFunctions) != 0) {
        constexpr std::uint32_t everyFunction = 1;
        constexpr std::uint32_t minimize = 8;
        constexpr std::uint32_t close = 32;
        description.minimizable = (motifHints[1] & (everyFunction | minimize)) != 0;
        description.closable = (motifHints[1] & (everyFunction | close)) != 0;
    }
    return description;
}

xcb_atom_t XWindows::atom(const std::string& name) const
{
    const auto reply = owned(xcb_intern_atom_reply(
        connection.get(),
        xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    return reply ? reply->atom : XCB_NONE;
}

template <typename Value>
std::vector<Value> XWindows::values(xcb_window_t window, const std::string& property) const
{
    constexpr std::uint32_t most = 1024;
    const auto reply = owned(xcb_get_property_reply(
        connection.get(),
        xcb_get_property(
            connection.get(), 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, most),
        nullptr));
    if (!reply || reply->format != 8 * sizeof(Value)) {
        return {};
    }
    const std::span found(
        static_cast<const Value*>(xcb_get_property_value(reply.get())), reply->value_len);
    return {found.begin(), found.end()};
}

std::vector<std::uint32_t> XWindows::numbers(xcb_window_t window, const std::string& property) const
{
    return values<std::uint32_t>(window, property);
}

std::string XWindows::text(xcb_window_t window, const std::string& property) const
{
    const auto characters = values<char>(window, property);
    return {characters.begin(), characters.end()};
}

bool XWindows::isViewable(xcb_window_t window) const
{
    const auto reply = owned(xcb_get_window_attributes_reply(
        connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::optional<QRect> XWindows::areaOf(xcb_window_t window) const
{
    const auto size = owned(xcb_get_geometry_reply(
        connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(
        connection.get(),
        xcb_translate_coordinates(connection.get(), window, root, 0, 0),
        nullptr));
    if (!size || !place) {
        return std::nullopt;
    }
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

std::vector<xcb_window_t> XWindows::childrenOf(xcb_window_t window) const
{
    const auto tree = owned(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
    if (!tree) {
        return {};
    }
    const std::span children(
        xcb_query_tree_children(tree.get()),
        static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    return {children.begin(), children.end()};
}

} // namespace orlimo

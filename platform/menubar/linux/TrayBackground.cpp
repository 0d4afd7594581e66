#include "platform/menubar/linux/TrayBackground.h"

#include "platform/display/linux/X11Connection.h"
#include "platform/display/linux/XcbReply.h"
#include "platform/process/EnvironmentVariable.h"

#include <QRgb>

#include <cstdint>
#include <cstring>

namespace orlimo {

namespace {

std::optional<QRgb>
screenPixel(xcb_connection_t* connection, xcb_window_t root, std::int16_t x, std::int16_t y)
{
    constexpr std::uint32_t allPlanes = ~0U;
    const auto image = owned(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, x, y, 1, 1, allPlanes),
        nullptr));
    constexpr int supportedDepth = 24;
    QRgb pixel = 0;
    if (!image || image->depth != supportedDepth ||
        xcb_get_image_data_length(image.get()) != static_cast<int>(sizeof(pixel)))
    {
        return std::nullopt;
    }
    std::memcpy(&pixel, xcb_get_image_data(image.get()), sizeof(pixel));
    return pixel;
}

} // namespace

std::optional<QColor> trayBackground(xcb_window_t icon)
{
    xcb_connection_t* const connection = x11Connection();
    // XWayland has no screen of its own and knows only the content of X windows.
    if (connection == nullptr || !environmentVariable("WAYLAND_DISPLAY").empty()) {
        return std::nullopt;
    }
    const xcb_window_t root = x11Root(connection, x11ScreenNumber());
    const auto corner = owned(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, icon, root, 0, 0), nullptr));
    if (!corner || corner->child != x11TopLevelOf(connection, root, icon)) {
        return std::nullopt;
    }
    const auto pixel = screenPixel(connection, root, corner->dst_x, corner->dst_y);
    return pixel ? std::optional(QColor(*pixel)) : std::nullopt;
}

} // namespace orlimo

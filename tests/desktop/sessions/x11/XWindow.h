#pragma once

#include <QMargins>
#include <QRect>

#include <cstdint>
#include <string>

namespace orlimo {

/// A window on an X server, as it was when it was asked for.
struct XWindow
{
    std::uint32_t id = 0;
    /// The process that made it; 0 when it does not say.
    std::uint32_t process = 0;
    std::string title{};
    /// What the program draws, without a frame, in pixels of the screen.
    QRect area{};
    /// How far the window manager's frame stands out around that.
    QMargins frame{};
    /// Whether the user may change its size.
    bool resizable = true;
    /// Whether the program asks for a button that closes it, and for one that minimises it.
    bool closable = true;
    bool minimizable = true;
};

} // namespace orlimo

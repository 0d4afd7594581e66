#pragma once

#include <QRect>

#include <cstdint>
#include <string>

namespace orlimo {

/// A window as the compositor knows it.
struct SwayWindow
{
    std::int64_t process = 0;
    std::string title;
    /// What the program calls itself to the compositor.
    std::string appId;
    QRect area;
    bool isFocused = false;
    bool isFloating = false;
    /// Whether the program speaks Wayland itself.
    bool isWayland = false;
};

} // namespace orlimo

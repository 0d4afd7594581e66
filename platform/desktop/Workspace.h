#pragma once

#include <QRect>
#include <QRectF>
#include <QUrl>

#include <optional>

class QWidget;

namespace orlimo {

/// Opens `url` with the program that the user prefers for it. Returns without waiting for that
/// program; false if the system says at once that nothing opens the URL. Main thread.
bool openUrl(const QUrl& url);

/// Brings a visible window to the front of all windows, whether or not the program is the active
/// one, as far as the system lets a program do that. Main thread.
void orderFrontRegardless(QWidget& window);

/// The main screen's whole frame in points, panels included. None if there is no screen. Main
/// thread.
[[nodiscard]] std::optional<QRect> mainScreenFrame();

/// Converts a rectangle from the system's screen coordinates to Qt's: points, counted downwards
/// from the upper left corner of the primary screen. Main thread.
[[nodiscard]] QRectF fromSystemCoordinates(const QRectF& rectangle);

} // namespace orlimo

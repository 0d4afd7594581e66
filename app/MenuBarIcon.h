#pragma once

#include <QIcon>
#include <QWidget>

namespace orlimo {

/// The menu bar's label: the image "StatusBarIcon" in a frame of 16 by 16 points, in the text's
/// color. Main thread.
class MenuBarIcon : public QWidget
{
    Q_OBJECT

public:
    MenuBarIcon();

    [[nodiscard]] QSize sizeHint() const override { return frameSize; }

    /// The same image for a tray that draws the label itself: a template that takes on the color
    /// of the tray's text.
    [[nodiscard]] static QIcon icon();

    /// Points.
    static constexpr QSize frameSize{16, 16};
};

} // namespace orlimo

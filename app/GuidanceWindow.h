#pragma once

#include <QTimer>
#include <QWidget>

namespace orlimo {

/// The window around `HelperView`: a title bar and a close button, a content of 500 by 500 points,
/// and a dark surface in light and dark schemes alike, because the view's texts are white. Main
/// thread.
class GuidanceWindow : public QWidget
{
    Q_OBJECT

public:
    /// Takes `content` over. `contentArea` is the content's place on the screen, without the frame.
    GuidanceWindow(QWidget* content, const QRect& contentArea);

    static constexpr QSize contentSize{500, 500};

    /// Where the window stands on a screen of this frame: in the middle of its whole size.
    [[nodiscard]] static QRect contentAreaOn(const QRect& screenFrame);

protected:
    /// Undoes being minimized: the window has no button for that, but some window managers offer it
    /// all the same, and one without a task bar would not show the window again.
    void changeEvent(QEvent* event) override;

private:
    QTimer restoring;
};

} // namespace orlimo

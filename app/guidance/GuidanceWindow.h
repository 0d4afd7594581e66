#pragma once

#include <QTimer>
#include <QWidget>

namespace orlimo {

/// The window around `HelperView`: a title bar and a close button, a content of 500 by 500 points,
/// and a dark surface in light and dark schemes alike, because the view's texts are white. No
/// control has the keyboard focus when it is shown: Tab gives it to the first. Main thread.
class GuidanceWindow : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of `content`. `contentArea` is the content's place on the screen in points,
    /// without the frame; rounded to whole points.
    GuidanceWindow(QWidget* content, const QRectF& contentArea);

    static constexpr QSize contentSize{500, 500};

    /// Where the window's content stands, in the system's screen coordinates, with a main screen of
    /// this frame: in the middle of its whole size, exactly. Where the screen lies does not count.
    [[nodiscard]] static QRectF contentAreaOn(const QRect& screenFrame);

protected:
    /// Undoes being minimized: the window has no button for that, but some window managers offer it
    /// all the same, and one without a task bar would not show the window again.
    void changeEvent(QEvent* event) override;

private:
    QTimer restoreTimer;
};

} // namespace orlimo

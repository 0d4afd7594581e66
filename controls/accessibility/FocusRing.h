#pragma once

#include <QWidget>

namespace orlimo {

/// The ring around the control that the keyboard works on. It appears when the focus came by the
/// keyboard or a key is pressed, comes back when its window has the focus again, and lies over the
/// window outside the control's own area, so that no control needs space for it.
class FocusRing : public QWidget
{
public:
    /// Gives `control` a ring for as long as it lives. What is visible of the control lies `inset`
    /// points inside its area and has corners of the radius `cornerRadius`.
    static void attach(QWidget& control, double cornerRadius, int inset = 0);

    /// How far the ring reaches beyond the control, in points.
    static constexpr int outset = 3;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    FocusRing(QWidget& targetControl, double radius, int controlInset);

    void showAroundControl();

    QWidget& control;
    double cornerRadius;
    int inset;
    /// Whether the focus went to another window while the ring was there.
    bool restoreOnActivation = false;
};

} // namespace orlimo

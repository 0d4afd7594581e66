#pragma once

#include <QWidget>

namespace orlimo {

/// Gives a window the keyboard focus itself each time that it is shown, instead of its first
/// control or the one of last time, on which the space bar would work without a ring. The first Tab
/// leads to the first control. Main thread.
class InitialFocus : public QObject
{
public:
    /// For as long as `window` lives.
    static void attach(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit InitialFocus(QWidget& targetWindow);

    QWidget& window;
};

} // namespace orlimo

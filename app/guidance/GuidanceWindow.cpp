#include "app/guidance/GuidanceWindow.h"

#include "controls/accessibility/AccessibleWindow.h"
#include "controls/accessibility/InitialFocus.h"
#include "controls/painting/Colors.h"
#include "resources/ImageIcon.h"

#include <QEvent>
#include <QPalette>
#include <QVBoxLayout>

namespace orlimo {

namespace {

constexpr QColor surface(32, 33, 38);

/// The application's palette with its accent, on a dark surface.
QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, surface);
    palette.setColor(QPalette::WindowText, Qt::white);
    return palette;
}

} // namespace

GuidanceWindow::GuidanceWindow(QWidget* content, const QRectF& contentArea)
    : QWidget(
          nullptr,
          Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    installAccessibleWindowFactory();
    InitialFocus::attach(*this);
    setWindowIcon(imageIcon(QStringLiteral("logo")));
    setPalette(darkPalette());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    setFixedSize(contentArea.size().toSize());
    // Qt places windows on whole points only, on every system.
    setGeometry(contentArea.toRect());
    restoreTimer.setSingleShot(true);
    restoreTimer.setInterval(0);
    connect(&restoreTimer, &QTimer::timeout, this, [this] {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        activateWindow();
    });
}

QRectF GuidanceWindow::contentAreaOn(const QRect& screenFrame)
{
    const QSizeF free = screenFrame.size() - contentSize;
    return {QPointF(free.width() * 0.5, free.height() * 0.5), QSizeF(contentSize)};
}

void GuidanceWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized()) {
        // Later, when Qt has dealt with the change.
        restoreTimer.start();
    }
}

} // namespace orlimo

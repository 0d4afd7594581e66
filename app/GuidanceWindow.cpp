#include "app/GuidanceWindow.h"

#include "controls/AccessibleWindow.h"
#include "controls/Colors.h"
#include "resources/ImageIcon.h"

#include <QPalette>
#include <QShowEvent>
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

GuidanceWindow::GuidanceWindow(QWidget* content, const QRect& contentArea)
    : QWidget(
          nullptr,
          Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    announceWindows();
    setWindowIcon(imageIcon(QStringLiteral("logo")));
    setPalette(darkPalette());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    setFixedSize(contentArea.size());
    setGeometry(contentArea);
}

void GuidanceWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Qt would give the focus to the button, unseen, and Tab would have nowhere to go.
    if (!event->spontaneous()) {
        setFocus();
    }
}

QRect GuidanceWindow::contentAreaOn(const QRect& screenFrame)
{
    return {
        QPoint(
            (screenFrame.width() - contentSize.width()) / 2,
            (screenFrame.height() - contentSize.height()) / 2),
        contentSize};
}

} // namespace orlimo

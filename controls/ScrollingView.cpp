#include "controls/ScrollingView.h"

#include <QCoreApplication>
#include <QMoveEvent>
#include <QShowEvent>
#include <QStyle>

namespace orlimo {

ScrollingView::ScrollingView(std::unique_ptr<QWidget> view)
    : bar(new QScrollBar(Qt::Vertical, this))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWindowTitle(view->windowTitle());
    setAccessibleName(view->accessibleName());
    // The area's own bar would take its width from the view.
    QScrollBar& areaScrollBar = *verticalScrollBar();
    connect(&areaScrollBar, &QScrollBar::rangeChanged, this, &ScrollingView::placeScrollBar);
    connect(&areaScrollBar, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, &areaScrollBar, &QScrollBar::setValue);
    setWidget(view.release());
    setFixedSize(widget()->size());
    placeScrollBar();
}

void ScrollingView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    placeScrollBar();
}

void ScrollingView::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        verticalScrollBar()->setValue(0);
    }
    QScrollArea::showEvent(event);
}

void ScrollingView::scrollContentsBy(int dx, int dy)
{
    QScrollArea::scrollContentsBy(dx, dy);
    // A widget that moves with its parent gets no event, and the focus ring is placed by one.
    if (QWidget* const focused = focusWidget()) {
        QMoveEvent moved(focused->pos(), focused->pos());
        QCoreApplication::sendEvent(focused, &moved);
    }
}

void ScrollingView::placeScrollBar()
{
    const QScrollBar& areaScrollBar = *verticalScrollBar();
    bar->setPageStep(areaScrollBar.pageStep());
    bar->setSingleStep(areaScrollBar.singleStep());
    bar->setRange(areaScrollBar.minimum(), areaScrollBar.maximum());
    bar->setVisible(areaScrollBar.maximum() > areaScrollBar.minimum());
    const int thickness = bar->sizeHint().width();
    const QRect trailing(width() - thickness, 0, thickness, height());
    bar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), trailing));
    bar->raise();
}

} // namespace orlimo

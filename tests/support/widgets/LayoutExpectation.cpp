#include "tests/support/widgets/LayoutExpectation.h"

#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/accessibility/FocusRing.h"
#include "controls/painting/Colors.h"
#include "tests/support/widgets/Picture.h"

#include <QPainter>
#include <QWidget>
#include <gtest/gtest.h>

#include <string>

namespace orlimo {

namespace {

/// What is fainter than that is the smoothing of an edge: nobody sees it cut.
constexpr int visibleAlpha = 64;
constexpr int visibleDifference = 32;

/// How a failure names the widget.
std::string nameOf(const QWidget& widget)
{
    std::string name = widget.metaObject()->className();
    if (!widget.objectName().isEmpty()) {
        name += " \"" + widget.objectName().toStdString() + "\"";
    }
    const QVariant text = widget.property("text");
    return text.isValid() ? name + ", text \"" + text.toString().toStdString() + "\"" : name;
}

/// The children that take part in the layout.
QList<QWidget*> laidOutChildren(const QWidget& parent)
{
    QList<QWidget*> children;
    for (QWidget* child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (dynamic_cast<FocusRing*>(child) == nullptr && !child->isWindow()) {
            children.append(child);
        }
    }
    return children;
}

void expectApartAndInside(const QWidget& parent)
{
    const auto children = laidOutChildren(parent);
    for (qsizetype index = 0; index < children.size(); ++index) {
        const QRect area = children[index]->geometry();
        EXPECT_TRUE(parent.rect().contains(area) || area.isEmpty())
            << nameOf(*children[index]) << " at " << testing::PrintToString(area)
            << " reaches out of " << nameOf(parent) << " of "
            << testing::PrintToString(parent.size());
        for (qsizetype other = 0; other < index; ++other) {
            EXPECT_FALSE(area.intersects(children[other]->geometry()))
                << nameOf(*children[index]) << " and " << nameOf(*children[other]) << " overlap";
        }
    }
}

/// Expects that what a widget with a text paints of it keeps at least one pixel away from the edges
/// of its content: more of it would be seen if there were more.
void expectInkWithin(QWidget& widget)
{
    const QVariant text = widget.property("text");
    const Picture whole = Picture::of(widget);
    const double pixel = 1 / whole.pixelsPerPoint();
    const QRectF inside =
        QRectF(widget.contentsRect()).marginsRemoved({pixel, pixel, pixel, pixel});
    const QRect place = widget.geometry();
    widget.setProperty("text", QString());
    const Picture empty = Picture::of(widget);
    widget.setProperty("text", text);
    ASSERT_EQ(widget.geometry(), place);
    const QRectF ink = whole.differenceFrom(empty);
    EXPECT_FALSE(ink.isEmpty() && !text.toString().isEmpty())
        << nameOf(widget) << " paints no text";
    EXPECT_TRUE(inside.contains(ink) || ink.isEmpty())
        << nameOf(widget) << " paints its text at " << testing::PrintToString(ink) << ", outside "
        << testing::PrintToString(inside);
}

/// Draws what `label` shows, with the label's top left corner at `origin` and no edges to it.
void drawUnclipped(const TextLabel& label, QPainter& painter, QPointF origin)
{
    const TextBlock block = label.hasHeightForWidth()
                                ? TextBlock::wrapped(label.text(), label.font(), label.width())
                                : TextBlock::fitted(label.text(), label.font(), label.width());
    painter.setPen(label.paintedColor());
    block.draw(painter, origin + label.textArea().topLeft());
}

void expectTextWhole(TextLabel& label)
{
    const QRectF inside = QRectF(label.rect());
    EXPECT_TRUE(inside.contains(label.textArea()))
        << nameOf(label) << " of " << testing::PrintToString(label.size()) << " has its text at "
        << testing::PrintToString(label.textArea());
    constexpr int margin = 20;
    const Picture unclipped = Picture::drawn(
        label.size() + 2 * QSize(margin, margin),
        label.devicePixelRatioF(),
        [&](QPainter& painter) { drawUnclipped(label, painter, QPointF(margin, margin)); });
    const QRectF ink = unclipped.ink(visibleAlpha).translated(-margin, -margin);
    EXPECT_TRUE(inside.contains(ink))
        << nameOf(label) << " of " << testing::PrintToString(label.size())
        << " cuts its text, which is " << testing::PrintToString(ink);
    EXPECT_EQ(Picture::of(label).ink(visibleAlpha), ink & inside) << nameOf(label);
}

void expectTextWhole(QWidget& widget)
{
    if (auto* label = qobject_cast<TextLabel*>(&widget)) {
        expectTextWhole(*label);
        return;
    }
    if (const auto* button = qobject_cast<TextButton*>(&widget)) {
        const QRectF inside(button->rect().marginsRemoved(button->margins()));
        EXPECT_TRUE(inside.contains(button->labelArea()))
            << nameOf(widget) << " of " << testing::PrintToString(button->size())
            << " has its label at " << testing::PrintToString(button->labelArea());
    }
    if (widget.property("text").isValid()) {
        expectInkWithin(widget);
    }
}

} // namespace

void layOut(QWidget& widget)
{
    (void)widget.grab();
}

QRect areaIn(const QWidget& ancestor, const QWidget& widget)
{
    return {widget.mapTo(&ancestor, QPoint(0, 0)), widget.size()};
}

void expectLabelsWholeAt(double scale, QWidget& window)
{
    const auto labels = window.findChildren<TextLabel*>();
    EXPECT_FALSE(labels.isEmpty());
    // Only what is beyond the labels counts: where a line lies exactly between two pixels, it may
    // come to stand on either.
    const auto withLabelsCovered = [&](const QList<TextLabel*>& drawn) {
        return Picture::drawn(window.size(), scale, [&](QPainter& painter) {
            painter.setRenderHint(QPainter::Antialiasing, false);
            painter.fillRect(window.rect(), windowColor(window.palette()));
            for (const TextLabel* label : drawn) {
                drawUnclipped(*label, painter, label->mapTo(&window, QPoint(0, 0)));
            }
            for (const TextLabel* label : labels) {
                painter.fillRect(areaIn(window, *label), Qt::black);
            }
        });
    };
    EXPECT_EQ(
        withLabelsCovered(labels).differenceFrom(withLabelsCovered({}), visibleDifference),
        QRectF())
        << "is cut at a scale of " << scale;
}

void expectNothingClipped(QWidget& window)
{
    expectApartAndInside(window);
    expectTextWhole(window);
    for (QWidget* child : laidOutChildren(window)) {
        expectNothingClipped(*child);
    }
}

} // namespace orlimo

#include "tests/support/widgets/LayoutExpectation.h"

#include "controls/TextBlock.h"
#include "controls/TextButton.h"
#include "controls/TextLabel.h"
#include "controls/accessibility/FocusRing.h"
#include "tests/support/widgets/Picture.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>
#include <QWidget>
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

/// Expects that what a button or label paints of its text keeps at least one pixel away from the
/// edges of `area`: more of it would be seen if there were more.
template <class TextWidget> void expectInkWithin(TextWidget& widget, const QRectF& area)
{
    const QString text = widget.text();
    const Picture whole = Picture::of(widget);
    const double pixel = 1 / whole.pixelsPerPoint();
    const QRectF inside = area.adjusted(pixel, pixel, -pixel, -pixel);
    const QRect place = widget.geometry();
    widget.setText(QString());
    const Picture empty = Picture::of(widget);
    widget.setText(text);
    ASSERT_EQ(widget.geometry(), place);
    const QRectF ink = whole.differenceFrom(empty);
    EXPECT_FALSE(ink.isEmpty() && !text.isEmpty()) << nameOf(widget) << " paints no text";
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

void expectTextWhole(TextButton& button)
{
    EXPECT_TRUE(QRectF(button.rect().marginsRemoved(button.margins())).contains(button.labelArea()))
        << nameOf(button) << " of " << testing::PrintToString(button.size()) << " has its label at "
        << testing::PrintToString(button.labelArea());
    expectInkWithin(button, button.rect());
}

void expectTextWhole(QWidget& widget)
{
    if (auto* label = qobject_cast<TextLabel*>(&widget)) {
        expectTextWhole(*label);
    } else if (auto* textButton = qobject_cast<TextButton*>(&widget)) {
        expectTextWhole(*textButton);
    } else if (auto* plainLabel = qobject_cast<QLabel*>(&widget)) {
        expectInkWithin(*plainLabel, plainLabel->contentsRect());
    } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        expectInkWithin(*button, button->rect());
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
    const Picture painted = Picture::ofWindow(window, scale);
    std::vector<QString> texts;
    for (TextLabel* label : labels) {
        texts.push_back(label->text());
        label->setText(QString());
    }
    const Picture ground = Picture::ofWindow(window, scale);
    for (std::size_t index = 0; index < texts.size(); ++index) {
        labels[static_cast<qsizetype>(index)]->setText(texts[index]);
    }
    // Only what is beyond the labels counts: where a line lies exactly between two pixels, it may
    // come to stand on either.
    const auto withLabelsCovered = [&](bool withTexts) {
        return ground.paintedOver([&](QPainter& painter) {
            for (const TextLabel* label : withTexts ? labels : QList<TextLabel*>()) {
                drawUnclipped(*label, painter, label->mapTo(&window, QPoint(0, 0)));
            }
            for (const TextLabel* label : labels) {
                painter.fillRect(areaIn(window, *label), Qt::black);
            }
        });
    };
    EXPECT_EQ(
        withLabelsCovered(true).differenceFrom(withLabelsCovered(false), visibleDifference),
        QRectF())
        << "is cut at a scale of " << scale;
    EXPECT_NE(painted.differenceFrom(ground), QRectF()) << "no label paints any text";
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

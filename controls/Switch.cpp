#include "controls/Switch.h"

#include "controls/accessibility/FocusRing.h"
#include "controls/accessibility/ReturnKey.h"
#include "controls/painting/Colors.h"
#include "controls/painting/PixelGrid.h"

#include <QPainter>
#include <QStyle>

#include <chrono>

namespace orlimo {

namespace {

constexpr QSize trackSize(36, 20);
constexpr double knobMargin = 2;
constexpr std::chrono::milliseconds slideDuration{140};

QColor trackColorWhenOff(const QPalette& palette)
{
    QColor text = textColor(palette);
    text.setAlphaF(0.28F);
    return distinctColor(blended(text, windowColor(palette)), palette);
}

/// Distinct as well: an accent that white is legible on may be too dark for a dark window.
QColor trackColorWhenOn(const QPalette& palette)
{
    return distinctColor(accentColor(palette), palette);
}

} // namespace

Switch::Switch(QWidget* parent)
    : QCheckBox(parent)
{
    setFixedSize(trackSize);
    setFocusPolicy(Qt::StrongFocus);
    FocusRing::attach(*this, trackSize.height() / 2.0);
    ReturnKey::attach(*this);
    slide.setDuration(static_cast<int>(slideDuration.count()));
    slide.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&slide, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(this, &QCheckBox::toggled, this, &Switch::slideKnob);
}

QSize Switch::sizeHint() const
{
    return trackSize;
}

bool Switch::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

void Switch::slideKnob(bool on)
{
    const double start =
        slide.state() == QAbstractAnimation::Running ? knobPosition() : (on ? 0 : 1);
    slide.stop();
    if (!isVisible() ||
        style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) <= 0) {
        update();
        return;
    }
    slide.setStartValue(start);
    slide.setEndValue(on ? 1.0 : 0.0);
    slide.start();
}

double Switch::knobPosition() const
{
    if (slide.state() == QAbstractAnimation::Running) {
        return slide.currentValue().toDouble();
    }
    return isChecked() ? 1 : 0;
}

void Switch::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.5);
    painter.setPen(Qt::NoPen);

    const QRectF track = PixelGrid(painter).snapped(rect());
    const double position = knobPosition();
    painter.setBrush(mixed(trackColorWhenOff(palette()), trackColorWhenOn(palette()), position));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);

    const double diameter = track.height() - 2 * knobMargin;
    const double travel = track.width() - 2 * knobMargin - diameter;
    const double fromLeft = layoutDirection() == Qt::RightToLeft ? 1 - position : position;
    const QRectF knob(
        track.left() + knobMargin + travel * fromLeft,
        track.top() + knobMargin,
        diameter,
        diameter);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(isDown() ? QColor(240, 240, 240) : QColor(Qt::white));
    painter.drawEllipse(knob);
}

} // namespace orlimo

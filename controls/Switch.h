#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

namespace orlimo {

/// A switch: a track with a knob that slides to its trailing end when the switch is on. Without a
/// text of its own; announced as a check box under its accessible name.
class Switch : public QCheckBox
{
    Q_OBJECT

public:
    explicit Switch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    void slideKnob(bool on);
    /// From 0, off, to 1, on.
    [[nodiscard]] double knobPosition() const;

    QVariantAnimation slide;
};

} // namespace orlimo

#pragma once

#include <QWidget>

namespace orlimo {

/// A horizontal line of one point that separates what stands above it from what stands below.
class Divider : public QWidget
{
public:
    explicit Divider(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return {0, 1}; }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace orlimo

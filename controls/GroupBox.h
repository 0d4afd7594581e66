#pragma once

#include <QWidget>

class QVBoxLayout;

namespace orlimo {

class SymbolLabel;

/// A title, and under it a box that holds related views one under the other. Announced as a group
/// under its title.
class GroupBox : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of the title.
    explicit GroupBox(SymbolLabel* title);

    /// Adds a view below those already there and takes ownership of it.
    void addView(QWidget* view, Qt::Alignment alignment = {});

    [[nodiscard]] SymbolLabel& title() const { return *titleLabel; }
    /// The box, without the title.
    [[nodiscard]] QRect boxArea() const { return box->geometry(); }

    /// Between the title and the box, between the box's edge and its content, and the box's corner
    /// radius, in points.
    static constexpr int titleGap = 4;
    static constexpr int contentPadding = 4;
    static constexpr double cornerRadius = 8;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SymbolLabel* titleLabel;
    QWidget* box;
    QVBoxLayout* content;
};

} // namespace orlimo

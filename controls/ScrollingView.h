#pragma once

#include <QScrollArea>
#include <QScrollBar>

#include <memory>

namespace orlimo {

/// A view of a fixed size that can be shown in less height than it has: it is then scrolled, and
/// what gets the focus by the keyboard comes into sight. The scroll bar lies over the view's edge,
/// so that the width stays; the view keeps its edge free of anything else. Of the view's size at
/// first; named like the view. Main thread.
class ScrollingView : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes ownership of the view.
    explicit ScrollingView(std::unique_ptr<QWidget> view);

    [[nodiscard]] QSize sizeHint() const override { return widget()->size(); }
    [[nodiscard]] const QScrollBar& scrollBar() const { return *bar; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void placeScrollBar();

    QScrollBar* bar;
};

} // namespace orlimo

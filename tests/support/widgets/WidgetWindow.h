#pragma once

#include "tests/support/Await.h"
#include "tests/support/widgets/QtPrinting.h"

#include <QWidget>
#include <gtest/gtest.h>

#include <utility>

namespace orlimo {

/// Shows `window` and waits until it stands there and has the keyboard. A test failure when it does
/// not.
inline void showActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(await([&window] { return window.isVisible() && window.isActiveWindow(); }));
}

/// A window around one view, with a margin, shown and active for as long as it lives.
template <class View> class WidgetWindow
{
public:
    template <class... Arguments>
    explicit WidgetWindow(Arguments&&... arguments)
        : view(new View(std::forward<Arguments>(arguments)...))
    {
        view->setParent(&window);
        view->move(margin, margin);
        view->resize(view->sizeHint());
        window.resize(view->size() + 2 * QSize(margin, margin));
        showActive(window);
    }

    View& operator*() { return *view; }
    View* operator->() { return view; }

    QWidget window;

    /// Points.
    static constexpr int margin = 20;

private:
    View* view;
};

} // namespace orlimo

#include "tests/support/widgets/WidgetWindow.h"

#include "tests/support/Await.h"

#include <gtest/gtest.h>

namespace orlimo {

void showActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(await([&window] { return window.isVisible() && window.isActiveWindow(); }));
}

} // namespace orlimo

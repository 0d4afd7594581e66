#include "app/guidance/HelperView.h"

#include "app/guidance/GuidanceWindow.h"
#include "controls/TextButton.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QAccessible>
#include <QTest>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

class HelperViewTest : public testing::Test
{
protected:
    HelperViewTest() { showActive(window); }

    QList<QUrl> opened;
    bool opens = true;
    GuidanceWindow window{
        new HelperView(
            [this](const QUrl& url) {
                opened.append(url);
                return opens;
            },
            {systemSymbol, systemSymbolSize}),
        QRect(QPoint(0, 0), GuidanceWindow::contentSize)};
    TextButton& button = named<TextButton>(window, "openSystemSetting");
};

TEST_F(HelperViewTest, OpensFullDiskAccessSettingsAndStaysOpen)
{
    EXPECT_TRUE(opened.isEmpty());
    for (const bool settingsOpen : {true, false}) {
        opens = settingsOpen;
        const OutputCapture output;
        pointer::click(button);
        EXPECT_EQ(
            opened.takeFirst().toEncoded(),
            QByteArray("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
        EXPECT_TRUE(opened.isEmpty());
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(output.text(), "");
    }
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(HelperViewTest, IsAnnouncedUnderProgramName)
{
    auto* accessible = QAccessible::queryAccessibleInterface(&window);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Window);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Orlimo"));
}

TEST_F(HelperViewTest, IsOperatedByKeyboardFromTabOn)
{
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    EXPECT_TRUE(opened.isEmpty());
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    EXPECT_TRUE(button.hasFocus());
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(opened.size(), 1);
}

} // namespace
} // namespace orlimo

#include "app/guidance/HelperView.h"

#include "app/guidance/GuidanceWindow.h"
#include "controls/TextButton.h"
#include "controls/painting/Colors.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QTest>
#include <gmock/gmock.h>
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

TEST_F(HelperViewTest, OpensNothingByItself)
{
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(HelperViewTest, OpensTheListForFullDiskAccess)
{
    pointer::click(button);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(
        opened.first().toEncoded(),
        QByteArray("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
    EXPECT_EQ(opened.first().scheme(), QStringLiteral("x-apple.systempreferences"));
    EXPECT_EQ(opened.first().path(), QStringLiteral("com.apple.preference.security"));
    EXPECT_EQ(opened.first().query(), QStringLiteral("Privacy_AllFiles"));
}

TEST_F(HelperViewTest, OpensItAgainAtEachPress)
{
    pointer::click(button);
    pointer::click(button);
    button.setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&button, key);
    }
    EXPECT_EQ(opened.size(), 5);
}

TEST_F(HelperViewTest, IsOperatedWithTheKeyboardFromTabOnUnderARing)
{
    QWidget other;
    for (int times = 1; times <= 2; ++times) {
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            QTest::keyClick(window.windowHandle(), key);
        }
        EXPECT_EQ(opened.size(), times - 1);
        const QPointF aboveButton(250, areaIn(window, button).top() - 2);
        const QColor ground = Picture::ofWindow(window).at(aboveButton);
        EXPECT_EQ(ground, windowColor(window.palette()));

        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        EXPECT_TRUE(button.hasFocus());
        EXPECT_GE(
            contrastRatio(Picture::ofWindow(window).at(aboveButton), ground), distinctContrast);
        QTest::keyClick(window.windowHandle(), Qt::Key_Return);
        EXPECT_EQ(opened.size(), times);

        window.hide();
        showActive(other);
        showActive(window);
    }
}

TEST_F(HelperViewTest, StaysOpenWhetherOrNotTheSettingsOpen)
{
    for (const bool settingsOpen : {true, false}) {
        opens = settingsOpen;
        const OutputCapture output;
        pointer::click(button);
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(output.text(), "");
    }
    EXPECT_EQ(opened.size(), 2);
}

TEST_F(HelperViewTest, IsClosedByTheUserAlone)
{
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace orlimo

#include "platform/desktop/linux/AboutPanel.h"

#include "platform/ApplicationIdentity.h"
#include "platform/desktop/SharedApplication.h"
#include "resources/ImageIcon.h"
#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/support/Await.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The About panel as the application shows it.
class AboutPanelTest : public testing::Test
{
protected:
    ~AboutPanelTest() override
    {
        for (QDialog* const panel : openPanels()) {
            panel->close();
        }
    }

    static QList<QDialog*> openPanels()
    {
        QList<QDialog*> panels;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            auto* const dialog = qobject_cast<QDialog*>(widget);
            if (dialog != nullptr && dialog->isVisible()) {
                panels.append(dialog);
            }
        }
        return panels;
    }

    static QDialog& show()
    {
        sharedApplication().orderFrontStandardAboutPanel();
        EXPECT_EQ(openPanels().size(), 1);
        return *openPanels().constFirst();
    }
};

TEST(AboutPanel, NamesTheProgramItsVersionAndCopyright)
{
    const MarkingTranslator translator;
    AboutPanel panel;
    panel.show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("AboutPanel: About Orlimo"));
    QStringList texts;
    int bottom = 0;
    for (const QLabel* const line : panel.findChildren<QLabel*>()) {
        texts.append(line->text());
        EXPECT_GE(line->y(), bottom);
        EXPECT_GE(line->width(), line->sizeHint().width());
        bottom = line->y() + line->height();
    }
    EXPECT_EQ(
        texts,
        (QStringList{
            QStringLiteral("Orlimo"),
            QStringLiteral("AboutPanel: Version 1.0.0"),
            QString::fromUtf8(identity::copyright.data())}));
    EXPECT_EQ(
        panel.windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
    const QImage image = panel.grab().toImage().scaled(panel.size());
    EXPECT_NE(image.pixel(panel.width() / 2, 28 + 32), image.pixel(1, 1)) << "no logo";
    EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
    EXPECT_FALSE(panel.isModal());
    EXPECT_TRUE(panel.windowFlags().testFlag(Qt::WindowCloseButtonHint));
}

TEST_F(AboutPanelTest, IsOnePanelThatComesBackToTheFront)
{
    QDialog& panel = show();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([&] { return other.isActiveWindow(); }));
    EXPECT_EQ(&show(), &panel);
    EXPECT_TRUE(await([&] { return panel.isActiveWindow(); }));
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_TRUE(openPanels().isEmpty());
    show().close();
    EXPECT_TRUE(openPanels().isEmpty());
    show().showMinimized();
    EXPECT_FALSE(show().isMinimized());
    EXPECT_EQ(&show(), &panel);
}

} // namespace
} // namespace orlimo

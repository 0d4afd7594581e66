#include "platform/ApplicationIdentity.h"
#include "platform/desktop/SharedApplication.h"
#include "resources/ImageIcon.h"
#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/support/Await.h"

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QPalette>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

QList<QDialog*> openPanels()
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

class AboutPanelTest : public testing::Test
{
protected:
    void TearDown() override
    {
        for (QDialog* const panel : openPanels()) {
            panel->close();
        }
        QApplication::setPalette(palette);
    }

    /// Has the panel shown, and returns it.
    QDialog& show(const AboutPanelOptions& options = {})
    {
        sharedApplication().orderFrontStandardAboutPanel(options);
        EXPECT_EQ(openPanels().size(), 1);
        return *openPanels().constFirst();
    }

    /// The texts that are seen, from top to bottom.
    static QList<QLabel*> lines(const QDialog& panel)
    {
        auto labels = panel.findChildren<QLabel*>();
        labels.removeIf([](const QLabel* label) { return !label->isVisible(); });
        std::sort(labels.begin(), labels.end(), [](const QLabel* one, const QLabel* other) {
            return one->y() < other->y();
        });
        return labels;
    }

    static QStringList texts(const QDialog& panel)
    {
        QStringList found;
        for (const QLabel* const line : lines(panel)) {
            found.append(line->text());
        }
        return found;
    }

    const QPalette palette = QApplication::palette();
};

const QString copyright = QString::fromUtf8(identity::copyright.data());

TEST_F(AboutPanelTest, SaysWhoTheProgramIs)
{
    QDialog& panel = show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("About Orlimo"));
    EXPECT_EQ(
        texts(panel),
        (QStringList{QStringLiteral("Orlimo"), QStringLiteral("Version 1.0.0"), copyright}));
    EXPECT_TRUE(copyright.contains(QChar(0xA9)));
}

TEST_F(AboutPanelTest, HasTheProgramsIconInTheListOfWindows)
{
    EXPECT_EQ(
        show().windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
}

TEST_F(AboutPanelTest, PutsTheNameInBoldAndEverythingInTheMiddle)
{
    QDialog& panel = show();
    const auto labels = lines(panel);
    ASSERT_EQ(labels.size(), 3);
    EXPECT_TRUE(labels.at(0)->font().bold());
    EXPECT_FALSE(labels.at(1)->font().bold());
    EXPECT_FALSE(labels.at(2)->font().bold());
    EXPECT_GT(labels.at(0)->font().pixelSize(), labels.at(1)->font().pixelSize());
    EXPECT_GT(labels.at(1)->font().pixelSize(), labels.at(2)->font().pixelSize());
    for (const QLabel* const label : labels) {
        EXPECT_TRUE(label->alignment().testFlag(Qt::AlignHCenter));
        EXPECT_EQ(label->x() + label->width() + label->x(), panel.width());
        EXPECT_GE(label->width(), label->sizeHint().width());
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
}

TEST_F(AboutPanelTest, ShowsTheLogoAboveTheTexts)
{
    QDialog& panel = show();
    const int left = (panel.width() - 64) / 2;
    const int top = lines(panel).at(0)->y() - 12 - 64;
    ASSERT_GT(top, 0);
    const QImage image = panel.grab().toImage().scaled(panel.size());
    const QRgb background = image.pixel(1, 1);
    // The image reaches to its frame's edges in the middle of each side, and not further.
    EXPECT_NE(image.pixel(left + 32, top + 32), background);
    EXPECT_EQ(image.pixel(left - 2, top + 32), background);
    EXPECT_EQ(image.pixel(left + 66, top + 32), background);
    EXPECT_EQ(image.pixel(left + 32, top - 2), background);
    int colored = 0;
    for (int y = top; y < top + 64; ++y) {
        for (int x = left; x < left + 64; ++x) {
            colored += image.pixel(x, y) == background ? 0 : 1;
        }
    }
    EXPECT_GT(colored, 64 * 64 / 2);
}

TEST_F(AboutPanelTest, CannotBeResized)
{
    QDialog& panel = show();
    EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
    EXPECT_EQ(panel.minimumSize(), panel.size());
    EXPECT_FALSE(panel.isModal());
}

TEST_F(AboutPanelTest, HasACloseButton)
{
    const Qt::WindowFlags flags = show().windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowContextHelpButtonHint));
}

TEST_F(AboutPanelTest, ClosesOnEscapeAndComesBack)
{
    QDialog& panel = show();
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_TRUE(openPanels().isEmpty());
    EXPECT_EQ(texts(show()).size(), 3);
}

TEST_F(AboutPanelTest, ClosesAtItsButtonAndComesBack)
{
    show().close();
    EXPECT_TRUE(openPanels().isEmpty());
    EXPECT_EQ(texts(show()).size(), 3);
}

TEST_F(AboutPanelTest, IsOneThatComesToTheFront)
{
    QDialog& panel = show();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([&] { return other.isActiveWindow(); }));
    EXPECT_EQ(&show(), &panel);
    EXPECT_TRUE(await([&] { return panel.isActiveWindow(); }));
}

TEST_F(AboutPanelTest, ComesBackFromAnIcon)
{
    show().showMinimized();
    EXPECT_FALSE(show().isMinimized());
}

TEST_F(AboutPanelTest, SaysWhatTheOptionsSayInstead)
{
    QDialog& panel = show({{"ApplicationName", "Other \xC3\xA9"}});
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("About Other \u00E9"));
    EXPECT_EQ(
        texts(panel),
        (QStringList{QStringLiteral("Other \u00E9"), QStringLiteral("Version 1.0.0"), copyright}));
    EXPECT_EQ(
        texts(show({{"ApplicationVersion", "2.1"}})),
        (QStringList{QStringLiteral("Orlimo"), QStringLiteral("Version 2.1"), copyright}));
    EXPECT_EQ(
        texts(show({{"Copyright", "Nobody's <b>"}})),
        (QStringList{
            QStringLiteral("Orlimo"),
            QStringLiteral("Version 1.0.0"),
            QStringLiteral("Nobody's <b>")}));
}

TEST_F(AboutPanelTest, KnowsNoOtherOptions)
{
    EXPECT_EQ(
        texts(show({{"Credits", "Somebody"}, {"applicationname", "Other"}})),
        (QStringList{QStringLiteral("Orlimo"), QStringLiteral("Version 1.0.0"), copyright}));
}

TEST_F(AboutPanelTest, LeavesOutTheLinesWithoutAText)
{
    EXPECT_EQ(
        texts(show({{"ApplicationVersion", ""}, {"Copyright", ""}})),
        QStringList{QStringLiteral("Orlimo")});
    EXPECT_EQ(texts(show()).size(), 3);
}

TEST_F(AboutPanelTest, IsWideEnoughForItsTexts)
{
    const std::string longText(120, 'm');
    QDialog& panel = show({{"ApplicationName", longText}});
    const QLabel* const name = lines(panel).at(0);
    EXPECT_GE(name->width(), name->fontMetrics().horizontalAdvance(name->text()));
    EXPECT_TRUE(panel.rect().contains(name->geometry()));
}

TEST_F(AboutPanelTest, IsTranslated)
{
    const MarkingTranslator translator;
    QDialog& panel = show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("AboutPanel: About Orlimo"));
    EXPECT_EQ(texts(panel).at(1), QStringLiteral("AboutPanel: Version 1.0.0"));
}

TEST_F(AboutPanelTest, TakesItsColoursFromThePalette)
{
    QDialog& panel = show();
    for (const auto& [surface, text] :
         {std::pair(QColor(Qt::white), QColor(Qt::black)),
          std::pair(QColor(30, 30, 30), QColor(Qt::white))})
    {
        QPalette scheme = palette;
        scheme.setColor(QPalette::Window, surface);
        scheme.setColor(QPalette::WindowText, text);
        QApplication::setPalette(scheme);
        QCoreApplication::processEvents();
        EXPECT_EQ(panel.grab().toImage().pixelColor(1, 1), surface);
        for (const QLabel* const label : lines(panel)) {
            EXPECT_EQ(label->palette().color(label->foregroundRole()), text);
        }
    }
}

} // namespace
} // namespace orlimo

#include "platform/menubar/linux/PanelIcon.h"

#include "resources/ImageIcon.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/widgets/PixelReading.h"

#include <QImage>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(PanelTextColor, IsThePalettesExceptOnDarkPanels)
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, Qt::blue);
    for (const auto& [desktop, expected] :
         {std::pair("KDE", QColor(Qt::blue)),
          std::pair("", QColor(Qt::blue)),
          std::pair("GNOME-Flashback-like", QColor(Qt::blue)),
          std::pair("GNOME", QColor(Qt::white)),
          std::pair("ubuntu:GNOME", QColor(Qt::white)),
          std::pair("sway", QColor(Qt::white))})
    {
        EXPECT_EQ(panelTextColor(QString::fromLatin1(desktop), palette), expected);
    }
}

TEST(ColorOnPanel, IsReplacedByBlackOrWhiteIfTheContrastIsTooLow)
{
    EXPECT_EQ(colorOnPanel(Qt::black, QColor(0xDC, 0xDA, 0xD5)), QColor(Qt::black));
    EXPECT_EQ(colorOnPanel(QColor(200, 40, 90), Qt::black), QColor(200, 40, 90));
    EXPECT_EQ(colorOnPanel(Qt::black, QColor(0x20, 0x20, 0x20)), QColor(Qt::white));
    EXPECT_EQ(colorOnPanel(Qt::white, QColor(0xDC, 0xDA, 0xD5)), QColor(Qt::black));
}

TEST(PanelIconName, IsTheInstalledSymbolsExceptOnSway)
{
    const TemporaryFolder data;
    const EnvironmentChange change("XDG_DATA_DIRS", data.path().string());
    EXPECT_EQ(panelIconName(QStringLiteral("KDE")), QString());
    writeFile(data.path() / "icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg", "<svg/>");
    EXPECT_EQ(panelIconName(QStringLiteral("KDE")), QStringLiteral("app.orlimo.Orlimo-symbolic"));
    EXPECT_EQ(panelIconName(QStringLiteral("sway")), QString());
}

TEST(PanelIcon, TemplateIsPaintedInTheColorAndNamed)
{
    const QColor color(200, 40, 90);
    const QIcon shape = templateIcon(QStringLiteral("StatusBarIcon"));
    const QIcon icon = panelIcon(shape, color, QStringLiteral("a-name"));
    EXPECT_EQ(icon.name(), u"a-name");
    EXPECT_EQ(panelIcon(shape, color).name(), QString());
    EXPECT_EQ(icon.availableSizes(), shape.availableSizes());
    const QImage image = pixelsOf(icon.pixmap(QSize(22, 22), 1.0));
    EXPECT_TRUE(isVisuallyEqual(image, tintedShape(image, color)));
    const QIcon picture = imageIcon(QStringLiteral("logo"));
    EXPECT_EQ(panelIcon(picture, color).pixmap(64).toImage(), picture.pixmap(64).toImage());
}

TEST(PanelIcon, IsASquareOfAtMostSixteenPoints)
{
    const QIcon icon = panelIcon(templateIcon(QStringLiteral("StatusBarIcon")), Qt::black);
    EXPECT_EQ(icon.actualSize({22, 38}), QSize(16, 16));
    EXPECT_EQ(icon.actualSize({64, 22}), QSize(16, 16));
    EXPECT_EQ(icon.actualSize({22, 12}), QSize(12, 12));
}

} // namespace
} // namespace orlimo

#include "platform/menubar/linux/PanelIcon.h"

#include "resources/ImageIcon.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/widgets/PixelReading.h"

#include <QImage>
#include <QPainter>
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
    for (const int edge : {16, 22, 24, 32, 48, 64}) {
        const QImage image = pixelsOf(icon.pixmap(QSize(edge, edge), 1.0));
        EXPECT_EQ(image.size(), QSize(edge, edge));
        EXPECT_FALSE(inkOf(image).isEmpty());
        EXPECT_TRUE(isVisuallyEqual(image, tintedShape(image, color))) << edge;
    }
    const QIcon picture = imageIcon(QStringLiteral("logo"));
    EXPECT_EQ(panelIcon(picture, color).pixmap(64).toImage(), picture.pixmap(64).toImage());
}

TEST(PanelIcon, IsACentredSquareOfAtMostSixteenPoints)
{
    const QIcon icon = panelIcon(templateIcon(QStringLiteral("StatusBarIcon")), Qt::black);
    for (const auto& [area, square] :
         {std::pair(QSize(22, 22), QRect(3, 3, 16, 16)),
          std::pair(QSize(22, 38), QRect(3, 11, 16, 16)),
          std::pair(QSize(38, 22), QRect(11, 3, 16, 16)),
          std::pair(QSize(22, 12), QRect(5, 0, 12, 12))})
    {
        for (const int scale : {1, 2}) {
            QImage screen(area * scale, QImage::Format_ARGB32);
            screen.setDevicePixelRatio(scale);
            screen.fill(Qt::transparent);
            QPainter painter(&screen);
            icon.paint(&painter, QRect(QPoint(), area));
            painter.end();
            // The drawing is as wide as its square.
            const QRect ink = inkOf(screen);
            EXPECT_EQ(ink.x(), square.x() * scale);
            EXPECT_EQ(ink.width(), square.width() * scale);
            EXPECT_NEAR(ink.y() + ink.height(), (square.y() + square.height()) * scale, scale);
        }
    }
}

} // namespace
} // namespace orlimo

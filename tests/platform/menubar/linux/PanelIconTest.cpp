#include "platform/menubar/linux/PanelIcon.h"

#include "resources/ImageIcon.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"
#include "tests/support/widgets/PixelReading.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace orlimo {

namespace {

QPalette paletteWithText(const QColor& text)
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

/// The colours of the icon's pixels that are not transparent, and how many these are.
struct Ink
{
    int pixels = 0;
    int inColor = 0;
};

Ink inkOf(const QIcon& icon, int edge, const QColor& color)
{
    const QImage image =
        icon.pixmap(QSize(edge, edge), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    Ink ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > 128) {
                ++ink.pixels;
                const int distance = std::abs(pixel.red() - color.red()) +
                                     std::abs(pixel.green() - color.green()) +
                                     std::abs(pixel.blue() - color.blue());
                ink.inColor += distance <= 6 ? 1 : 0;
            }
        }
    }
    return ink;
}

/// Says which sizes of it were drawn.
class RecordingIconEngine final : public QIconEngine
{
public:
    explicit RecordingIconEngine(QList<QSize>& sizes)
        : drawn(sizes)
    {}
    void paint(
        QPainter* /*painter*/,
        const QRect& /*area*/,
        QIcon::Mode /*mode*/,
        QIcon::State /*state*/) override
    {}
    QPixmap pixmap(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        drawn.append(size);
        QPixmap pixmap(size);
        pixmap.fill(Qt::black);
        return pixmap;
    }
    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        return {{16, 16}, {128, 128}};
    }
    [[nodiscard]] QIconEngine* clone() const override { return new RecordingIconEngine(drawn); }

private:
    QList<QSize>& drawn;
};

} // namespace

TEST(PanelTextColor, FollowsTheScheme)
{
    EXPECT_EQ(panelTextColor(QStringLiteral("KDE"), paletteWithText(Qt::black)), QColor(Qt::black));
    EXPECT_EQ(panelTextColor(QString(), paletteWithText(Qt::white)), QColor(Qt::white));
}

TEST(PanelTextColor, IsWhiteOnGnome)
{
    const QPalette light = paletteWithText(Qt::black);
    EXPECT_EQ(panelTextColor(QStringLiteral("GNOME"), light), QColor(Qt::white));
    EXPECT_EQ(panelTextColor(QStringLiteral("ubuntu:GNOME"), light), QColor(Qt::white));
    EXPECT_EQ(panelTextColor(QStringLiteral("GNOME-Flashback-like"), light), QColor(Qt::black));
}

TEST(PanelTextColor, IsWhiteOnSway)
{
    EXPECT_EQ(
        panelTextColor(QStringLiteral("sway"), paletteWithText(Qt::black)), QColor(Qt::white));
}

TEST(ColorOnPanel, IsKeptWhereItStandsOut)
{
    EXPECT_EQ(colorOnPanel(Qt::black, QColor(0xDC, 0xDA, 0xD5)), QColor(Qt::black));
    EXPECT_EQ(colorOnPanel(QColor(200, 40, 90), Qt::black), QColor(200, 40, 90));
}

TEST(ColorOnPanel, IsBlackOrWhiteWhereItDoesNot)
{
    EXPECT_EQ(colorOnPanel(Qt::black, QColor(0x20, 0x20, 0x20)), QColor(Qt::white));
    EXPECT_EQ(colorOnPanel(Qt::white, QColor(0xDC, 0xDA, 0xD5)), QColor(Qt::black));
}

TEST(PanelIconName, IsThatOfTheInstalledSymbolExceptOnSway)
{
    const TemporaryFolder data;
    const EnvironmentChange change("XDG_DATA_DIRS", data.path().string());
    EXPECT_EQ(panelIconName(QStringLiteral("KDE")), QString());
    writeFile(data.path() / "icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg", "<svg/>");
    EXPECT_EQ(panelIconName(QStringLiteral("KDE")), QStringLiteral("app.orlimo.Orlimo-symbolic"));
    EXPECT_EQ(panelIconName(QStringLiteral("sway")), QString());
}

TEST(PanelIcon, HasItsThemeName)
{
    const QIcon shape = templateIcon(QStringLiteral("StatusBarIcon"));
    EXPECT_EQ(panelIcon(shape, Qt::white, QStringLiteral("a-name")).name(), u"a-name");
    EXPECT_EQ(panelIcon(shape, Qt::white).name(), QString());
}

/// A place of an icon and what of it the icon is to fill, in points.
struct PanelIconGeometry
{
    QSize place;
    QRect square;
};

class PanelIconAlignment : public testing::TestWithParam<PanelIconGeometry>
{};

TEST_P(PanelIconAlignment, IsASquareOfAtMostSixteenPointsInTheMiddle)
{
    const auto& [place, square] = GetParam();
    const QIcon icon = panelIcon(templateIcon(QStringLiteral("StatusBarIcon")), Qt::black);
    for (const int scale : {1, 2}) {
        QImage screen(place * scale, QImage::Format_ARGB32);
        screen.setDevicePixelRatio(scale);
        screen.fill(Qt::transparent);
        QPainter painter(&screen);
        icon.paint(&painter, QRect(QPoint(), place));
        painter.end();
        // The drawing is as wide as its square.
        const QRect ink = inkOf(screen);
        EXPECT_EQ(ink.x(), square.x() * scale);
        EXPECT_EQ(ink.width(), square.width() * scale);
        EXPECT_NEAR(ink.y() + ink.height(), (square.y() + square.height()) * scale, scale);
        EXPECT_NEAR(ink.height(), ink.width() * 15 / 16.0, scale);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Trays,
    PanelIconAlignment,
    testing::Values(
        PanelIconGeometry{{22, 22}, {3, 3, 16, 16}},
        PanelIconGeometry{{22, 38}, {3, 11, 16, 16}},
        PanelIconGeometry{{38, 22}, {11, 3, 16, 16}},
        PanelIconGeometry{{22, 12}, {5, 0, 12, 12}}));

TEST(PanelIcon, PaintsATemplateInTheColorAtEverySize)
{
    const QColor color(200, 40, 90);
    const QIcon icon = panelIcon(templateIcon(QStringLiteral("StatusBarIcon")), color);
    for (const int edge : {16, 22, 24, 32, 48, 64}) {
        const Ink ink = inkOf(icon, edge, color);
        EXPECT_GT(ink.pixels, edge * edge / 4) << edge;
        EXPECT_EQ(ink.inColor, ink.pixels) << edge;
        EXPECT_EQ(icon.pixmap(QSize(edge, edge), 1.0).size(), QSize(edge, edge));
    }
}

TEST(PanelIcon, DrawsNoSizeThatIsNotAskedFor)
{
    QList<QSize> drawn;
    QIcon shape(new RecordingIconEngine(drawn));
    shape.setIsMask(true);
    const QIcon icon = panelIcon(shape, Qt::white);
    EXPECT_EQ(icon.availableSizes(), (QList<QSize>{{16, 16}, {128, 128}}));
    EXPECT_TRUE(drawn.isEmpty());
    EXPECT_EQ(inkOf(icon, 16, Qt::white).inColor, 16 * 16);
    EXPECT_EQ(drawn, QList<QSize>{QSize(16, 16)});
}

TEST(PanelIcon, LeavesAPictureItsColors)
{
    const QColor color(200, 40, 90);
    const QIcon icon = panelIcon(imageIcon(QStringLiteral("logo")), color);
    const Ink ink = inkOf(icon, 64, color);
    EXPECT_GT(ink.pixels, 64 * 64 / 2);
    EXPECT_LT(ink.inColor, ink.pixels / 10);
}

} // namespace orlimo

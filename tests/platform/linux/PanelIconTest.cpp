#include "platform/linux/PanelIcon.h"

#include "resources/ImageIcon.h"

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
class WatchedEngine final : public QIconEngine
{
public:
    explicit WatchedEngine(QList<QSize>& sizes)
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
    [[nodiscard]] QIconEngine* clone() const override { return new WatchedEngine(drawn); }

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
    QIcon shape(new WatchedEngine(drawn));
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

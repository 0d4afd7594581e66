#include "platform/desktop/SystemSymbol.h"

#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <string>

namespace orlimo {
namespace {

/// The text beside which the program shows every symbol.
constexpr int textSize = 15;

class SystemSymbolTest : public testing::TestWithParam<const char*>
{
protected:
    const QString name = QString::fromLatin1(GetParam());

    [[nodiscard]] QImage drawn(qreal ratio, const QColor& color = Qt::black) const
    {
        return pixelsOf(systemSymbol(name, textSize, color, ratio));
    }
};

TEST_P(SystemSymbolTest, HasEveryPixelOfItsSize)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QPixmap symbol = systemSymbol(name, textSize, Qt::black, ratio);
        const QSizeF points = systemSymbolSize(name, textSize);
        EXPECT_EQ(symbol.size(), (points * ratio).toSize());
        EXPECT_EQ(symbol.devicePixelRatio(), ratio);
        EXPECT_FALSE(inkOf(pixelsOf(symbol)).isEmpty());
    }
}

TEST_P(SystemSymbolTest, IsAllInTheColourOfTheText)
{
    for (const QColor& color :
         {QColor(255, 255, 255), QColor(128, 128, 128), QColor(10, 90, 200, 100)}) {
        EXPECT_TRUE(isVisuallyEqual(drawn(2, color), tintedShape(drawn(2), color)))
            << color.name().toStdString();
    }
}

std::string caseName(const testing::TestParamInfo<const char*>& info)
{
    std::string name;
    for (const char character : std::string(info.param)) {
        name.push_back(std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_');
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    All,
    SystemSymbolTest,
    testing::Values("slider.horizontal.2.square", "ellipsis.bubble.fill", "hand.raised.fill"),
    caseName);

TEST(UnknownSystemSymbolTest, IsNullAndHasNoSize)
{
    for (const QStringView name : {u"", u"nothing", u"hand.raised.fill.svg"}) {
        EXPECT_TRUE(systemSymbol(name, textSize, Qt::black, 1).isNull())
            << name.toString().toStdString();
        EXPECT_TRUE(systemSymbolSize(name, textSize).isEmpty()) << name.toString().toStdString();
    }
}

TEST(SystemSymbolWithoutPixelsTest, IsNull)
{
    EXPECT_TRUE(systemSymbol(u"hand.raised.fill", 0, Qt::black, 1).isNull());
    EXPECT_TRUE(systemSymbolSize(u"hand.raised.fill", 0).isEmpty());
}

} // namespace
} // namespace orlimo

#include "platform/desktop/SystemSymbol.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(SymbolArtwork, IsAFifthLargerThanTheText)
{
    for (const QStringView name :
         {u"slider.horizontal.2.square", u"ellipsis.bubble.fill", u"hand.raised.fill"})
    {
        EXPECT_EQ(systemSymbolSize(name, 10), QSize(12, 12));
        EXPECT_EQ(systemSymbolSize(name, 15), QSize(18, 18));
        EXPECT_EQ(systemSymbolSize(name, 24), QSize(29, 29));
    }
    for (const QStringView name : {u"logo", u"hand.raised"}) {
        EXPECT_TRUE(systemSymbol(name, 15, Qt::black, 1).isNull()) << "not a symbol";
    }
}

} // namespace
} // namespace orlimo

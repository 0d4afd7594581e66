#include "platform/desktop/Workspace.h"

#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(Workspace, MainScreenIsThePrimaryOneInQtsCoordinates)
{
    EXPECT_EQ(mainScreenFrame(), QGuiApplication::primaryScreen()->geometry());
    EXPECT_EQ(fromSystemCoordinates(QRectF(1, 2, 3, 4)), QRectF(1, 2, 3, 4));
}

TEST(Workspace, UrlWithoutAnOpenerIsReported)
{
    EXPECT_FALSE(openUrl(QUrl(QStringLiteral("orlimo-without-opener:address"))));
}

} // namespace
} // namespace orlimo

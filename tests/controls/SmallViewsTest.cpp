#include "controls/Divider.h"
#include "controls/ImageView.h"
#include "controls/Spacer.h"
#include "controls/painting/Colors.h"
#include "resources/Artwork.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <QVBoxLayout>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(Divider, IsLineOfOnePointInSeparatorColor)
{
    Divider divider;
    divider.resize(200, 1);
    EXPECT_EQ(divider.minimumHeight(), 1);
    EXPECT_EQ(divider.maximumHeight(), 1);
    EXPECT_EQ(divider.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture picture = Picture::of(divider);
        EXPECT_EQ(picture.ink(), QRectF(0, 0, 200, 1));
        EXPECT_THAT(picture.at(QPointF(100, 0)), isColor(separatorColor(scheme)));
    }
}

TEST(Spacer, TakesWhatItsNeighborsLeaveInItsDirectionOnly)
{
    QWidget window;
    auto* stack = new QVBoxLayout(&window);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(7);
    auto* above = new QWidget;
    above->setFixedHeight(20);
    auto* spacer = new Spacer(Qt::Vertical);
    stack->addWidget(above);
    stack->addWidget(spacer, 1);
    window.resize(50, 200);
    stack->activate();
    EXPECT_EQ(spacer->height(), 200 - 20 - 7);
    spacer->resize(20, 20);
    EXPECT_EQ(Picture::of(*spacer).ink(), QRectF());
    EXPECT_EQ(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding));
    const Spacer horizontal(Qt::Horizontal);
    EXPECT_EQ(horizontal.sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
    EXPECT_EQ(horizontal.sizeHint(), QSize(0, 0));
    EXPECT_EQ(horizontal.minimumSizeHint(), QSize(0, 0));
}

/// What an image view of that frame is to paint at the scale of `painted`.
Picture
imageAs(const Picture& painted, QStringView name, QSize frame, std::optional<QColor> tint = {})
{
    const Artwork image(u"images", name);
    const double scale = painted.pixelsPerPoint();
    return Picture((tint ? image.drawn(frame, scale, *tint) : image.drawn(frame, scale)).toImage());
}

TEST(ImageView, StretchesItsImageToItsFrame)
{
    ImageView view(QStringLiteral("logo"), QSize(90, 40));
    EXPECT_EQ(view.minimumSize(), QSize(90, 40));
    EXPECT_EQ(view.maximumSize(), QSize(90, 40));
    EXPECT_EQ(view.imageName(), QStringLiteral("logo"));
    const Picture painted = Picture::of(view);
    EXPECT_EQ(painted.differenceFrom(imageAs(painted, u"logo", QSize(90, 40))), QRectF());
    EXPECT_FALSE(painted.ink().isEmpty());
    ImageView unknown(QStringLiteral("no such image"), QSize(30, 30));
    EXPECT_EQ(Picture::of(unknown).ink(), QRectF());
    EXPECT_EQ(unknown.size(), QSize(30, 30));
}

TEST(ImageView, DrawsTemplateInCurrentTint)
{
    ImageView view(QStringLiteral("StatusBarIcon"), QSize(64, 64), textColor);
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture painted = Picture::of(view);
        const Picture expected =
            imageAs(painted, u"StatusBarIcon", QSize(64, 64), textColor(scheme));
        EXPECT_EQ(painted.differenceFrom(expected), QRectF());
    }
}

} // namespace
} // namespace orlimo

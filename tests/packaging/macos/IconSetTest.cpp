#include "packaging/macos/IconSet.h"

#include "tests/packaging/CommandResult.h"
#include "tests/support/PixelReading.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>

namespace orlimo {
namespace {

/// The files that iconutil takes, with the pixels that each has to have.
const std::map<std::string, int> files{
    {"icon_16x16.png", 16},
    {"icon_16x16@2x.png", 32},
    {"icon_32x32.png", 32},
    {"icon_32x32@2x.png", 64},
    {"icon_128x128.png", 128},
    {"icon_128x128@2x.png", 256},
    {"icon_256x256.png", 256},
    {"icon_256x256@2x.png", 512},
    {"icon_512x512.png", 512},
    {"icon_512x512@2x.png", 1024},
};

QImage pictureIn(const std::filesystem::path& file)
{
    const QImage picture(QString::fromStdString(file.string()));
    EXPECT_FALSE(picture.isNull()) << file;
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

class IconSetFolder : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(IconSet::writeTo(QString::fromStdString(set.string()))); }

    TemporaryFolder folder;
    std::filesystem::path set = folder.path() / "Orlimo.iconset";
};

TEST_F(IconSetFolder, HasTheTenFilesOfTheirSizes)
{
    std::map<std::string, int> found;
    for (const auto& file : std::filesystem::directory_iterator(set)) {
        const QImage picture = pictureIn(file.path());
        EXPECT_EQ(picture.width(), picture.height()) << file.path();
        found.emplace(file.path().filename().string(), picture.width());
    }
    EXPECT_EQ(found, files);
    EXPECT_TRUE(looksTheSame(pictureIn(set / "icon_128x128@2x.png"), IconSet::icon(128, 2)));
}

TEST_F(IconSetFolder, BecomesOneIconWithTheSamePictures)
{
    const auto icon = folder.path() / "Orlimo.icns";
    const auto making = CommandResult::of(
        ORLIMO_MACOS_TESTS "/standins/iconutil",
        {.arguments = {"--convert", "icns", "--output", icon.string(), set.string()}});
    ASSERT_EQ(making.status, 0) << making.text();
    const auto reading = CommandResult::of(
        "/usr/bin/env",
        {.arguments = {"icns2png", "-x", "-o", folder.path().string(), icon.string()}});
    ASSERT_EQ(reading.status, 0) << reading.text();
    for (const int points : {16, 32, 128, 256, 512}) {
        const std::string size = std::to_string(points) + "x" + std::to_string(points);
        EXPECT_TRUE(looksTheSame(
            pictureIn(folder.path() / ("Orlimo_" + size + "x32.png")),
            pictureIn(set / ("icon_" + size + ".png"))))
            << size;
    }
}

TEST(IconSet, HasItsTileWhereTheSystemsIconsHaveTheirs)
{
    EXPECT_EQ(inkOf(IconSet::icon(512, 2)), QRect(100, 100, 824, 824));
    EXPECT_EQ(inkOf(IconSet::icon(256, 1)), QRect(25, 25, 206, 206));
    // The smallest use all the room.
    EXPECT_GE(inkOf(IconSet::icon(16, 1)).width(), 14);
    EXPECT_GE(inkOf(IconSet::icon(16, 2)).width(), 28);
}

TEST(IconSet, IsNotWrittenIntoAFile)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "file";
    writeFile(file, "content");
    EXPECT_FALSE(IconSet::writeTo(QString::fromStdString((file / "Orlimo.iconset").string())));
    EXPECT_EQ(contentOf(file), "content");
}

} // namespace
} // namespace orlimo

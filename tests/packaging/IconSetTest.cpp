#include "packaging/macos/IconSet.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/widgets/PixelReading.h"

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

TEST(IconSet, HasTheTenFilesOfTheirSizes)
{
    const TemporaryFolder folder;
    const auto set = folder.path() / "Orlimo.iconset";
    ASSERT_TRUE(IconSet::writeTo(QString::fromStdString(set.string())));
    std::map<std::string, int> found;
    for (const auto& file : std::filesystem::directory_iterator(set)) {
        const QImage picture = pictureIn(file.path());
        EXPECT_EQ(picture.width(), picture.height()) << file.path();
        found.emplace(file.path().filename().string(), picture.width());
    }
    EXPECT_EQ(found, files);
    EXPECT_TRUE(isVisuallyEqual(pictureIn(set / "icon_128x128@2x.png"), IconSet::icon(128, 2)));
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

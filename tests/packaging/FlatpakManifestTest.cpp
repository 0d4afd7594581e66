#include "platform/ApplicationIdentity.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

const std::filesystem::path manifestFolder = ORLIMO_SOURCES "/packaging/flatpak";

std::vector<std::string> texts(const QJsonValue& list)
{
    std::vector<std::string> found;
    for (const auto& text : list.toArray()) {
        found.push_back(text.toString().toStdString());
    }
    return found;
}

/// The manifest as the tool that builds from it understands it.
class FlatpakManifest : public testing::Test
{
protected:
    void SetUp() override
    {
        // It keeps what it downloads in the folder where it runs, and makes a place for it.
        ChildProcess builder(
            "/usr/bin/env",
            {.arguments = {
                 "--chdir=" + folder.path().string(),
                 "flatpak-builder",
                 "--show-manifest",
                 file.string()}});
        ASSERT_EQ(builder.awaitEnd().status, 0) << builder.errors();
        // What it does not know it only complains of.
        EXPECT_EQ(builder.errors(), "");
        manifest = QJsonDocument::fromJson(QByteArray::fromStdString(builder.output())).object();
        ASSERT_FALSE(manifest.isEmpty()) << builder.output();
    }

    [[nodiscard]] std::string text(const char* key) const
    {
        return manifest.value(QLatin1String(key)).toString().toStdString();
    }

    TemporaryFolder folder;
    std::filesystem::path file =
        manifestFolder / (std::string(identity::applicationIdentifier) + ".yml");
    QJsonObject manifest;
};

TEST_F(FlatpakManifest, IsThisProgramsOwn)
{
    EXPECT_EQ(text("id"), identity::applicationIdentifier);
    EXPECT_EQ(text("command"), std::filesystem::path(ORLIMO_PROGRAM).filename());
    EXPECT_EQ(text("runtime"), "org.kde.Platform");
    EXPECT_EQ(text("sdk"), "org.kde.Sdk");
    EXPECT_THAT(text("runtime-version"), StartsWith("6."));
}

TEST_F(FlatpakManifest, OpensTheSandboxNoFurtherThanNeeded)
{
    EXPECT_THAT(
        texts(manifest.value(QLatin1String("finish-args"))),
        ElementsAre(
            "--socket=wayland",
            "--socket=x11",
            "--share=ipc",
            "--filesystem=~/Library/Messages",
            "--filesystem=~/Library/Containers/com.apple.stocks:ro",
            "--talk-name=org.kde.StatusNotifierWatcher"));
}

TEST_F(FlatpakManifest, BuildsTheTreeThatItStandsIn)
{
    const QJsonArray modules = manifest.value(QLatin1String("modules")).toArray();
    ASSERT_THAT(modules, SizeIs(1));
    const QJsonObject module = modules.first().toObject();
    EXPECT_EQ(module.value(QLatin1String("buildsystem")).toString(), QStringLiteral("cmake-ninja"));
    const QJsonArray sources = module.value(QLatin1String("sources")).toArray();
    ASSERT_THAT(sources, SizeIs(1));
    const QJsonObject source = sources.first().toObject();
    EXPECT_EQ(source.value(QLatin1String("type")).toString(), QStringLiteral("dir"));
    const auto path = source.value(QLatin1String("path")).toString().toStdString();
    EXPECT_TRUE(std::filesystem::equivalent(manifestFolder / path, ORLIMO_SOURCES)) << path;
}

TEST_F(FlatpakManifest, SetsOptionsThatThereAre)
{
    const QJsonObject module =
        manifest.value(QLatin1String("modules")).toArray().first().toObject();
    const std::string declarations = contentOf(ORLIMO_SOURCES "/CMakeLists.txt");
    for (const auto& option : texts(module.value(QLatin1String("config-opts")))) {
        const std::string name = option.substr(2, option.find('=') - 2);
        ASSERT_THAT(option, StartsWith("-D"));
        if (name.starts_with("ORLIMO_")) {
            EXPECT_THAT(declarations, testing::HasSubstr("option(" + name + " "));
        }
    }
}

} // namespace
} // namespace orlimo

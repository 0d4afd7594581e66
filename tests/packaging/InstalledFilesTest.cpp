#include "platform/ApplicationIdentity.h"
#include "tests/packaging/CommandResult.h"
#include "tests/packaging/InstalledTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

TEST(InstalledFiles, AreTheseForEverybodyToRead)
{
    EXPECT_EQ(
        InstalledTree().content(),
        (std::map<std::string, std::string>{
            {"bin/", "755"},
            {"bin/orlimo", "755"},
            {"share/", "755"},
            {"share/applications/", "755"},
            {"share/applications/app.orlimo.Orlimo.desktop", "644"},
            {"share/dbus-1/", "755"},
            {"share/dbus-1/services/", "755"},
            {"share/dbus-1/services/app.orlimo.Orlimo.service", "644"},
            {"share/doc/", "755"},
            {"share/doc/orlimo/", "755"},
            {"share/doc/orlimo/LICENSE", "644"},
            {"share/doc/orlimo/README.md", "644"},
            {"share/icons/", "755"},
            {"share/icons/hicolor/", "755"},
            {"share/icons/hicolor/scalable/", "755"},
            {"share/icons/hicolor/scalable/apps/", "755"},
            {"share/icons/hicolor/scalable/apps/app.orlimo.Orlimo.svg", "644"},
            {"share/icons/hicolor/symbolic/", "755"},
            {"share/icons/hicolor/symbolic/apps/", "755"},
            {"share/icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg", "644"},
            {"share/man/", "755"},
            {"share/man/man1/", "755"},
            {"share/man/man1/orlimo.1", "644"},
            {"share/metainfo/", "755"},
            {"share/metainfo/app.orlimo.Orlimo.metainfo.xml", "644"},
        }));
}

TEST(InstalledFiles, HaveNothingLeftToFillIn)
{
    const InstalledTree tree;
    for (const auto& [name, mode] : tree.content()) {
        if (!name.ends_with('/') && name.find("orlimo.") != std::string::npos) {
            EXPECT_THAT(contentOf(tree.file(name)), Not(ContainsRegex("@[A-Z_]+@"))) << name;
        }
    }
}

TEST(InstalledFiles, AreNamedAfterTheProgram)
{
    const InstalledTree tree;
    const std::string id(identity::applicationIdentifier);
    for (const std::string& name :
         {"applications/" + id + ".desktop",
          "dbus-1/services/" + id + ".service",
          "icons/hicolor/scalable/apps/" + id + ".svg",
          "icons/hicolor/symbolic/apps/" + id + "-symbolic.svg",
          "metainfo/" + id + ".metainfo.xml"})
    {
        EXPECT_TRUE(std::filesystem::exists(tree.dataFolder() / name)) << name;
    }
}

TEST(InstalledFiles, HoldTheProgram)
{
    const InstalledTree tree;
    const auto version = CommandResult::of(tree.file("bin/orlimo"), {.arguments = {"--version"}});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "Orlimo " + std::string(identity::version) + "\n");
}

TEST(InstalledFiles, HoldASymbolThatDesktopsPaintInTheirColour)
{
    const InstalledTree tree;
    const std::string symbol =
        contentOf(tree.file("share/icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg"));
    EXPECT_THAT(symbol, HasSubstr("width=\"16\" height=\"16\""));
    EXPECT_THAT(symbol, HasSubstr("<style id=\"current-color-scheme\" type=\"text/css\">"));
    EXPECT_THAT(symbol, HasSubstr("<path class=\"ColorScheme-Text\" fill=\"currentColor\""));
}

} // namespace
} // namespace orlimo

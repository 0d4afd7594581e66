#include "tests/packaging/macos/LinkedBundle.h"
#include "tests/packaging/macos/MacTools.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A bundle with a program and a plugin as they are linked against Homebrew's packages.
class GatherLibraries : public testing::Test
{
protected:
    void SetUp() override
    {
        tools.makeHomebrew(homebrew);
        std::filesystem::create_directories(bundle.contents() / "MacOS");
        std::filesystem::create_directories((bundle.contents() / plugin).parent_path());
        std::filesystem::copy_file(homebrew / "program", bundle.contents() / "MacOS/Orlimo");
        std::filesystem::copy_file(
            homebrew / "share/qt/plugins/platforms/libqcocoa.dylib", bundle.contents() / plugin);
        std::filesystem::copy_file(ORLIMO_INFO_PLIST, bundle.contents() / "Info.plist");
    }

    [[nodiscard]] CommandResult gather() const
    {
        return tools.runCMake(
            "gatherLibraries.cmake",
            {{"ORLIMO_BUNDLE", bundle.path().string()},
             {"ORLIMO_PLUGINS", plugin},
             {"ORLIMO_LIBRARY_FOLDERS", (homebrew / "lib").string() + ";" + icu.string()}});
    }

    TemporaryFolder folder;
    std::filesystem::path homebrew = folder.path() / "homebrew";
    std::filesystem::path icu = homebrew / "opt/icu4c@77/lib";
    std::string plugin = "PlugIns/platforms/libqcocoa.dylib";
    MacTools tools{folder.path() / "calls"};
    LinkedBundle bundle{folder.path() / "Orlimo.app"};
};

TEST_F(GatherLibraries, MakesABundleThatStandsByItself)
{
    // The second time everything is there already.
    for (int time = 0; time < 2; ++time) {
        const auto result = gather();
        ASSERT_EQ(result.status, 0) << result.text();
        EXPECT_THAT(
            bundle.libraries(),
            ElementsAre(
                "QtCore.framework",
                "QtDBus.framework",
                "QtGui.framework",
                "QtSvg.framework",
                "QtWidgets.framework",
                "libicudata.77.dylib",
                "libicui18n.77.dylib",
                "libicuuc.77.dylib",
                "libpcre2-16.0.dylib"));
        EXPECT_EQ(bundle.codeFiles().size(), 11U);
        EXPECT_THAT(bundle.namesLeadingOutside(), IsEmpty());
        EXPECT_THAT(bundle.ownNamesLeadingOutside(), IsEmpty());
        for (const auto& file : bundle.codeFiles()) {
            EXPECT_THAT(LinkedBundle::searchFolders(file), IsEmpty()) << file;
        }
    }
    const auto framework = bundle.contents() / "Frameworks/QtCore.framework";
    EXPECT_EQ(std::filesystem::read_symlink(framework / "Versions/Current"), "A");
    EXPECT_EQ(std::filesystem::read_symlink(framework / "QtCore"), "Versions/Current/QtCore");
    EXPECT_EQ(std::filesystem::read_symlink(framework / "Resources"), "Versions/Current/Resources");
    EXPECT_EQ(contentOf(framework / "Resources/Info.plist"), "QtCore\n");
}

TEST_F(GatherLibraries, FailsWhenALibraryIsNowhere)
{
    ASSERT_TRUE(std::filesystem::remove(icu / "libicudata.77.dylib"));
    const auto result = gather();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.text(), HasSubstr("cannot resolve item '@loader_path/libicudata.77.dylib'"));
}

} // namespace
} // namespace orlimo

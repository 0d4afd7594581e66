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

class GatherLibraries : public testing::Test
{
protected:
    void SetUp() override
    {
        tools.makeHomebrew(homebrew);
        const auto contents = bundle.contents();
        std::filesystem::create_directories(contents / "MacOS");
        std::filesystem::create_directories(contents / "PlugIns/platforms");
        std::filesystem::copy_file(homebrew / "program", contents / "MacOS/Orlimo");
        std::filesystem::copy_file(
            homebrew / "share/qt/plugins/platforms/libqcocoa.dylib",
            contents / "PlugIns/platforms/libqcocoa.dylib");
    }

    [[nodiscard]] CommandResult gather(std::vector<std::string> folders = {}) const
    {
        folders.insert(folders.begin(), bundle.path().string());
        return tools.run(
            "gather-libraries",
            folders,
            {{"OTOOL", ORLIMO_LLVM_OTOOL}, {"INSTALL_NAME_TOOL", ORLIMO_LLVM_INSTALL_NAME_TOOL}});
    }

    /// Takes a library away from the machine, and hands back where it was.
    void remove(const std::string& library) const
    {
        std::filesystem::permissions(
            (homebrew / library).parent_path(), std::filesystem::perms::owner_all);
        ASSERT_TRUE(std::filesystem::remove(homebrew / library));
    }

    TemporaryFolder folder;
    std::filesystem::path homebrew = folder.path() / "homebrew";
    MacTools tools{folder.path() / "calls"};
    LinkedBundle bundle{folder.path() / "Orlimo.app"};
};

TEST_F(GatherLibraries, BringsWhatIsNamedAndWhatThatNames)
{
    const auto result = gather();
    EXPECT_EQ(result.status, 0) << result.text();
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
}

TEST_F(GatherLibraries, LeavesNoNameThatLeadsOutside)
{
    EXPECT_EQ(gather().status, 0);
    EXPECT_EQ(bundle.codeFiles().size(), 11U);
    EXPECT_THAT(bundle.namesLeadingOutside(), ElementsAre());
    EXPECT_THAT(bundle.ownNamesLeadingOutside(), ElementsAre());
}

TEST_F(GatherLibraries, LetsTheProgramAloneSayWhereLibrariesAre)
{
    EXPECT_EQ(gather().status, 0);
    for (const auto& file : bundle.codeFiles()) {
        const auto wanted = file.filename() == "Orlimo"
                                ? std::vector<std::string>{"@executable_path/../Frameworks"}
                                : std::vector<std::string>{};
        EXPECT_EQ(LinkedBundle::searchFolders(file), wanted) << file;
    }
}

TEST_F(GatherLibraries, MakesWholeFrameworks)
{
    EXPECT_EQ(gather().status, 0);
    const auto framework = bundle.contents() / "Frameworks/QtCore.framework";
    EXPECT_EQ(std::filesystem::read_symlink(framework / "Versions/Current"), "A");
    EXPECT_EQ(std::filesystem::read_symlink(framework / "QtCore"), "Versions/Current/QtCore");
    EXPECT_EQ(std::filesystem::read_symlink(framework / "Resources"), "Versions/Current/Resources");
    EXPECT_EQ(contentOf(framework / "Resources/Info.plist"), "QtCore\n");
}

TEST_F(GatherLibraries, ChangesNothingTheSecondTime)
{
    EXPECT_EQ(gather().status, 0);
    std::map<std::string, std::string> before;
    for (const auto& file : bundle.codeFiles()) {
        before.emplace(file.string(), contentOf(file));
    }
    EXPECT_EQ(gather().status, 0);
    for (const auto& file : bundle.codeFiles()) {
        EXPECT_TRUE(before.at(file.string()) == contentOf(file)) << file;
    }
}

TEST_F(GatherLibraries, LooksInTheFoldersThatItIsTold)
{
    remove("opt/icu4c@77/lib/libicudata.77.dylib");
    const auto elsewhere = folder.path() / "elsewhere";
    std::filesystem::create_directories(elsewhere);
    std::filesystem::copy_file(
        homebrew / "opt/icu4c@77/lib/libicuuc.77.dylib", elsewhere / "libicudata.77.dylib");
    EXPECT_EQ(gather({elsewhere.string()}).status, 0);
    EXPECT_THAT(bundle.namesLeadingOutside(), ElementsAre());
}

TEST_F(GatherLibraries, FailsWhenALibraryIsNowhere)
{
    remove("opt/icu4c@77/lib/libicudata.77.dylib");
    const auto result = gather();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(
        result.errors,
        HasSubstr("@loader_path/libicudata.77.dylib, which Frameworks/libicuuc.77.dylib names, is "
                  "nowhere"));
}

TEST_F(GatherLibraries, WantsABundle)
{
    EXPECT_EQ(tools.run("gather-libraries", {}).status, 2);
    EXPECT_EQ(tools.run("gather-libraries", {homebrew.string()}).status, 2);
    EXPECT_EQ(tools.run("gather-libraries", {"--help"}).status, 0);
}

} // namespace
} // namespace orlimo

#include "platform/ApplicationIdentity.h"
#include "tests/packaging/macos/LinkedBundle.h"
#include "tests/packaging/macos/MacTools.h"
#include "tests/packaging/macos/PropertyList.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The whole tree, configured, built, installed and packaged as on macOS, every file of it compiled
/// to one that is empty.
class BundleBuild : public testing::Test
{
protected:
    void SetUp() override { tools.makeHomebrew(homebrew); }

    void runTool(const std::string& tool, std::vector<std::string> arguments) const
    {
        auto variables = tools.environment();
        variables["ORLIMO_HOMEBREW"] = homebrew.string();
        variables["ORLIMO_ICON_SET"] = ORLIMO_ICON_SET;
        variables["ORLIMO_LIBRARY_ARCHITECTURE"] = ORLIMO_LIBRARY_ARCHITECTURE;
        variables["CMAKE_CXX_COMPILER_LAUNCHER"] = std::nullopt;
        variables["CMAKE_OBJCXX_COMPILER_LAUNCHER"] = std::nullopt;
        const auto result = CommandResult::of(
            tool,
            {.arguments = std::move(arguments), .environment = variables},
            std::chrono::minutes(10));
        ASSERT_EQ(result.status, 0) << result.text();
    }

    /// With the tests and the benchmarks, ON, or the program alone, OFF.
    void configure(const std::string& tests = "OFF") const
    {
        const auto plugins = homebrew / "share/qt/plugins";
        runTool(
            ORLIMO_CMAKE,
            {"-S",
             ORLIMO_SOURCES,
             "-B",
             build.string(),
             "-G",
             "Ninja",
             "-DCMAKE_BUILD_TYPE=Release",
             "-DORLIMO_BUILD_BENCHMARKS=" + tests,
             "-DORLIMO_BUILD_TESTS=" + tests,
             "-DCMAKE_TOOLCHAIN_FILE=" ORLIMO_MACOS_TESTS "/darwin.cmake",
             "-DORLIMO_PLUGIN_platforms_libqcocoa=" +
                 (plugins / "platforms/libqcocoa.dylib").string(),
             "-DORLIMO_PLUGIN_styles_libqmacstyle=" +
                 (plugins / "styles/libqmacstyle.dylib").string(),
             "-DORLIMO_TOOLKIT_TRANSLATIONS=" + (homebrew / "share/qt/translations").string()});
    }

    void expectWholeBundle(const LinkedBundle& bundle) const
    {
        const auto resources = bundle.contents() / "Resources";
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(resources)) {
            names.push_back(entry.path().lexically_relative(resources).string());
        }
        EXPECT_THAT(
            names,
            testing::UnorderedElementsAre(
                "LICENSE",
                "Orlimo.icns",
                "qt.conf",
                "translations",
                "translations/qtbase_de.qm",
                "translations/qtbase_pt_BR.qm",
                "translations/qtbase_zh_TW.qm"));
        EXPECT_THAT(contentOf(resources / "qt.conf"), HasSubstr("Plugins = PlugIns\n"));
        EXPECT_TRUE(
            std::filesystem::exists(bundle.contents() / "PlugIns/platforms/libqcocoa.dylib"));
        EXPECT_TRUE(
            std::filesystem::exists(bundle.contents() / "PlugIns/styles/libqmacstyle.dylib"));
        EXPECT_EQ(bundle.codeFiles().size(), 12U);
        EXPECT_THAT(bundle.namesLeadingOutside(), IsEmpty());
        EXPECT_THAT(bundle.ownNamesLeadingOutside(), IsEmpty());
    }

    /// What the list names is there.
    static void expectListToFit(const LinkedBundle& bundle)
    {
        const PropertyList list(bundle.contents() / "Info.plist");
        EXPECT_EQ(list.text("CFBundleIdentifier"), identity::applicationIdentifier);
        const auto program = bundle.contents() / "MacOS" / list.text("CFBundleExecutable");
        EXPECT_EQ(
            LinkedBundle::searchFolders(program),
            std::vector<std::string>{"@executable_path/../Frameworks"});
        const auto icon =
            bundle.contents() / "Resources" / (list.text("CFBundleIconFile") + ".icns");
        EXPECT_TRUE(contentOf(icon).starts_with("icns"));
    }

    TemporaryFolder folder;
    std::filesystem::path homebrew = folder.path() / "homebrew";
    std::filesystem::path build = folder.path() / "build";
    MacTools tools{folder.path() / "calls"};
};

TEST_F(BundleBuild, HasTheTestsThatCanWorkThere)
{
    configure("ON");
    const std::string rules = contentOf(build / "build.ninja");
    // The rules are far too long to be printed.
    const auto haveRuleFor = [&rules](const std::string& file) {
        return rules.find("/tests/" + file + " ") != std::string::npos;
    };
    for (const char* const file :
         {"app/AppDelegateTest.cpp",
          "capture/MessageTest.cpp",
          "controls/SwitchTest.cpp",
          "login/LaunchAtLoginTest.cpp",
          "platform/CommitAwarenessTest.cpp",
          "platform/macos/LibraryFolderTest.mm",
          "watch/FileMonitorTest.cpp"})
    {
        EXPECT_TRUE(haveRuleFor(file)) << file;
    }
    for (const char* const room : {"app", "capture", "login", "platform"}) {
        const std::string ofLinux = "/tests/" + std::string(room) + "/linux/";
        EXPECT_EQ(rules.find(ofLinux), std::string::npos) << ofLinux;
    }
    EXPECT_EQ(rules.find("/platform/linux/"), std::string::npos);
}

TEST_F(BundleBuild, GivesTestsAnIdentifierOfTheirOwnAndLetsThemFork)
{
    configure("ON");
    const auto list = build / "tests/Info.plist";
    EXPECT_EQ(
        PropertyList(list).text("CFBundleIdentifier"),
        std::string(identity::applicationIdentifier) + ".tests");
    std::istringstream rules(contentOf(build / "build.ninja"));
    const std::string section = "-Xlinker __info_plist -Xlinker " + list.string();
    int programs = 0;
    std::string program;
    for (std::string line; std::getline(rules, line);) {
        if (line.starts_with("build ")) {
            program = line.find("CXX_EXECUTABLE_LINKER") == std::string::npos ? "" : line;
        } else if (line.starts_with("  LINK_FLAGS = ") && !program.empty()) {
            const bool isTest = program.starts_with("build tests/");
            EXPECT_EQ(line.find(section) != std::string::npos, isTest) << program << line;
            programs += isTest ? 1 : 0;
        }
    }
    EXPECT_GE(programs, 15);
    const auto registered = build / "tests/platform/orlimo_platform_tests[1]_include.cmake";
    EXPECT_THAT(contentOf(registered), HasSubstr("OBJC_DISABLE_INITIALIZE_FORK_SAFETY=set:YES"));
}

TEST_F(BundleBuild, MakesInstallsAndSignsAWholeBundle)
{
    ASSERT_NO_FATAL_FAILURE(configure());
    ASSERT_NO_FATAL_FAILURE(runTool(
        ORLIMO_CMAKE, {"--build", build.string(), "--target", "orlimo", "orlimo-sample-store"}));
    EXPECT_TRUE(std::filesystem::exists(build / "Orlimo.app/Contents/MacOS/Orlimo"));
    EXPECT_TRUE(std::filesystem::exists(build / "orlimo-sample-store"));

    const auto installed = folder.path() / "installed";
    ASSERT_NO_FATAL_FAILURE(
        runTool(ORLIMO_CMAKE, {"--install", build.string(), "--prefix", installed.string()}));
    const LinkedBundle bundle(installed / "Orlimo.app");
    expectWholeBundle(bundle);
    expectListToFit(bundle);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(installed), {}), 1)
        << "the bundle is all";

    // No system but macOS makes its images; everything before that is the same for archives.
    const auto packages = folder.path() / "packages";
    ASSERT_NO_FATAL_FAILURE(runTool(
        ORLIMO_CPACK,
        {"--config",
         (build / "CPackConfig.cmake").string(),
         "-G",
         "TGZ",
         "-B",
         packages.string()}));
    EXPECT_TRUE(std::filesystem::exists(
        packages / ("Orlimo-" + std::string(identity::version) + ".tar.gz")));
    const auto calls = tools.recordedCalls();
    ASSERT_GE(calls.size(), 2U);
    EXPECT_THAT(calls[calls.size() - 2], HasSubstr("codesign --force --sign - "));
    EXPECT_THAT(calls.back(), HasSubstr("codesign --verify --deep --strict"));
    const std::string settings = contentOf(build / "CPackConfig.cmake");
    EXPECT_THAT(settings, HasSubstr("set(CPACK_GENERATOR \"DragNDrop\")"));
    EXPECT_THAT(settings, HasSubstr("set(CPACK_DMG_VOLUME_NAME \"Orlimo\")"));
}

} // namespace
} // namespace orlimo

#include "platform/ApplicationIdentity.h"
#include "tests/packaging/PropertyList.h"
#include "tests/packaging/macos/MacTools.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

/// The whole tree, configured, built and packaged as on a Mac with Homebrew, every file of it
/// compiled to one that is empty.
class BundleBuild : public testing::Test
{
protected:
    void SetUp() override { tools.makeHomebrew(homebrew); }

    /// Runs the words in a shell in which they find the system and its tools to be macOS's.
    [[nodiscard]] CommandResult
    run(const std::string& words, const std::string& prefixPath = "") const
    {
        auto variables = tools.environment();
        variables["CMAKE_PREFIX_PATH"] = prefixPath;
        variables["CMAKE_TOOLCHAIN_FILE"] = ORLIMO_MACOS_TESTS "/darwin.cmake";
        variables["ORLIMO_HOMEBREW"] = homebrew.string();
        variables["ORLIMO_ICON_SET"] = ORLIMO_ICON_SET;
        variables["CMAKE_CXX_COMPILER_LAUNCHER"] = std::nullopt;
        variables["CMAKE_OBJCXX_COMPILER_LAUNCHER"] = std::nullopt;
        return CommandResult::of(
            "/bin/bash",
            {.arguments =
                 {"-c", "set -eu; cd \"$0\"; build=$1; " + words, ORLIMO_SOURCES, build.string()},
             .environment = variables},
            std::chrono::minutes(10));
    }

    /// Everything in the bundle, with the libraries behind the code's names.
    static void expectWholeBundle(const std::filesystem::path& bundle)
    {
        // Every file, and of code what leads out of the bundle: names of libraries, search paths.
        const std::string listing = R"sh(cd "$0"
            find . -type f ! -name Info.plist ! -name signature | while IFS= read -r file; do
                echo "$file"
                [ "$(head -c 4 "$file" | od -An -tx1)" = " cf fa ed fe" ] || continue
                ")sh" ORLIMO_LLVM_OTOOL R"sh(" -l "$file" |
                    sed -n 's/^ *\(name\|path\) \(.*\) (offset.*/\2/p' |
                    while IFS= read -r name; do
                        case "$name" in
                        /usr/lib/* | @executable_path/../Frameworks/"${file##*/}") ;;
                        @executable_path/*) [ -e "MacOS/${name#*/}" ] || echo "missing: $name" ;;
                        *) echo "outside: $name" ;;
                        esac
                    done
            done)sh";
        const auto files = CommandResult::of(
            "/bin/sh", {.arguments = {"-c", listing, (bundle / "Contents").string()}});
        std::vector<std::string> expected{
            "./MacOS/Orlimo",
            "./PlugIns/platforms/libqcocoa.dylib",
            "./PlugIns/styles/libqmacstyle.dylib",
            "./Resources/LICENSE",
            "./Resources/Orlimo.icns",
            "./Resources/qt.conf",
            "./Resources/translations/qtbase_de.qm",
            "./Resources/translations/qtbase_pt_BR.qm",
            "./Resources/translations/qtbase_zh_TW.qm"};
        for (const char* name : {"icudata.77", "icui18n.77", "icuuc.77", "pcre2-16.0"}) {
            expected.push_back("./Frameworks/lib" + std::string(name) + ".dylib");
        }
        for (const std::string name : {"QtCore", "QtDBus", "QtGui", "QtSvg", "QtWidgets"}) {
            expected.push_back("./Frameworks/" + name + ".framework/Versions/A/" + name);
        }
        EXPECT_THAT(linesOf(files.output), UnorderedElementsAreArray(expected)) << files.errors;
        const auto configuration = contentOf(bundle / "Contents/Resources/qt.conf");
        EXPECT_THAT(configuration, HasSubstr("Plugins = PlugIns\n"));

        const auto framework = bundle / "Contents/Frameworks/QtCore.framework";
        const auto permissions = std::filesystem::status(framework / "QtCore").permissions();
        EXPECT_NE(permissions & std::filesystem::perms::owner_write, std::filesystem::perms::none);
        EXPECT_EQ(std::filesystem::read_symlink(framework / "Versions/Current"), "A");
        EXPECT_EQ(std::filesystem::read_symlink(framework / "QtCore"), "Versions/Current/QtCore");
        EXPECT_EQ(contentOf(framework / "Resources/Info.plist"), "QtCore\n");
    }

    /// What the list names is there.
    static void expectListToFit(const std::filesystem::path& bundle)
    {
        const auto contents = bundle / "Contents";
        const PropertyList list(contents / "Info.plist");
        EXPECT_EQ(list.text("CFBundleIdentifier"), identity::applicationIdentifier);
        EXPECT_EQ(list.text("LSMinimumSystemVersion"), "15.5");
        EXPECT_TRUE(std::filesystem::exists(contents / "MacOS" / list.text("CFBundleExecutable")));
        const auto icon = contents / "Resources" / (list.text("CFBundleIconFile") + ".icns");
        EXPECT_TRUE(contentOf(icon).starts_with("icns"));
    }

    /// Test programs have another identifier than the program, so that its preferences are not
    /// theirs, may fork, and do not clear them under each other.
    void expectTestsOfTheirOwn(const std::string& rules) const
    {
        const auto list = build / "tests/Info.plist";
        EXPECT_EQ(
            PropertyList(list).text("CFBundleIdentifier"),
            std::string(identity::applicationIdentifier) + ".tests");
        const std::string section = "-Xlinker __info_plist -Xlinker " + list.string();
        int programs = 0;
        std::string program;
        for (const std::string& line : linesOf(rules)) {
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
        EXPECT_THAT(
            contentOf(registered), HasSubstr("OBJC_DISABLE_INITIALIZE_FORK_SAFETY=set:YES"));
        // After the tests were found, or there would be none to lock.
        EXPECT_THAT(
            contentOf(build / "tests/platform/CTestTestfile.cmake"),
            testing::ContainsRegex("platform_tests.*_include.*shared_preferences.cmake"));
    }

    TemporaryFolder folder;
    std::filesystem::path homebrew = folder.path() / "homebrew";
    std::filesystem::path build = folder.path() / "build";
    MacTools tools{folder.path() / "calls"};
};

constexpr const char* configureWithTests =
    "cmake -S . -B \"$build\" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORLIMO_BUILD_TESTS=ON";

TEST_F(BundleBuild, FindsWhatHomebrewLinksTogether)
{
    const auto result =
        run(std::string(". packaging/toolchain-environment; ") + configureWithTests);
    ASSERT_EQ(result.status, 0) << result.text();

    const std::string cache = contentOf(build / "CMakeCache.txt");
    const std::string prefix = homebrew.string();
    EXPECT_THAT(cache, HasSubstr("\nQt6_DIR:PATH=" + prefix + "/lib/cmake/Qt6\n"));
    EXPECT_THAT(cache, HasSubstr("=" + prefix + "/opt/icu4c@77/lib/libicui18n.dylib\n"));
    EXPECT_THAT(cache, HasSubstr("=" + prefix + "/share/qt/translations\n"));
    EXPECT_THAT(cache, HasSubstr("=" + prefix + "/share/qt/plugins/platforms/libqcocoa.dylib\n"));

    // The rules are far too long to be printed.
    const std::string rules = contentOf(build / "build.ninja");
    for (const std::string file :
         {"app/AppDelegateTest.cpp",
          "platform/CommitAwarenessTest.cpp",
          "platform/macos/LibraryFolderTest.mm",
          "watch/FileMonitorTest.cpp"})
    {
        EXPECT_NE(rules.find("/tests/" + file + " "), std::string::npos) << file;
    }
    EXPECT_EQ(rules.find("/linux/"), std::string::npos);
    expectTestsOfTheirOwn(rules);
}

TEST_F(BundleBuild, FindsNoOtherModuleInOnePackageOfQts)
{
    const auto result =
        run(configureWithTests,
            (homebrew / "opt/qtbase").string() + ":" + (homebrew / "opt/icu4c@77").string());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("Failed to find required Qt component"));
}

TEST_F(BundleBuild, MakesAWholeBundleAndAnImageOfIt)
{
    const auto making = run("packaging/macos/dmg --ad-hoc --minimum-system 15.5 --into \"$build\"");
    ASSERT_EQ(making.status, 0) << making.text();
    const std::string name = "Orlimo-" + std::string(identity::version) + "-arm64";
    EXPECT_EQ(making.output, (build / (name + ".dmg")).string() + "\n");
    EXPECT_TRUE(std::filesystem::exists(build / (name + ".dmg")));
    EXPECT_TRUE(std::filesystem::exists(build / "Orlimo.app/Contents/MacOS/Orlimo"));
    EXPECT_TRUE(std::filesystem::exists(build / "orlimo-sample-store"));

    const auto packed = build / "_CPack_Packages/Darwin/TGZ" / name;
    expectWholeBundle(packed / "Orlimo.app");
    expectListToFit(packed / "Orlimo.app");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(packed), {}), 1)
        << "the bundle is all";

    const auto calls = tools.recordedCalls();
    ASSERT_GE(calls.size(), 4U);
    EXPECT_THAT(calls[calls.size() - 4], HasSubstr("codesign --force --sign - "));
    EXPECT_THAT(calls[calls.size() - 3], HasSubstr("codesign --verify --deep --strict"));
    EXPECT_THAT(calls.back(), HasSubstr("Orlimo-" + std::string(identity::version)));
    const std::string settings = contentOf(build / "CPackConfig.cmake");
    EXPECT_THAT(settings, HasSubstr("set(CPACK_GENERATOR \"DragNDrop\")"));
    EXPECT_THAT(settings, HasSubstr("set(CPACK_DMG_VOLUME_NAME \"Orlimo\")"));

    // Again in the same place; then with a library of a later system, and with none.
    const std::string install = "cmake --install \"$build\" --prefix \"$build/installed\"";
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(run(install).status, 0);
        expectWholeBundle(build / "installed/Orlimo.app");
    }
    const auto library = homebrew / "Cellar/icu4c@77/77.1/lib/libicudata.77.dylib";
    std::filesystem::remove(library);
    tools.makeLibrary(library, "arm64", "26.0");
    const auto later = run(install);
    EXPECT_EQ(later.status, 1);
    EXPECT_THAT(later.errors, HasSubstr("Frameworks/libicudata.77.dylib needs macOS 26.0"));
    std::filesystem::remove(library);
    std::filesystem::remove_all(build / "installed");
    const auto missing = run(install);
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.text(), HasSubstr("cannot resolve item '@loader_path/libicudata.77"));
}

} // namespace
} // namespace orlimo

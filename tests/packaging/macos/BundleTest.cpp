#include "tests/packaging/macos/MacTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// What an installation on macOS does to the bundle, tried on libraries in the format of macOS.
class Bundle : public testing::Test
{
protected:
    Bundle() { std::filesystem::create_directories(frameworks); }

    static void shell(const std::string& script, const std::vector<std::string>& words)
    {
        std::vector<std::string> arguments{"-ceu", script};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const auto result = CommandResult::of("/bin/sh", {.arguments = arguments});
        ASSERT_EQ(result.status, 0) << result.text();
    }

    /// Links `file` for `architecture` and the macOS `system`; `more` are further words for the
    /// linker.
    static void link(
        const std::filesystem::path& file,
        const std::string& architecture,
        const std::string& system,
        const std::string& more = "-dylib")
    {
        shell(
            "echo 'int main(void) { return 0; }' | " ORLIMO_CLANG
            " -target \"$1-apple-macos$2\" -x c -c -o \"$0.o\" -\n" ORLIMO_LD64
            " -arch \"$1\" -platform_version macos \"$2\" \"$2\" -headerpad_max_install_names "
            "-undefined dynamic_lookup $3 -o \"$0\" \"$0.o\"\nrm \"$0.o\"",
            {file.string(), architecture, system, more});
    }

    void makeUniversal(const std::string& name, const std::string& parts) const
    {
        shell(
            "cd \"$0\" && " ORLIMO_LLVM_LIPO " -create " + parts + " -output " + name,
            {frameworks.string()});
    }

    [[nodiscard]] CommandResult
    runStep(const std::string& script, std::vector<std::string> arguments = {}) const
    {
        arguments.insert(
            arguments.begin(),
            {"-DORLIMO_BUNDLE=" + bundle.string(),
             "-DORLIMO_LIPO=" ORLIMO_LLVM_LIPO,
             "-DORLIMO_OTOOL=" ORLIMO_LLVM_OTOOL});
        arguments.insert(arguments.end(), {"-P", ORLIMO_SOURCES "/packaging/macos/" + script});
        return CommandResult::of(
            ORLIMO_CMAKE,
            {.arguments = arguments, .environment = tools.settings("", {}).environment});
    }

    /// Checks the bundle, whose list promises that it runs on `promised`.
    [[nodiscard]] CommandResult check(const std::string& promised) const
    {
        writeFile(
            bundle / "Contents/Info.plist",
            "<key>LSMinimumSystemVersion</key>\n\t<string>" + promised + "</string>\n");
        return runStep("checkMinimumSystem.cmake");
    }

    TemporaryFolder folder;
    std::filesystem::path bundle = folder.path() / "Orlimo.app";
    std::filesystem::path frameworks = bundle / "Contents/Frameworks";
    MacTools tools;
};

TEST_F(Bundle, MinimumSystemIsNotBelowThatOfALibrary)
{
    link(frameworks / "libsame.dylib", "arm64", "15.0");
    link(frameworks / "libold.dylib", "x86_64", "10.13");
    makeUniversal("libolder.dylib", "libsame.dylib libold.dylib");
    const auto enough = check("15.0");
    EXPECT_EQ(enough.status, 0) << enough.text();
    // Libraries for systems before 10.14 have another command.
    EXPECT_THAT(check("10.12").errors, HasSubstr("Frameworks/libold.dylib needs macOS 10.13\n"));
    EXPECT_EQ(check("").status, 1) << "the list has to promise something";

    link(frameworks / "liblater.dylib", "arm64", "26.0");
    link(frameworks / "liblatest.dylib", "x86_64", "26.1");
    makeUniversal("libboth.dylib", "libsame.dylib liblatest.dylib");
    makeUniversal("libother.dylib", "liblater.dylib libold.dylib");
    const auto result = check("15.0");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(
        result.errors,
        AllOf(
            HasSubstr("says that it is for macOS 15.0"),
            HasSubstr("Frameworks/liblater.dylib needs macOS 26.0\n"),
            HasSubstr("Frameworks/liblatest.dylib needs macOS 26.1\n"),
            HasSubstr("Frameworks/libboth.dylib needs macOS 26.1\n"),
            HasSubstr("Frameworks/libother.dylib needs macOS 26.0\n"),
            HasSubstr("--minimum-system"),
            Not(HasSubstr("libsame")),
            Not(HasSubstr("libold"))));
}

TEST_F(Bundle, GetsTheLibrariesThatTheProgramRefersTo)
{
    tools.add("otool", "exec " ORLIMO_LLVM_OTOOL " \"$@\"");
    tools.add("install_name_tool", "exec " ORLIMO_LLVM_INSTALL_NAME_TOOL " \"$@\"");
    const auto libraries = folder.path() / "libraries";
    const auto program = bundle / "Contents/MacOS/Orlimo";
    const auto inner = libraries / "libinner.dylib";
    const auto outer = libraries / "libouter.dylib";
    std::filesystem::create_directories(libraries);
    std::filesystem::create_directories(program.parent_path());
    writeFile(
        bundle / "Contents/Info.plist", "<key>CFBundleExecutable</key>\n<string>Orlimo</string>\n");
    link(inner, "arm64", "15.0", "-dylib -install_name @loader_path/libinner.dylib");
    link(outer, "arm64", "15.0", "-dylib -install_name " + outer.string() + " " + inner.string());
    link(program, "arm64", "15.0", outer.string());
    // Homebrew's files are nobody's to write to.
    std::filesystem::permissions(inner, std::filesystem::perms::owner_read);
    const std::vector<std::string> arguments{
        "-DORLIMO_PLUGINS=", "-DORLIMO_LIBRARY_FOLDERS=" + libraries.string()};
    const auto gathering = runStep("gatherLibraries.cmake", arguments);
    ASSERT_EQ(gathering.status, 0) << gathering.text();
    const auto references = CommandResult::of(
        ORLIMO_LLVM_OTOOL,
        {.arguments = {"-L", program.string(), (frameworks / "libouter.dylib").string()}});
    EXPECT_THAT(references.output, HasSubstr("@executable_path/../Frameworks/libouter.dylib "));
    EXPECT_THAT(references.output, HasSubstr("@executable_path/../Frameworks/libinner.dylib "));
    EXPECT_THAT(references.output, Not(HasSubstr("\t" + libraries.string())));
    const auto permissions = std::filesystem::status(frameworks / "libinner.dylib").permissions();
    EXPECT_NE(permissions & std::filesystem::perms::owner_write, std::filesystem::perms::none);

    std::filesystem::remove(inner);
    std::filesystem::remove_all(frameworks);
    link(program, "arm64", "15.0", outer.string());
    EXPECT_EQ(runStep("gatherLibraries.cmake", arguments).status, 1) << "a library is missing";
}

/// The script that makes the disk image, between a build and a packer that only note their calls.
class DiskImage : public testing::Test
{
protected:
    DiskImage()
    {
        const std::string prefix = (tools.path() / "homebrew").string();
        tools.add("brew", "case \"$*\" in --prefix*) echo " + prefix + " ;; *) exit 1 ;; esac");
        tools.add("xcode-select");
        tools.add("sleep");
        tools.add("cmake");
        // Something else holds the image at first, as happens on a Mac.
        tools.add(
            "cpack",
            R"([ -f busy ] || { touch busy; echo "hdiutil: create failed - Resource busy"; exit 1; }
            echo image >Orlimo-1.0-arm64.dmg)");
    }

    [[nodiscard]] CommandResult make(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--into", build.string()});
        return tools.run("dmg", arguments);
    }

    MacTools tools;
    std::filesystem::path build = tools.path() / "build";
};

TEST_F(DiskImage, IsBuiltPackedAndSigned)
{
    writeFile(build / "Orlimo-0.9-arm64.dmg", "of an earlier build");
    const auto making = make({"--ad-hoc", "--minimum-system", "15.5"});
    ASSERT_EQ(making.status, 0) << making.text();
    EXPECT_EQ(making.output, (build / "Orlimo-1.0-arm64.dmg").string() + "\n");
    EXPECT_EQ(contentOf(build / "Orlimo-1.0-arm64.dmg"), "image\nsigned\n");
    auto calls = tools.toolCalls();
    std::erase_if(calls, [](const auto& call) {
        return call.starts_with("brew ") || call.starts_with("xcode-");
    });
    EXPECT_THAT(
        calls,
        ElementsAre(
            "cmake --preset package-macos -B " + build.string() +
                " -DCMAKE_OSX_DEPLOYMENT_TARGET=15.5",
            "cmake --build " + build.string() + " --target orlimo orlimo-sample-store",
            "cpack",
            "sleep 5",
            "cpack",
            "codesign --force --sign - --timestamp=none (copy)/Orlimo-1.0-arm64.dmg",
            "codesign --verify --strict --verbose=2 (copy)/Orlimo-1.0-arm64.dmg"));
}

TEST_F(DiskImage, FailsBeforeTheBuildWithoutACertificateAndWithTheBuild)
{
    EXPECT_EQ(make({}).status, 2) << "nothing to sign with";
    EXPECT_EQ(make({"--ad-hoc", "--minimum-system", "new"}).status, 2);
    EXPECT_EQ(make({"--cake"}).status, 2);
    EXPECT_THAT(tools.toolCalls(), Not(testing::Contains(HasSubstr("cmake"))));
    tools.add("cmake", "echo 'no compiler'; exit 1");
    const auto building = make({"--ad-hoc"});
    EXPECT_EQ(building.status, 1);
    EXPECT_THAT(building.errors, HasSubstr("no compiler"));
}

} // namespace
} // namespace orlimo

#include "tests/packaging/macos/MacTools.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class MinimumSystem : public testing::Test
{
protected:
    MinimumSystem()
    {
        std::filesystem::create_directories(frameworks);
        tools.makeLibrary(frameworks / "libsame.dylib", "arm64", "15.0");
        tools.makeLibrary(frameworks / "libold.dylib", "x86_64", "10.13");
    }

    /// Checks a bundle whose list promises that it runs on `promised`.
    [[nodiscard]] CommandResult check(const std::string& promised) const
    {
        writeFile(
            bundle / "Contents/Info.plist",
            "<key>LSMinimumSystemVersion</key>\n\t<string>" + promised + "</string>\n");
        return CommandResult::of(
            ORLIMO_CMAKE,
            {.arguments =
                 {"-DORLIMO_BUNDLE=" + bundle.string(),
                  "-P",
                  ORLIMO_SOURCES "/packaging/macos/checkMinimumSystem.cmake"},
             .environment = tools.environment()});
    }

    void makeUniversal(const std::string& name, const std::string& parts) const
    {
        const std::string making = ORLIMO_LLVM_LIPO " -create " + parts + " -output " + name;
        const auto result = CommandResult::of(
            "/bin/sh", {.arguments = {"-c", "cd \"$0\" && " + making, frameworks.string()}});
        ASSERT_EQ(result.status, 0) << result.text();
    }

    TemporaryFolder folder;
    std::filesystem::path bundle = folder.path() / "Orlimo.app";
    std::filesystem::path frameworks = bundle / "Contents/Frameworks";
    MacTools tools{folder.path() / "calls"};
};

TEST_F(MinimumSystem, IsNotBelowWhatALibraryNeeds)
{
    makeUniversal("libolder.dylib", "libsame.dylib libold.dylib");
    const auto enough = check("15.0");
    EXPECT_EQ(enough.status, 0) << enough.text();

    tools.makeLibrary(frameworks / "liblater.dylib", "arm64", "26.0");
    tools.makeLibrary(frameworks / "liblatest.dylib", "x86_64", "26.1");
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

TEST_F(MinimumSystem, IsReadFromTheCommandOfOldLibrariesToo)
{
    EXPECT_THAT(check("10.12").errors, HasSubstr("Frameworks/libold.dylib needs macOS 10.13\n"));
    EXPECT_EQ(check("").status, 1) << "the list has to promise something";
}

} // namespace
} // namespace orlimo

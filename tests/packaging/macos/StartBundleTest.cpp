#include "tests/packaging/macos/MacTools.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>
#include <utility>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StrEq;

class StartBundle : public testing::Test
{
protected:
    [[nodiscard]] CommandResult
    start(const std::string& program, const std::string& sampleStore = ORLIMO_SAMPLE_STORE) const
    {
        return tools.run(
            "start-bundle",
            {"--seconds", "1", program, sampleStore},
            {{"QT_QPA_PLATFORM", "offscreen"}, {"TMPDIR", folder.path().string()}});
    }

    /// A program that does what the lines of `script` say.
    [[nodiscard]] std::string program(const std::string& script) const
    {
        const auto file = folder.path() / "program";
        writeFile(file, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file.string();
    }

    TemporaryFolder folder;
    MacTools tools{folder.path() / "calls"};
};

TEST_F(StartBundle, SeesTheProgramAtWork)
{
    const auto result = start(ORLIMO_PROGRAM);
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(
        result.output,
        AllOf(
            HasSubstr("\nfile access allowed\n"),
            HasSubstr("\nfile changed!! at message: code? 482913\n"),
            HasSubstr("captured the code 482913\n")));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "nothing is left";
}

TEST_F(StartBundle, StartsACopyOfABundleWithAnIdentityOfItsOwn)
{
    const auto bundle = folder.path() / "Orlimo.app";
    const auto executable = bundle / "Contents/MacOS/Orlimo";
    // The last does not get far.
    const std::string early = program("echo \"$0\"");
    for (const auto& [named, started, status] :
         {std::tuple{executable, std::string(ORLIMO_PROGRAM), 0},
          std::tuple{bundle, std::string(ORLIMO_PROGRAM), 0},
          std::tuple{bundle, early, 1}})
    {
        std::filesystem::create_directories(executable.parent_path());
        std::filesystem::create_symlink(started, executable);
        const auto result = start(named.string());
        EXPECT_EQ(result.status, status) << named;
        if (started == early) {
            EXPECT_THAT(result.output, HasSubstr("/Orlimo.app/Contents/MacOS/Orlimo\n"));
            EXPECT_THAT(result.output, Not(HasSubstr(executable.string())));
            std::filesystem::remove(early);
        }
        EXPECT_THAT(
            tools.recordedCalls(),
            ElementsAre(
                MatchesRegex("xattr -c -r .*/start[.].*/Orlimo.app"),
                MatchesRegex("plutil -replace CFBundleIdentifier -string "
                             "app.orlimo.Orlimo.start-bundle "
                             ".*/start[.].*/Orlimo.app/Contents/Info.plist"),
                MatchesRegex("plutil -insert OrlimoTrialCopy -bool true .*/start[.].*/Info.plist"),
                MatchesRegex("codesign --force --sign - --timestamp=none .*/start[.].*/Orlimo.app"),
                StrEq("defaults delete app.orlimo.Orlimo.start-bundle")));
        EXPECT_FALSE(std::filesystem::exists(bundle / "signature")) << "the bundle was changed";
        std::filesystem::remove_all(bundle);
        std::filesystem::remove(folder.path() / "calls");
        const auto left = std::distance(std::filesystem::directory_iterator(folder.path()), {});
        EXPECT_EQ(left, status == 0 ? 1 : 0) << "something was left behind";
    }
}

TEST_F(StartBundle, FailsWhenTheCopyCannotBeSigned)
{
    const auto inside = folder.path() / "Orlimo.app/Contents/MacOS";
    std::filesystem::create_directories(inside);
    std::filesystem::create_symlink(ORLIMO_PROGRAM, inside / "Orlimo");
    const auto result = tools.run(
        "start-bundle",
        {(folder.path() / "Orlimo.app").string(), ORLIMO_SAMPLE_STORE},
        {{"ORLIMO_FAILING_CALL", "--sign"}});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("could not be signed: codesign: told to fail"));
}

TEST_F(StartBundle, FailsWhenTheProgramEnds)
{
    const std::string watching = "echo oh >&2; echo 'file access allowed'; ";
    for (const auto& [script, error] :
         {std::pair{std::string("echo oh >&2"), "ended before it printed \"file access allowed\""},
          std::pair{watching + "sleep 1", "ended before it printed \"file changed!!"},
          std::pair{
              watching + "echo 'file changed!! at message: code? 482913'; sleep 4",
              "ended before its time"}})
    {
        const auto result =
            tools.run("start-bundle", {"--seconds", "1000", program(script), ORLIMO_SAMPLE_STORE});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr(error));
        EXPECT_THAT(result.output, HasSubstr("== on standard error\noh\n"));
    }
}

TEST_F(StartBundle, FailsWithoutAStoreAndRefusesWhatItDoesNotUnderstand)
{
    const auto result = start(ORLIMO_PROGRAM, "/bin/false");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("the sample store could not make the store"));
    EXPECT_EQ(start((folder.path() / "missing").string()).status, 2);
    EXPECT_EQ(start(ORLIMO_PROGRAM, "/dev/null").status, 2);
    EXPECT_EQ(tools.run("start-bundle", {}).status, 2);
    EXPECT_EQ(tools.run("start-bundle", {"--seconds", "x", "a", "b"}).status, 2);
    EXPECT_EQ(tools.run("start-bundle", {"--unknown", "a", "b"}).status, 2);
    EXPECT_EQ(tools.run("start-bundle", {"--help"}).status, 0);
}

/// What is on an image, which here is the folder beside the image's file that is called after it.
class CheckImage : public StartBundle
{
protected:
    CheckImage()
    {
        writeFile(image, "image");
        std::filesystem::create_directories(volume / "Orlimo.app/Contents/MacOS");
        std::filesystem::create_symlink(
            ORLIMO_PROGRAM, volume / "Orlimo.app/Contents/MacOS/Orlimo");
        std::filesystem::create_symlink("/Applications", volume / "Applications");
    }

    [[nodiscard]] CommandResult
    check(const std::map<std::string, std::optional<std::string>>& changes = {}) const
    {
        auto variables = changes;
        variables["QT_QPA_PLATFORM"] = "offscreen";
        return tools.run("check-image", {image.string(), ORLIMO_SAMPLE_STORE}, variables);
    }

    std::filesystem::path image = folder.path() / "Orlimo.dmg";
    std::filesystem::path volume = folder.path() / "Orlimo.dmg.volume";
};

TEST_F(CheckImage, VerifiesWhatIsOnTheImageAndStartsACopy)
{
    const auto result = check();
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(result.output, HasSubstr("captured the code"));
    EXPECT_THAT(
        tools.recordedCalls(),
        ElementsAre(
            HasSubstr("hdiutil attach -quiet -nobrowse -readonly -mountpoint "),
            MatchesRegex("codesign --verify --deep --strict --verbose=2 .*/volume/Orlimo.app"),
            HasSubstr("xattr -c -r "),
            HasSubstr("plutil -replace CFBundleIdentifier "),
            HasSubstr("plutil -insert OrlimoTrialCopy "),
            HasSubstr("codesign --force --sign - "),
            HasSubstr("defaults delete "),
            HasSubstr("hdiutil detach -quiet ")));
}

TEST_F(CheckImage, LetsGoOfAnImageThatTheSystemStillLooksAt)
{
    const auto result = check({{"ORLIMO_FAILING_CALL", "detach -quiet"}});
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(tools.recordedCalls().back(), HasSubstr("hdiutil detach -force -quiet "));
}

TEST_F(CheckImage, FailsWhenTheSignatureIsWrongOrTheLinkToTheApplicationsIsMissing)
{
    const auto signature = check({{"ORLIMO_FAILING_CALL", "--verify"}});
    EXPECT_EQ(signature.status, 1);
    EXPECT_EQ(signature.output, "");
    EXPECT_THAT(tools.recordedCalls().back(), HasSubstr("hdiutil detach"));

    std::filesystem::remove(volume / "Applications");
    const auto link = check();
    EXPECT_EQ(link.status, 1);
    EXPECT_THAT(link.errors, HasSubstr("no link to the applications"));
    EXPECT_THAT(tools.recordedCalls().back(), HasSubstr("hdiutil detach"));
}

TEST_F(CheckImage, WantsAnImageAndASampleStore)
{
    EXPECT_EQ(tools.run("check-image", {}).status, 2);
    EXPECT_EQ(tools.run("check-image", {folder.path().string(), "x"}).status, 2);
}

} // namespace
} // namespace orlimo

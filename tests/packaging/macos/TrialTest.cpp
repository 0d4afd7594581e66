#include "tests/packaging/macos/MacTools.h"
#include "tests/support/BuiltPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StrEq;

/// The scripts that start a bundle, or what is on an image, for a trial.
class Trial : public testing::Test
{
protected:
    [[nodiscard]] CommandResult
    start(const std::string& program, const std::string& sampleStore = ORLIMO_SAMPLE_STORE) const
    {
        return tools.run(
            "start-bundle",
            {"--seconds", "1", program, sampleStore},
            {{"QT_QPA_PLATFORM", "offscreen"}, {"TMPDIR", scratch.path().string()}});
    }

    /// Puts `executable` into the bundle in `parent`.
    static std::filesystem::path
    makeBundle(const std::filesystem::path& parent, const std::filesystem::path& executable)
    {
        const auto folder = parent / "Orlimo.app/Contents/MacOS";
        std::filesystem::create_directories(folder);
        std::filesystem::create_symlink(executable, folder / "Orlimo");
        return parent / "Orlimo.app";
    }

    /// A program that does what the lines of `script` say.
    [[nodiscard]] std::string program(const std::string& script) const
    {
        const auto file = folder.path() / "program";
        writeFile(file, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file.string();
    }

    [[nodiscard]] CommandResult
    checkImage(std::map<std::string, std::optional<std::string>> changes = {}) const
    {
        changes.emplace("QT_QPA_PLATFORM", "offscreen");
        return tools.run("check-image", {image.string(), ORLIMO_SAMPLE_STORE}, changes);
    }

    TemporaryFolder folder;
    TemporaryFolder scratch;
    std::filesystem::path image = folder.path() / "Orlimo.dmg";
    std::filesystem::path volume = folder.path() / "Orlimo.dmg.volume";
    MacTools tools;
};

TEST_F(Trial, ProgramIsSeenAtWork)
{
    const auto result = start(ORLIMO_PROGRAM);
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(
        result.output,
        AllOf(
            HasSubstr("\nfile access allowed\n"),
            HasSubstr("\nfile changed!! at message: code? 482913\n"),
            HasSubstr("captured the code 482913\n")));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
}

TEST_F(Trial, BundleIsStartedAsACopyWithAnIdentityOfItsOwn)
{
    const auto bundle = makeBundle(folder.path(), ORLIMO_PROGRAM);
    // A program that ends early leaves as little behind.
    const auto early = makeBundle(folder.path() / "early", program("echo \"$0\""));
    for (const auto& [named, status] :
         {std::pair{bundle / "Contents/MacOS/Orlimo", 0},
          std::pair{bundle, 0},
          std::pair{early, 1}})
    {
        const auto callsBefore = tools.toolCalls().size();
        const auto result = start(named.string());
        EXPECT_EQ(result.status, status) << named << result.text();
        if (status == 1) {
            EXPECT_THAT(result.output, HasSubstr("/Orlimo.app/Contents/MacOS/Orlimo\n"));
            EXPECT_THAT(result.output, Not(HasSubstr(early.string())));
        }
        auto calls = tools.toolCalls();
        calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(callsBefore));
        EXPECT_THAT(
            calls,
            ElementsAre(
                MatchesRegex("xattr -c -r .*/start[.].*/Orlimo.app"),
                MatchesRegex("plutil -replace CFBundleIdentifier -string "
                             "app.orlimo.Orlimo.start-bundle "
                             ".*/start[.].*/Orlimo.app/Contents/Info.plist"),
                MatchesRegex("plutil -insert OrlimoTrialCopy -bool true .*/start[.].*/Info.plist"),
                MatchesRegex("codesign --force --sign - --timestamp=none .*/start[.].*/Orlimo.app"),
                StrEq("defaults delete app.orlimo.Orlimo.start-bundle")));
        EXPECT_FALSE(std::filesystem::exists(bundle / "signature")) << "the bundle was changed";
        EXPECT_TRUE(std::filesystem::is_empty(scratch.path())) << "something was left behind";
    }
    const auto unsignable = tools.run(
        "start-bundle",
        {bundle.string(), ORLIMO_SAMPLE_STORE},
        {{"ORLIMO_FAILING_CALL", "--sign"}});
    EXPECT_EQ(unsignable.status, 2);
    EXPECT_THAT(unsignable.errors, HasSubstr("could not be signed: codesign: refused"));
}

TEST_F(Trial, EndOfTheProgramIsAFailure)
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

TEST_F(Trial, MissingStoreAndUsageErrorsAreFailures)
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
    EXPECT_EQ(tools.run("check-image", {}).status, 2);
    EXPECT_EQ(tools.run("check-image", {folder.path().string(), "x"}).status, 2);
}

/// The content of an image is the folder beside the image's file that is named after it.
TEST_F(Trial, ContentOfAnImageIsVerifiedAndACopyStarted)
{
    writeFile(image, "image");
    makeBundle(volume, ORLIMO_PROGRAM);
    std::filesystem::create_symlink("/Applications", volume / "Applications");
    const auto result = checkImage();
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(result.output, HasSubstr("captured the code"));
    EXPECT_THAT(
        tools.toolCalls(),
        ElementsAre(
            HasSubstr("hdiutil attach -quiet -nobrowse -readonly -mountpoint "),
            MatchesRegex("codesign --verify --deep --strict --verbose=2 .*/volume/Orlimo.app"),
            HasSubstr("xattr -c -r "),
            HasSubstr("plutil -replace CFBundleIdentifier "),
            HasSubstr("plutil -insert OrlimoTrialCopy "),
            HasSubstr("codesign --force --sign - "),
            HasSubstr("defaults delete "),
            HasSubstr("hdiutil detach -quiet ")));

    // The system may still look at it.
    const auto busy = checkImage({{"ORLIMO_FAILING_CALL", "detach -quiet"}});
    EXPECT_EQ(busy.status, 0) << busy.text();
    EXPECT_THAT(tools.toolCalls().back(), HasSubstr("hdiutil detach -force -quiet "));

    const auto signature = checkImage({{"ORLIMO_FAILING_CALL", "--verify"}});
    EXPECT_EQ(signature.status, 1);
    EXPECT_EQ(signature.output, "");
    EXPECT_THAT(tools.toolCalls().back(), HasSubstr("hdiutil detach"));

    std::filesystem::remove(volume / "Applications");
    const auto linkless = checkImage();
    EXPECT_EQ(linkless.status, 1);
    EXPECT_THAT(linkless.errors, HasSubstr("no link to the applications"));
    EXPECT_THAT(tools.toolCalls().back(), HasSubstr("hdiutil detach"));
}

} // namespace
} // namespace orlimo

#include "tests/packaging/macos/MacTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// Every file below `folder` with what it holds, links with where they lead.
std::map<std::string, std::string> contentBelow(const std::filesystem::path& folder)
{
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const auto name = entry.path().lexically_relative(folder).string();
        if (entry.is_symlink()) {
            found.emplace(name, "-> " + std::filesystem::read_symlink(entry.path()).string());
        } else {
            found.emplace(name, entry.is_directory() ? "folder" : contentOf(entry.path()));
        }
    }
    return found;
}

class Sign : public testing::Test
{
protected:
    Sign()
    {
        const auto contents = bundle / "Contents";
        writeFile(contents / "Info.plist", "list");
        writeFile(contents / "MacOS/Orlimo", "program");
        writeFile(contents / "PlugIns/platforms/libqcocoa.dylib", "plugin");
        const auto framework = contents / "Frameworks/QtCore.framework";
        writeFile(framework / "Versions/A/QtCore", "library");
        writeFile(framework / "Versions/A/Libraries/libinner.dylib", "inner");
        std::filesystem::create_symlink("A", framework / "Versions/Current");
        std::filesystem::create_symlink("Versions/Current/QtCore", framework / "QtCore");
        writeFile(image, "image");
    }

    [[nodiscard]] CommandResult sign(
        std::vector<std::string> arguments,
        const std::map<std::string, std::optional<std::string>>& changes = {}) const
    {
        return tools.run("sign", std::move(arguments), changes);
    }

    TemporaryFolder folder;
    std::filesystem::path files = folder.path() / "files";
    std::filesystem::path bundle = files / "Orlimo.app";
    std::filesystem::path image = files / "Orlimo.dmg";
    MacTools tools;
};

TEST_F(Sign, BundleIsSignedFromTheInsideOut)
{
    auto wanted = contentBelow(files);
    const auto result = sign({"--identity", "Somebody", bundle.string()});
    EXPECT_EQ(result.status, 0) << result.text();
    const std::string options = "codesign --force --sign Somebody --timestamp --options runtime ";
    const std::string contents = "(copy)/Orlimo.app/Contents/";
    const auto made = tools.toolCalls();
    ASSERT_THAT(made, SizeIs(5));
    EXPECT_THAT(
        std::vector(made.begin(), made.begin() + 2),
        testing::UnorderedElementsAre(
            options + contents + "Frameworks/QtCore.framework/Versions/A/Libraries/libinner.dylib",
            options + contents + "PlugIns/platforms/libqcocoa.dylib"));
    EXPECT_EQ(made[2], options + contents + "Frameworks/QtCore.framework");
    EXPECT_EQ(
        made[3],
        options + "--entitlements " ORLIMO_SOURCES
                  "/packaging/macos/Orlimo.entitlements (copy)/Orlimo.app");
    EXPECT_EQ(made[4], "codesign --verify --deep --strict --verbose=2 (copy)/Orlimo.app");

    // The signed copy is in the place of the bundle.
    wanted["Orlimo.app/signature"] = "signed\n";
    wanted["Orlimo.app/Contents/PlugIns/platforms/libqcocoa.dylib"] = "pluginsigned\n";
    const std::string framework = "Orlimo.app/Contents/Frameworks/QtCore.framework/";
    wanted[framework + "signature"] = "signed\n";
    wanted[framework + "Versions/A/Libraries/libinner.dylib"] = "innersigned\n";
    EXPECT_EQ(contentBelow(files), wanted);
}

TEST_F(Sign, AdHocSignatureNeedsNoCertificate)
{
    EXPECT_EQ(sign({"--ad-hoc", bundle.string(), image.string()}).status, 0);
    const auto made = tools.toolCalls();
    ASSERT_THAT(made, SizeIs(7));
    for (const auto& call : made) {
        EXPECT_THAT(call, Not(ContainsRegex("runtime|entitlements|xcrun|spctl")));
    }
    EXPECT_EQ(made[3], "codesign --force --sign - --timestamp=none (copy)/Orlimo.app");
    EXPECT_EQ(made[5], "codesign --force --sign - --timestamp=none (copy)/Orlimo.dmg");
    EXPECT_EQ(made[6], "codesign --verify --strict --verbose=2 (copy)/Orlimo.dmg");
}

TEST_F(Sign, ImageIsSignedAndNotarised)
{
    const auto result = sign(
        {"--identity", "Somebody", image.string()},
        {{"ORLIMO_SIGNING_IDENTITY", "Nobody"}, {"ORLIMO_NOTARY_PROFILE", "Account"}});
    EXPECT_EQ(result.status, 0) << result.text();
    EXPECT_THAT(
        tools.toolCalls(),
        ElementsAre(
            "codesign --force --sign Somebody --timestamp (copy)/Orlimo.dmg",
            "codesign --verify --strict --verbose=2 (copy)/Orlimo.dmg",
            "xcrun notarytool submit (copy)/Orlimo.dmg --keychain-profile Account --wait",
            "xcrun stapler staple (copy)/Orlimo.dmg",
            "xcrun stapler validate (copy)/Orlimo.dmg",
            "spctl --assess --type open --context context:primary-signature --verbose=2 "
            "(copy)/Orlimo.dmg"));
    EXPECT_EQ(contentOf(image), "imagesigned\n");
}

TEST_F(Sign, FailingCallLeavesEverythingAsItWas)
{
    const std::vector<std::pair<std::string, std::filesystem::path>> failures{
        {"libinner.dylib", bundle},
        {"QtCore.framework", bundle},
        {"--entitlements", bundle},
        {"--verify --deep", bundle},
        {"--timestamp", image},
        {"--verify --strict", image},
        {"notarytool", image},
        {"staple ", image},
        {"validate", image},
        {"spctl", image},
    };
    const auto before = contentBelow(files);
    for (const auto& [failing, file] : failures) {
        const auto result = sign(
            {"--identity", "Somebody", "--keychain-profile", "Account", file.string()},
            {{"ORLIMO_FAILING_CALL", failing}});
        EXPECT_EQ(result.status, 1) << failing << result.text();
        EXPECT_THAT(result.errors, HasSubstr("could not be signed; it is as it was"));
        EXPECT_THAT(tools.toolCalls().back(), HasSubstr(failing))
            << "nothing is tried after what failed";
        EXPECT_EQ(contentBelow(files), before) << failing;
    }
}

TEST_F(Sign, MissingCertificateAccountOrToolIsNamed)
{
    const auto before = contentBelow(files);
    const auto result = sign({image.string()});
    EXPECT_EQ(result.status, 2);
    for (const char* text :
         {"no certificate was named",
          "Developer ID Application",
          "ORLIMO_SIGNING_IDENTITY",
          "no account to notarise with was named",
          "notarytool store-credentials",
          "ORLIMO_NOTARY_PROFILE"})
    {
        EXPECT_THAT(result.errors, HasSubstr(text));
    }
    EXPECT_THAT(sign({bundle.string()}).errors, Not(HasSubstr("notarise"))) << "only images are";
    EXPECT_THAT(tools.toolCalls(), IsEmpty());
    std::filesystem::remove(tools.path() / "bin/codesign");
    const auto tool = sign({"--ad-hoc", bundle.string()});
    EXPECT_THAT(tool.errors, HasSubstr("xcode-select --install"));
    EXPECT_EQ(contentBelow(files), before);
}

TEST_F(Sign, UsageErrorsEndWithTwoAndCheckSignsNothing)
{
    const std::vector<std::pair<int, std::vector<std::string>>> statuses{
        {2, {}},
        {2, {"--ad-hoc"}},
        {2, {"--ad-hoc", "--unknown", bundle.string()}},
        {2, {"--identity"}},
        {2, {"--identity", ""}},
        {2, {"--ad-hoc", (files / "Missing.app").string()}},
        {2, {"--ad-hoc", (bundle / "Contents").string()}},
        {2, {"--check"}},
        {2, {"--check", "--identity", "One"}},
        {0, {"--check", "--identity", "One", "--keychain-profile", "Account"}},
        {0, {"--check", "--ad-hoc"}},
        {0, {"--help"}},
    };
    for (const auto& [status, arguments] : statuses) {
        EXPECT_EQ(sign(arguments).status, status) << testing::PrintToString(arguments);
    }
    EXPECT_THAT(tools.toolCalls(), IsEmpty());
}

} // namespace
} // namespace orlimo

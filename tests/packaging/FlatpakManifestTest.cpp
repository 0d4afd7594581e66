#include "platform/ApplicationIdentity.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

namespace orlimo {
namespace {

using testing::HasSubstr;

TEST(FlatpakManifest, BuildsThisTreeAndOpensTheSandboxNoFurtherThanNeeded)
{
    const std::filesystem::path folder = ORLIMO_SOURCES "/packaging/flatpak";
    const std::string id(identity::applicationIdentifier);
    const std::string manifest = contentOf(folder / (id + ".yml"));
    EXPECT_THAT(manifest, HasSubstr("\napp-id: " + id + "\n"));
    EXPECT_THAT(manifest, HasSubstr("\ncommand: orlimo\n"));
    EXPECT_TRUE(std::filesystem::equivalent(folder / "../..", ORLIMO_SOURCES));
    EXPECT_THAT(manifest, HasSubstr("path: ../..\n"));

    // Each permission, without the comments in between.
    std::string permissions = manifest.substr(manifest.find("\nfinish-args:\n") + 14);
    permissions = permissions.substr(0, permissions.find("\n\nmodules:") + 1);
    permissions = std::regex_replace(permissions, std::regex(" *#[^\n]*\n|  (- )"), "$1");
    EXPECT_EQ(
        permissions,
        "- --socket=wayland\n"
        "- --socket=x11\n"
        "- --share=ipc\n"
        "- --filesystem=~/Library/Messages\n"
        "- --filesystem=~/Library/Containers/com.apple.stocks:ro\n"
        "- --talk-name=org.kde.StatusNotifierWatcher\n");
}

} // namespace
} // namespace orlimo

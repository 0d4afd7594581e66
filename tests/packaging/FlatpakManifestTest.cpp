#include "platform/ApplicationIdentity.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

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
    std::string permissions;
    bool areNext = false;
    std::istringstream lines(manifest);
    for (std::string line; std::getline(lines, line);) {
        const auto text = line.find_first_not_of(' ');
        if (line == "finish-args:") {
            areNext = true;
        } else if (text == 0) {
            areNext = false;
        } else if (areNext && line[text] == '-') {
            permissions += line.substr(text) + "\n";
        }
    }
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

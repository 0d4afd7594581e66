#include "platform/ApplicationIdentity.h"
#include "tests/packaging/BuiltPackage.h"
#include "tests/packaging/CommandResult.h"
#include "tests/security/HardeningExpectation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

/// What the package holds: permissions, owner and path of each file, as tar shows them.
std::set<std::string> contentOf(const BuiltPackage& package)
{
    const auto shown = CommandResult::of(
        "/usr/bin/dpkg-deb", {.arguments = {"--contents", package.file().string()}});
    std::set<std::string> files;
    std::istringstream lines(shown.output);
    for (std::string mode, owner, size, day, time, path;
         lines >> mode >> owner >> size >> day >> time >> path;)
    {
        if (!path.ends_with('/')) {
            files.insert(mode + " " + owner + " " + path);
        } else {
            EXPECT_EQ(mode + " " + owner, "drwxr-xr-x root/root") << path;
        }
    }
    return files;
}

void expectDescription(const BuiltPackage& package)
{
    const std::string version(identity::version);
    EXPECT_EQ(package.field("Package"), "orlimo");
    EXPECT_EQ(package.field("Version"), version);
    EXPECT_THAT(package.name(), MatchesRegex("orlimo_" + version + "_[a-z0-9-]+\\.deb"));
    EXPECT_EQ(package.field("Homepage"), identity::website);
    EXPECT_EQ(package.field("Section"), "utils");
    EXPECT_THAT(package.field("Maintainer"), StartsWith("The Orlimo developers <"));
    // What is linked, and what Qt loads at run time.
    for (const char* needed :
         {"libc6 (>=", "libicu", "libqt6widgets6", "libsqlite3-0", "libstdc++6", "qt6-wayland"})
    {
        EXPECT_THAT(package.field("Depends"), HasSubstr(needed));
    }
}

void expectNoComplaint(const BuiltPackage& package)
{
    const auto check = CommandResult::of(
        "/usr/bin/lintian",
        {
            .arguments =
                {"--allow-root", "--no-cfg", "--fail-on", "error,warning", package.file().string()},
        },
        std::chrono::minutes(5));
    EXPECT_EQ(check.status, 0);
    EXPECT_THAT(check.text(), IsEmpty());
}

/// The program in the package is as hard to exploit as the one that is tested.
void expectHardenedProgram(const BuiltPackage& package)
{
    const TemporaryFolder folder;
    const auto unpacked = CommandResult::of(
        "/usr/bin/dpkg-deb",
        {.arguments = {"--extract", package.file().string(), folder.path().string()}});
    ASSERT_EQ(unpacked.status, 0) << unpacked.text();
    expectHardened(folder.path() / "usr/bin/orlimo");
}

TEST(DebianPackage, HoldsTheProgramAsDebianAsksForIt)
{
    const BuiltPackage package;
    ASSERT_FALSE(testing::Test::HasFailure());
    expectDescription(package);
    EXPECT_EQ(
        contentOf(package),
        (std::set<std::string>{
            "-rw-r--r-- root/root ./usr/share/applications/app.orlimo.Orlimo.desktop",
            "-rw-r--r-- root/root ./usr/share/dbus-1/services/app.orlimo.Orlimo.service",
            "-rw-r--r-- root/root ./usr/share/doc/orlimo/README.md",
            "-rw-r--r-- root/root ./usr/share/doc/orlimo/changelog.gz",
            "-rw-r--r-- root/root ./usr/share/doc/orlimo/copyright",
            "-rw-r--r-- root/root ./usr/share/icons/hicolor/scalable/apps/app.orlimo.Orlimo.svg",
            "-rw-r--r-- root/root "
            "./usr/share/icons/hicolor/symbolic/apps/app.orlimo.Orlimo-symbolic.svg",
            "-rw-r--r-- root/root ./usr/share/man/man1/orlimo.1.gz",
            "-rw-r--r-- root/root ./usr/share/metainfo/app.orlimo.Orlimo.metainfo.xml",
            "-rwxr-xr-x root/root ./usr/bin/orlimo",
        }));
    expectNoComplaint(package);
    expectHardenedProgram(package);
}

} // namespace
} // namespace orlimo

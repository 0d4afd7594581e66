#include "tests/packaging/BareSystem.h"

#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/packaging/BuiltPackage.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The package's life in a system with neither the program nor Qt in it.
class InBareSystem : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!system.skipReason().empty()) {
            GTEST_SKIP() << system.skipReason();
        }
        package.emplace();
        ASSERT_FALSE(HasFailure());
    }

    void expectSuccess(const std::vector<std::string>& command) const
    {
        const auto result = system.run(command);
        EXPECT_EQ(result.status, 0) << result.text();
    }

    /// Installs what the package says that it needs, and that alone.
    void installDependencies() const
    {
        expectSuccess(
            {"apt-get",
             "satisfy",
             "--yes",
             "--quiet",
             "--no-install-recommends",
             package->field("Depends")});
    }

    void installPackage() const
    {
        std::filesystem::copy_file(package->file(), system.tree() / "package/orlimo.deb");
        auto expected = system.packages();
        expected.insert("orlimo");
        expectSuccess(
            {"apt-get",
             "install",
             "--yes",
             "--quiet",
             "--no-install-recommends",
             "/package/orlimo.deb"});
        EXPECT_EQ(system.packages(), expected);
    }

    void expectCodeCopied() const
    {
        const XServer server;
        const auto store = system.home() / "Library/Messages/chat.db";
        std::filesystem::create_directories(store.parent_path());
        ChildProcess writer(ORLIMO_SAMPLE_STORE, {.arguments = {"serve", store.string()}});
        ASSERT_TRUE(writer.awaitLine("ready")) << writer.errors();

        const auto program = system.start("orlimo", server.display());
        ASSERT_TRUE(program->awaitLine("file access allowed")) << program->errors();
        ProgramSession::waitForThrottle();
        EXPECT_THAT(writer.ask("text Your code is 482913"), StartsWith("committed"));
        EXPECT_TRUE(program->awaitLine("file changed!! at message: code? 482913"))
            << program->output() << program->errors();
        EXPECT_TRUE(await([&] { return server.paste("clipboard") == "482913"; }));
        program->terminate();
    }

    /// The program knows where it was installed.
    void expectLoginItem() const
    {
        const std::string entry =
            contentOf(system.home() / ".config/autostart/app.orlimo.Orlimo.desktop");
        EXPECT_THAT(entry, HasSubstr("\nExec=\"/usr/bin/orlimo\""));
    }

    /// Without a compositor there is nothing to see; what is missing then is a display and not the
    /// Qt plugin for it.
    void expectWaylandPlugin() const
    {
        const auto start = system.run({"env", "QT_QPA_PLATFORM=wayland", "orlimo"});
        EXPECT_NE(start.status, 0);
        EXPECT_THAT(start.errors, HasSubstr("wl_display"));
        EXPECT_THAT(start.errors, Not(HasSubstr("Could not find the Qt platform plugin")));
    }

    const BareSystem system;
    std::optional<BuiltPackage> package;
};

TEST_F(InBareSystem, ThePackageNeedsNothingMoreAndLeavesNothing)
{
    installDependencies();
    const auto filesBefore = system.files();
    installPackage();
    ASSERT_FALSE(HasFailure());
    expectCodeCopied();
    expectLoginItem();
    expectWaylandPlugin();
    expectSuccess({"apt-get", "purge", "--yes", "--quiet", "orlimo"});
    EXPECT_EQ(system.files(), filesBefore);
}

} // namespace
} // namespace orlimo

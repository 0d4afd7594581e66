#include "platform/loginitem/LoginItemService.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

namespace orlimo {
namespace {

constexpr const char* entryName = "app.orlimo.Orlimo.desktop";

/// Sets a variable of this process, or removes it for a null. Called in a child.
void setVariable(const char* name, const char* value)
{
    if (value == nullptr) {
        ::unsetenv(name);
    } else {
        ::setenv(name, value, 1);
    }
}

std::string registerAndReport()
{
    const auto error = mainAppService().registerItem();
    return error ? error->localizedDescription : "registered";
}

/// The running program's service with the test's configuration folder.
class MainAppService : public testing::Test
{
protected:
    /// The result of registering in a process with these values of XDG_CONFIG_HOME and HOME.
    [[nodiscard]] static std::string registered(const char* configuration, const char* homeFolder)
    {
        const auto run = runForked([=] {
            setVariable("XDG_CONFIG_HOME", configuration);
            setVariable("HOME", homeFolder);
            (void)std::fputs(registerAndReport().c_str(), stdout);
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    TemporaryFolder home;
    std::filesystem::path configuration = home.path() / "configuration";
    std::filesystem::path entry = configuration / "autostart" / entryName;
    std::filesystem::path entryInHome = home.path() / ".config" / "autostart" / entryName;
};

TEST_F(MainAppService, EntryIsForThisProgram)
{
    ASSERT_EQ(registered(configuration.c_str(), home.path().c_str()), "registered");
    const auto program = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string content = contentOf(entry);
    EXPECT_NE(content.find("\nExec=\"" + program + "\" --launched-at-login\n"), std::string::npos);
    EXPECT_NE(content.find("\nTryExec=" + program + "\n"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(entryInHome));
}

TEST_F(MainAppService, ConfigurationFolderOfHomeIsFallback)
{
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "configuration", "./x"}) {
        std::filesystem::remove_all(home.path() / ".config");
        EXPECT_EQ(registered(unusable, home.path().c_str()), "registered");
        EXPECT_TRUE(std::filesystem::exists(entryInHome));
    }
}

TEST_F(MainAppService, UserWithoutHomeIsNotRegistered)
{
    constexpr uid_t unknown = 1'234'567;
    if (::geteuid() != 0 || ::getpwuid(unknown) != nullptr) {
        GTEST_SKIP() << "only the superuser can become a user without an entry";
    }
    const auto run = runForked([] {
        setVariable("XDG_CONFIG_HOME", nullptr);
        setVariable("HOME", nullptr);
        if (::setuid(unknown) != 0) {
            ::_exit(1);
        }
        const auto status = static_cast<int>(mainAppService().status());
        const auto registering = mainAppService().registerItem();
        const auto unregistering = mainAppService().unregisterItem();
        (void)std::printf(
            "%d, %s, %s",
            status,
            registering ? registering->localizedDescription.c_str() : "registered",
            unregistering ? unregistering->localizedDescription.c_str() : "unregistered");
    });
    EXPECT_EQ(run.output, "0, HOME: No such file or directory, HOME: No such file or directory");
}

TEST_F(MainAppService, FolderIsReadAtEachCall)
{
    const auto run = runForked([this] {
        setVariable("XDG_CONFIG_HOME", (home.path() / "first").c_str());
        (void)mainAppService().registerItem();
        setVariable("XDG_CONFIG_HOME", configuration.c_str());
        if (mainAppService().status() == LoginItemStatus::notRegistered) {
            (void)mainAppService().registerItem();
        }
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(std::filesystem::exists(entry));
}

} // namespace
} // namespace orlimo

#include "platform/loginitem/LoginItemService.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

namespace orlimo {
namespace {

constexpr const char* entryName = "app.orlimo.Orlimo.desktop";

/// The running program's service with the test's configuration folder.
class MainAppService : public testing::Test
{
protected:
    /// What registering prints in a process with these values of
    /// XDG_CONFIG_HOME and HOME, as the user with that number.
    [[nodiscard]] static std::string
    registered(const char* configuration, const char* homeFolder, uid_t user = ::getuid())
    {
        const auto run = runForked([=] {
            configuration == nullptr ? ::unsetenv("XDG_CONFIG_HOME")
                                     : ::setenv("XDG_CONFIG_HOME", configuration, 1);
            homeFolder == nullptr ? ::unsetenv("HOME") : ::setenv("HOME", homeFolder, 1);
            if (::setuid(user) != 0) {
                ::_exit(1);
            }
            const auto print = [](const std::optional<ServiceError>& error) {
                (void)std::puts(error ? error->localizedDescription.c_str() : "done");
            };
            (void)std::printf("%d\n", static_cast<int>(mainAppService().status()));
            print(mainAppService().registerItem());
            (void)std::printf("%d\n", static_cast<int>(mainAppService().status()));
            if (homeFolder == nullptr) {
                print(mainAppService().unregisterItem());
            }
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
    ASSERT_EQ(registered(configuration.c_str(), home.path().c_str()), "0\ndone\n1\n");
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
        EXPECT_EQ(registered(unusable, home.path().c_str()), "0\ndone\n1\n");
        EXPECT_TRUE(std::filesystem::exists(entryInHome));
    }
}

TEST_F(MainAppService, UserWithoutHomeIsNotRegistered)
{
    constexpr uid_t unknown = 1'234'567;
    if (::geteuid() != 0 || ::getpwuid(unknown) != nullptr) {
        GTEST_SKIP() << "only the superuser can become a user without an entry";
    }
    const std::string error = "HOME: No such file or directory\n";
    EXPECT_EQ(registered(nullptr, nullptr, unknown), "0\n" + error + "0\n" + error);
}

TEST_F(MainAppService, FolderIsReadAtEachCall)
{
    const auto run = runForked([this] {
        for (const auto& changed : {home.path() / "first", configuration}) {
            ::setenv("XDG_CONFIG_HOME", changed.c_str(), 1);
            (void)mainAppService().registerItem();
        }
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(std::filesystem::exists(entry));
}

} // namespace
} // namespace orlimo

#include "platform/loginitem/LoginItemService.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

using testing::HasSubstr;

/// The running program's service for a user with the test's home folder.
class MainAppService : public testing::Test
{
protected:
    static void expectRegistration(const std::filesystem::path& entry)
    {
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
        EXPECT_FALSE(service.registerItem().has_value());
        EXPECT_EQ(service.status(), LoginItemStatus::enabled);
        const auto program = std::filesystem::read_symlink("/proc/self/exe").string();
        EXPECT_THAT(
            contentOf(entry), HasSubstr("\nExec=\"" + program + "\" --launched-at-login\n"));
        EXPECT_THAT(contentOf(entry), HasSubstr("\nTryExec=" + program + "\n"));
        EXPECT_FALSE(service.unregisterItem().has_value());
    }

    static inline LoginItemService& service = mainAppService();
    TemporaryFolder home;
    EnvironmentChange homeVariable{"HOME", home.path().string()};
    const std::filesystem::path entryName = "autostart/app.orlimo.Orlimo.desktop";
};

TEST_F(MainAppService, EntryIsInConfigurationFolderOfTheMoment)
{
    for (const auto& folder : {home.path() / "first", home.path() / "second"}) {
        const EnvironmentChange configuration("XDG_CONFIG_HOME", folder.string());
        expectRegistration(folder / entryName);
    }
    EXPECT_FALSE(std::filesystem::exists(home.path() / ".config"));
}

TEST_F(MainAppService, ConfigurationFolderOfHomeIsFallback)
{
    using Variable = std::optional<std::string>;
    for (const auto& unusable :
         {Variable(), Variable(""), Variable("configuration"), Variable("./x")}) {
        const EnvironmentChange configuration("XDG_CONFIG_HOME", unusable);
        expectRegistration(home.path() / ".config" / entryName);
    }
}

TEST_F(MainAppService, UserWithoutHomeIsNotRegistered)
{
    const EnvironmentChange configuration("XDG_CONFIG_HOME", std::nullopt);
    const EnvironmentChange noHome("HOME", std::nullopt);
    constexpr uid_t unknown = 1'234'567;
    if (::setreuid(unknown, ::geteuid()) != 0) {
        GTEST_SKIP() << "only the superuser can become a user without an entry";
    }
    for (const auto& error : {service.registerItem(), service.unregisterItem()}) {
        EXPECT_EQ(error ? error->localizedDescription : "", "HOME: No such file or directory");
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    }
    EXPECT_EQ(::setreuid(::geteuid(), ::geteuid()), 0);
}

} // namespace
} // namespace orlimo

#include "login/LaunchAtLogin.h"
#include "login/LaunchAtLoginObservable.h"
#include "tests/login/linux/SystemLoginServices.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/CapturedSyslog.h"
#include "tests/support/process/ForkedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include <syslog.h>

namespace orlimo {
namespace {

/// With the test's configuration folder, in a process of its own because a variable names it.
class LaunchAtLoginOnDisk : public testing::Test
{
protected:
    [[nodiscard]] std::string outputOf(const std::function<void()>& work) const
    {
        const auto run = runForked([this, &work] {
            ::setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
            const CapturedSyslog syslog;
            LaunchAtLogin::install(systemLoginServices());
            work();
            for (const auto& [priority, text] : CapturedSyslog::entries()) {
                (void)std::printf("%d %s\n", priority, text.c_str());
            }
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    TemporaryFolder home;
    std::filesystem::path configuration = home.path() / "configuration";
    std::filesystem::path entry = configuration / "autostart/app.orlimo.Orlimo.desktop";
};

void printState(bool enabled)
{
    (void)std::puts(enabled ? "on" : "off");
}

TEST_F(LaunchAtLoginOnDisk, EntryIsAddedAndRemoved)
{
    EXPECT_EQ(
        outputOf([this] {
            printState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(true);
            printState(LaunchAtLogin::isEnabled());
            printState(std::filesystem::exists(entry));
            LaunchAtLogin::Observable& observable = LaunchAtLogin::observable();
            printState(observable.isEnabled());
            observable.setEnabled(false);
            printState(observable.isEnabled());
            printState(std::filesystem::exists(entry));
            const LaunchEventHandling handling(true);
            printState(LaunchAtLogin::wasLaunchedAtLogin());
        }),
        "off\non\non\non\noff\noff\non\n");
}

TEST_F(LaunchAtLoginOnDisk, FailureIsLoggedAtEachAttempt)
{
    writeFile(configuration / "autostart", "a file");
    const std::string line =
        std::to_string(LOG_USER | LOG_ERR) +
        " [app.orlimo.Orlimo.LaunchAtLogin:main] Failed to enable launch at login: " +
        (configuration / "autostart").string() + ": File exists\n";
    EXPECT_EQ(
        outputOf([] {
            LaunchAtLogin::setEnabled(true);
            printState(LaunchAtLogin::isEnabled());
            LaunchAtLogin::setEnabled(true);
        }),
        "off\n" + line + line);
}

TEST_F(LaunchAtLoginOnDisk, MaskedErrorIsNotLogged)
{
    EXPECT_EQ(
        outputOf([] {
            (void)::setlogmask(LOG_UPTO(LOG_CRIT));
            LaunchAtLogin::setEnabled(false);
        }),
        "");
}

} // namespace
} // namespace orlimo

#include "platform/process/LoginItemLog.h"

#include "tests/support/process/CapturedSyslog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include <syslog.h>

namespace orlimo {
namespace {

CapturedSyslog::Entry entry(const std::string& text)
{
    return {
        .priority = LOG_USER | LOG_ERR,
        .text = "[app.orlimo.Orlimo.LaunchAtLogin:main] Failed to " + text};
}

TEST(LoginItemLog, ErrorIsOneEntryWithItsOriginWithoutControlCharacters)
{
    using namespace std::string_view_literals;
    const CapturedSyslog syslog;
    logLoginItemError("enable", "No such file or directory");
    logLoginItemError("100 %s %n", "Größe: \xF0\x9F\x94\x91 %1$s");
    logLoginItemError("", std::string(100'000, 'x'));
    logLoginItemError("a\nNov 21 03:13:00 pc sudo: b\r\n", "c\0d\x1B[2J\x7F\t"sv);
    EXPECT_THAT(
        CapturedSyslog::entries(),
        testing::ElementsAre(
            entry("enable launch at login: No such file or directory"),
            entry("100 %s %n launch at login: Größe: \xF0\x9F\x94\x91 %1$s"),
            entry(" launch at login: " + std::string(100'000, 'x')),
            entry("a Nov 21 03:13:00 pc sudo: b   launch at login: c d [2J  ")));
}

TEST(LoginItemLog, ErrorIsDroppedWhileErrorsAreMasked)
{
    const CapturedSyslog syslog;
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread logs
    const int before = ::setlogmask(0xFF & ~LOG_MASK(LOG_ERR));
    logLoginItemError("a", "b");
    (void)::setlogmask(LOG_MASK(LOG_ERR));
    logLoginItemError("c", "d");
    EXPECT_EQ(::setlogmask(before), LOG_MASK(LOG_ERR)) << "the mask has changed";
    // NOLINTEND(concurrency-mt-unsafe)
    EXPECT_THAT(CapturedSyslog::entries(), testing::ElementsAre(entry("c launch at login: d")));
}

} // namespace
} // namespace orlimo

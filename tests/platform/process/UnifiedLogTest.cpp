#include "platform/process/UnifiedLog.h"

#include "tests/support/JoiningThread.h"
#include "tests/support/process/CapturedSyslog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include <syslog.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

/// The log mask of this process for the time of a test.
class LogMask
{
public:
    explicit LogMask(int mask)
        : before(::setlogmask(mask))
    {}
    LogMask(const LogMask&) = delete;
    LogMask& operator=(const LogMask&) = delete;
    ~LogMask() { (void)::setlogmask(before); }

private:
    int before;
};

class SyslogUnifiedLog : public testing::Test
{
protected:
    /// The text of the one entry that an error makes.
    [[nodiscard]] std::string
    textOf(std::string_view format, std::string_view first, std::string_view second)
    {
        const CapturedSyslog syslog;
        log->error(format, first, second);
        EXPECT_THAT(CapturedSyslog::entries(), SizeIs(1));
        return CapturedSyslog::entries().empty() ? "" : CapturedSyslog::entries().front().text;
    }

    std::unique_ptr<UnifiedLog> log = UnifiedLog::create("org.example.part", "main");
};

TEST_F(SyslogUnifiedLog, WritesAnErrorOfAUsersProgramWithItsOrigin)
{
    const CapturedSyslog syslog;
    log->error("Failed to %s: %s", "begin", "No such file or directory");
    EXPECT_THAT(
        CapturedSyslog::entries(),
        ElementsAre(CapturedSyslog::Entry{
            .priority = LOG_USER | LOG_ERR,
            .text = "[org.example.part:main] Failed to begin: No such file or directory"}));
}

TEST_F(SyslogUnifiedLog, KeepsTheOriginOfEachLogApart)
{
    const auto other = UnifiedLog::create("org.example.other", "network");
    const CapturedSyslog syslog;
    other->error("%s%s", "a", "b");
    log->error("%s%s", "c", "d");
    EXPECT_THAT(
        CapturedSyslog::entries(),
        ElementsAre(
            Field(&CapturedSyslog::Entry::text, "[org.example.other:network] ab"),
            Field(&CapturedSyslog::Entry::text, "[org.example.part:main] cd")));
}

TEST_F(SyslogUnifiedLog, ArgumentsAreTextWhateverTheyLookLike)
{
    EXPECT_EQ(
        textOf("to %s: %s.", "100 %s %n %% %", "%1$s %d"),
        "[org.example.part:main] to 100 %s %n %% %: %1$s %d.");
    EXPECT_EQ(textOf("%s, %s", "", ""), "[org.example.part:main] , ");
    EXPECT_EQ(textOf("%s", "one", "two"), "[org.example.part:main] one");
    EXPECT_EQ(textOf("none", "one", "two"), "[org.example.part:main] none");
    EXPECT_EQ(textOf("%s %s %s %d", "1", "2"), "[org.example.part:main] 1 2 %s %d");
}

TEST_F(SyslogUnifiedLog, OtherScriptsStayAsTheyAre)
{
    EXPECT_EQ(
        textOf("%s: %s", "Größe", "ファイル \xF0\x9F\x94\x91"),
        "[org.example.part:main] Größe: ファイル \xF0\x9F\x94\x91");
}

TEST_F(SyslogUnifiedLog, AnArgumentCannotForgeAnotherEntryNorEndThisOne)
{
    EXPECT_EQ(
        textOf(
            "%s: %s",
            "a\nNov 21 03:13:00 host sudo: b\r\n",
            std::string_view("c\0d\x1B[2J\x7F\t", 9)),
        "[org.example.part:main] a Nov 21 03:13:00 host sudo: b  : c d [2J  ");
}

TEST_F(SyslogUnifiedLog, LongTextsStayWhole)
{
    const std::string longText(100'000, 'x');
    EXPECT_EQ(textOf("%s%s", longText, longText), "[org.example.part:main] " + longText + longText);
}

TEST_F(SyslogUnifiedLog, WritesNothingWhereErrorsAreMasked)
{
    const CapturedSyslog syslog;
    {
        const LogMask mask(LOG_UPTO(LOG_CRIT));
        log->error("%s%s", "a", "b");
    }
    {
        const LogMask mask(0xFF & ~LOG_MASK(LOG_ERR));
        log->error("%s%s", "a", "b");
    }
    EXPECT_THAT(CapturedSyslog::entries(), IsEmpty());

    const LogMask mask(LOG_MASK(LOG_ERR));
    log->error("%s%s", "a", "b");
    EXPECT_THAT(CapturedSyslog::entries(), SizeIs(1));
}

TEST_F(SyslogUnifiedLog, LeavesTheMaskAlone)
{
    const LogMask mask(LOG_UPTO(LOG_NOTICE));
    EXPECT_EQ(textOf("%s%s", "a", "b"), "[org.example.part:main] ab");
    EXPECT_EQ(::setlogmask(0), LOG_UPTO(LOG_NOTICE));
}

TEST_F(SyslogUnifiedLog, OutlivesTheTextsThatItWasMadeOf)
{
    {
        std::string subsystem(100, 's');
        std::string category(100, 'c');
        log = UnifiedLog::create(subsystem, category);
    }
    EXPECT_EQ(
        textOf("%s%s", "a", "b"),
        "[" + std::string(100, 's') + ":" + std::string(100, 'c') + "] ab");
}

TEST_F(SyslogUnifiedLog, ServesManyThreads)
{
    constexpr int numberOfThreads = 4;
    constexpr int entriesOfEach = 250;
    const CapturedSyslog syslog;
    std::vector<JoiningThread> threads;
    threads.reserve(numberOfThreads);
    for (int thread = 0; thread < numberOfThreads; ++thread) {
        threads.emplace_back([this] {
            for (int entry = 0; entry < entriesOfEach; ++entry) {
                log->error("%s and %s", "one", "another");
            }
        });
    }
    threads.clear();
    EXPECT_THAT(CapturedSyslog::entries(), SizeIs(numberOfThreads * entriesOfEach));
    EXPECT_THAT(
        CapturedSyslog::entries(),
        testing::Each(
            Field(&CapturedSyslog::Entry::text, "[org.example.part:main] one and another")));
}

} // namespace
} // namespace orlimo

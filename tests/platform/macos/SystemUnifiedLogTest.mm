#include "platform/UnifiedLog.h"
#include "tests/platform/macos/standins/RecordedUnifiedLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#import <os/log.h>

namespace orlimo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;
using Entry = RecordedUnifiedLog::Entry;

constexpr const char* formatInUse = "Failed to %s launch at login: %s";

class SystemUnifiedLog : public testing::Test
{
protected:
    /// The one entry that an error makes.
    [[nodiscard]] Entry
    entryOf(std::string_view format, std::string_view first, std::string_view second)
    {
        const RecordedUnifiedLog record;
        log->error(format, first, second);
        EXPECT_THAT(RecordedUnifiedLog::entries(), SizeIs(1));
        return RecordedUnifiedLog::entries().empty() ? Entry{}
                                                     : RecordedUnifiedLog::entries().front();
    }

    [[nodiscard]] static Entry entry(std::string format, std::vector<std::string> arguments)
    {
        return {
            "org.example.part", "main", OS_LOG_TYPE_ERROR, std::move(format), std::move(arguments)};
    }

    std::unique_ptr<UnifiedLog> log = UnifiedLog::create("org.example.part", "main");
};

TEST_F(SystemUnifiedLog, KeepsTheFormatInUseAndItsArgumentsApart)
{
    EXPECT_EQ(
        entryOf(formatInUse, "enable", "Operation not permitted"),
        entry(formatInUse, {"enable", "Operation not permitted"}));
}

TEST_F(SystemUnifiedLog, FindsTheFormatByWhatItSays)
{
    const std::string copy = formatInUse;
    EXPECT_EQ(
        entryOf(std::string_view(copy + "beyond").substr(0, copy.size()), "a", "b"),
        entry(formatInUse, {"a", "b"}));
}

TEST_F(SystemUnifiedLog, AnyOtherFormatIsFilledInAndPrivateAsAWhole)
{
    EXPECT_EQ(entryOf("to %s: %s.", "a", "b"), entry("%s", {"to a: b."}));
    EXPECT_EQ(
        entryOf("Failed to %s launch at login: %s!", "a", "b"),
        entry("%s", {"Failed to a launch at login: b!"}));
    EXPECT_EQ(entryOf("", "a", "b"), entry("%s", {""}));
}

TEST_F(SystemUnifiedLog, ArgumentsAreTextWhateverTheyLookLike)
{
    EXPECT_EQ(
        entryOf(formatInUse, "100 %s %n %% %{public}s", "%1$s %d"),
        entry(formatInUse, {"100 %s %n %% %{public}s", "%1$s %d"}));
    EXPECT_EQ(
        entryOf("%s and %s", "100 %s %n", "%{public}s"), entry("%s", {"100 %s %n and %{public}s"}));
}

TEST_F(SystemUnifiedLog, ArgumentsNeedNoEndOfTheirOwn)
{
    const std::string_view text = "enabled by nobody";
    EXPECT_EQ(
        entryOf(formatInUse, text.substr(0, 6), text.substr(11)),
        entry(formatInUse, {"enable", "nobody"}));
}

TEST_F(SystemUnifiedLog, OtherScriptsAndLongTextsStayAsTheyAre)
{
    const std::string longText(100'000, 'x');
    EXPECT_EQ(entryOf(formatInUse, "Größe 🔑", longText), entry(formatInUse, {"Größe 🔑", longText}));
}

TEST_F(SystemUnifiedLog, WritesNothingWhereErrorsAreSwitchedOff)
{
    const RecordedUnifiedLog record;
    RecordedUnifiedLog::disableErrors();
    log->error(formatInUse, "a", "b");
    log->error("%s%s", "a", "b");
    EXPECT_THAT(RecordedUnifiedLog::entries(), IsEmpty());
}

TEST_F(SystemUnifiedLog, KeepsTheOriginOfEachLogApart)
{
    const RecordedUnifiedLog record;
    const auto other = UnifiedLog::create(std::string(100, 's'), "network");
    other->error("%s%s", "a", "b");
    log->error("%s%s", "c", "d");
    EXPECT_THAT(
        RecordedUnifiedLog::entries(),
        ElementsAre(
            Entry{std::string(100, 's'), "network", OS_LOG_TYPE_ERROR, "%s", {"ab"}},
            entry("%s", {"cd"})));
}

TEST_F(SystemUnifiedLog, GivesTheSystemsLogBack)
{
    const int before = RecordedUnifiedLog::logsInUse();
    log.reset();
    EXPECT_EQ(RecordedUnifiedLog::logsInUse(), before - 1);
}

TEST_F(SystemUnifiedLog, ServesManyThreads)
{
    constexpr int numberOfThreads = 4;
    constexpr int entriesOfEach = 250;
    const RecordedUnifiedLog record;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < numberOfThreads; ++thread) {
        threads.emplace_back([this] {
            for (int written = 0; written < entriesOfEach; ++written) {
                log->error(formatInUse, "one", "another");
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(RecordedUnifiedLog::entries(), SizeIs(numberOfThreads * entriesOfEach));
    EXPECT_THAT(
        RecordedUnifiedLog::entries(),
        Each(Field(&Entry::arguments, ElementsAre("one", "another"))));
}

} // namespace
} // namespace orlimo

#include "sample/Delivery.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <stdexcept>

namespace orlimo::sample {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

class SampleDelivery : public testing::Test
{
protected:
    /// Delivers as planned, with `input` as the lines that set the pace, and returns what is
    /// printed.
    std::vector<std::string>
    delivered(const DeliveryOptions& options, const std::string& input = "")
    {
        std::istringstream lines(input);
        std::ostringstream output;
        deliver(store, options, lines, output);
        return linesOf(output.str());
    }

    [[nodiscard]] long long messages() const
    {
        return StoreContent(path).number("SELECT count(*) FROM message");
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "chat.db";
    std::filesystem::path expected = folder.path() / "expected";
    SampleStore store{path, Synchronous::off};
};

TEST_F(SampleDelivery, PrintsReadyAndALineForEachMessage)
{
    const auto lines = delivered({.interval = 0s, .count = 12});
    ASSERT_EQ(lines.size(), 13U);
    EXPECT_EQ(lines[0], "ready");
    EXPECT_THAT(
        lines[1],
        AllOf(StartsWith("in the text column: Your Orlimo sample code is "), EndsWith(")")));
    EXPECT_THAT(lines[2], StartsWith("as a body alone: "));
    EXPECT_EQ(lines[3], "in the text column: Lunch at noon? (no code)");
    EXPECT_EQ(messages(), 12);
}

TEST_F(SampleDelivery, NotesEachCodeThatItsLinesAnnounce)
{
    std::vector<std::string> announced;
    for (const std::string& line : delivered({.interval = 0s, .count = 24, .expected = expected})) {
        constexpr std::string_view mark = "(expect ";
        if (const auto at = line.rfind(mark); at != std::string::npos) {
            announced.push_back(line.substr(at + mark.size(), line.size() - at - mark.size() - 1));
        }
    }
    EXPECT_EQ(announced.size(), 18U);
    EXPECT_EQ(linesOf(contentOf(expected)), announced);
}

TEST_F(SampleDelivery, CodesThatCannotBeNotedAreAnError)
{
    EXPECT_THROW(
        delivered({.interval = 0s, .count = 1, .expected = folder.path() / "none/expected"}),
        std::runtime_error);
}

TEST_F(SampleDelivery, WaitsForTheIntervalBeforeEachMessage)
{
    const auto start = steady_clock::now();
    delivered({.interval = 0.1s, .count = 3});
    EXPECT_GE(steady_clock::now() - start, 300ms);
}

TEST_F(SampleDelivery, PacedByItsInputDeliversAMessageForEachLine)
{
    const auto lines = delivered({.interval = 0s, .count = 12, .paced = true}, "\n\n\n");
    EXPECT_EQ(lines.size(), 4U);
    EXPECT_EQ(messages(), 3);
}

TEST_F(SampleDelivery, PacedByItsInputStopsAtTheCount)
{
    EXPECT_EQ(delivered({.interval = 0s, .count = 2, .paced = true}, "\n\n\n").size(), 3U);
}

TEST_F(SampleDelivery, LogThatHasGrownTooLongIsCut)
{
    delivered({.interval = 0s, .count = 5});
    const auto size = store.logSize();
    delivered({.interval = 0s, .count = 5, .maxLogSize = size});
    EXPECT_GT(store.logSize(), 0U);
    EXPECT_LT(store.logSize(), size);
    EXPECT_EQ(messages(), 10);
}

TEST_F(SampleDelivery, LogIsLeftToGrowOtherwise)
{
    auto size = store.logSize();
    for (int number = 0; number < 50; ++number) {
        delivered({.interval = 0s, .count = 1});
        ASSERT_GT(store.logSize(), size);
        size = store.logSize();
    }
}

TEST(SampleDeliveryProgram, EndsAfterItsCount)
{
    const TemporaryFolder folder;
    const auto store = folder.path() / "chat.db";
    const auto expected = folder.path() / "expected";
    ChildProcess process(
        ORLIMO_SAMPLE_STORE,
        {.arguments = {
             "deliver",
             store.string(),
             "--interval",
             "0.01",
             "--count",
             "4",
             "--synchronous",
             "OFF",
             "--expected",
             expected.string()}});
    EXPECT_EQ(process.awaitEnd().status, 0);
    EXPECT_EQ(linesOf(process.output()).size(), 5U);
    EXPECT_EQ(linesOf(contentOf(expected)).size(), 3U);
    EXPECT_EQ(StoreContent(store).number("SELECT count(*) FROM message"), 4);
}

TEST(SampleDeliveryProgram, GoesOnWithoutACountUntilItIsEnded)
{
    const TemporaryFolder folder;
    ChildProcess process(
        ORLIMO_SAMPLE_STORE,
        {.arguments = {
             "deliver",
             (folder.path() / "chat.db").string(),
             "--interval",
             "0",
             "--synchronous",
             "OFF"}});
    for (int number = 0; number < 100; ++number) {
        ASSERT_TRUE(process.readLine()) << number;
    }
    EXPECT_EQ(process.terminate().signal, SIGTERM);
}

TEST(SampleDeliveryProgram, IsPacedByItsInputAndSaysAtOnceWhatItHasDelivered)
{
    const TemporaryFolder folder;
    const auto store = folder.path() / "chat.db";
    ChildProcess process(
        ORLIMO_SAMPLE_STORE,
        {.arguments = {"deliver", store.string(), "--interval", "0", "--paced"}});
    ASSERT_EQ(process.readLine(), "ready");
    EXPECT_TRUE(std::filesystem::exists(logOf(store)));
    EXPECT_EQ(process.readLine(300ms), std::nullopt);
    EXPECT_EQ(StoreContent(store).number("SELECT count(*) FROM message"), 0);

    EXPECT_THAT(process.ask(""), StartsWith("in the text column: "));
    EXPECT_EQ(StoreContent(store).number("SELECT count(*) FROM message"), 1);
    process.closeInput();
    EXPECT_EQ(process.awaitEnd().status, 0);
}

} // namespace
} // namespace orlimo::sample

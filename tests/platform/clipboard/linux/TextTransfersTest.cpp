#include "platform/clipboard/linux/TextTransfers.h"

#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"

#include <gtest/gtest.h>

#include <csignal>
#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

class TextTransfersTest : public testing::Test
{
protected:
    TextTransfersTest() { (void)std::signal(SIGPIPE, SIG_IGN); } // as the program does

    /// More than a pipe holds, and different everywhere.
    static std::string longText(char first)
    {
        std::string text(1, first);
        while (text.size() < std::size_t{1024} * 1024) {
            text += std::to_string(text.size()) + ' ';
        }
        return text;
    }

    PipeReader start(const std::string& text)
    {
        TestPipe pipe;
        transfers->start(std::make_shared<const std::string>(text), std::move(pipe.writeEnd));
        return PipeReader(std::move(pipe.readEnd));
    }

    const std::size_t descriptorsBefore = openDescriptors();
    std::unique_ptr<TextTransfers> transfers = std::make_unique<TextTransfers>();
};

TEST_F(TextTransfersTest, ShortTextIsWrittenAtOnce)
{
    for (const char* text : {"123456", ""}) {
        auto reader = start(text);
        EXPECT_EQ(transfers->activeCount(), 0U);
        ASSERT_TRUE(reader.awaitEnd());
        EXPECT_EQ(reader.content(), text);
    }
    EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

TEST_F(TextTransfersTest, EachReaderIsServedAtItsOwnPace)
{
    auto slow = start(longText('s'));
    auto fast = start(longText('f'));
    EXPECT_EQ(transfers->activeCount(), 2U);
    ASSERT_TRUE(fast.awaitEnd());
    EXPECT_EQ(transfers->activeCount(), 1U);
    EXPECT_TRUE(fast.content() == longText('f'));
    ASSERT_TRUE(slow.awaitEnd(8192));
    EXPECT_EQ(transfers->activeCount(), 0U);
    EXPECT_TRUE(slow.content() == longText('s'));
}

TEST_F(TextTransfersTest, ReaderCausesNoWakeUpUntilItReadsOrHangsUp)
{
    {
        TestPipe pipe;
        pipe.readEnd = UniqueFd();
        transfers->start(std::make_shared<const std::string>("1"), std::move(pipe.writeEnd));
        EXPECT_EQ(transfers->activeCount(), 0U);
        auto reader = start(longText('x'));
        runEventLoop(10ms);
        const EventCount notified(QEvent::SockAct);
        runEventLoop(200ms);
        EXPECT_EQ(notified.count(), 0);
        reader.read(10);
        EXPECT_EQ(transfers->activeCount(), 1U);
    }
    EXPECT_TRUE(await([this] { return transfers->activeCount() == 0; }));
    EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

TEST_F(TextTransfersTest, OldestOfTooManyTransfersIsDropped)
{
    const std::string text = longText('x');
    std::deque<PipeReader> readers;
    while (readers.size() <= TextTransfers::maxTransfers) {
        readers.push_back(start(text));
    }
    EXPECT_EQ(transfers->activeCount(), TextTransfers::maxTransfers);
    ASSERT_TRUE(readers[0].awaitEnd());
    EXPECT_LT(readers[0].content().size(), text.size());
    for (PipeReader* const reader : {&readers[1], &readers.back()}) {
        ASSERT_TRUE(reader->awaitEnd());
        EXPECT_EQ(reader->content().size(), text.size());
    }
    transfers.reset();
    ASSERT_TRUE(readers[2].awaitEnd());
    EXPECT_LT(readers[2].content().size(), text.size());
    readers.clear();
    EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

} // namespace
} // namespace orlimo

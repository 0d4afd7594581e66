#include "platform/clipboard/linux/TextTransfers.h"

#include "tests/platform/clipboard/linux/NotifierCount.h"
#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/platform/process/TestPipe.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// More than a pipe holds.
SharedText longText(char letter = 'x')
{
    return std::make_shared<const std::string>(std::size_t{1024} * 1024, letter);
}

/// Starts a transfer and returns its reader.
PipeReader started(TextTransfers& transfers, SharedText text)
{
    TestPipe pipe;
    transfers.start(std::move(text), std::move(pipe.writeEnd));
    return PipeReader(std::move(pipe.readEnd));
}

TEST(TextTransfers, IsDoneWithAShortTextAtOnce)
{
    TextTransfers transfers;
    auto reader = started(transfers, std::make_shared<const std::string>("123456"));
    EXPECT_EQ(transfers.activeCount(), 0U);
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "123456");
}

TEST(TextTransfers, ServesSeveralReadersEachAtItsPace)
{
    TextTransfers transfers;
    auto slow = started(transfers, longText('s'));
    auto fast = started(transfers, longText('f'));
    EXPECT_EQ(transfers.activeCount(), 2U);
    ASSERT_TRUE(fast.awaitEnd());
    EXPECT_EQ(transfers.activeCount(), 1U);
    EXPECT_TRUE(fast.content() == *longText('f'));
    ASSERT_TRUE(slow.awaitEnd(8192));
    EXPECT_EQ(transfers.activeCount(), 0U);
    EXPECT_TRUE(slow.content() == *longText('s'));
}

TEST(TextTransfers, ForgetsAReaderThatHangsUp)
{
    const std::size_t before = openDescriptors();
    TextTransfers transfers;
    {
        auto reader = started(transfers, longText());
        reader.read(10);
        EXPECT_EQ(transfers.activeCount(), 1U);
    }
    EXPECT_TRUE(await([&] { return transfers.activeCount() == 0; }));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(TextTransfers, IsNotWokenByAReaderThatDoesNotRead)
{
    TextTransfers transfers;
    const auto reader = started(transfers, longText());
    runEventLoop(10ms);
    const NotifierCount woken;
    runEventLoop(200ms);
    EXPECT_EQ(woken.count, 0U);
    EXPECT_EQ(transfers.activeCount(), 1U);
}

TEST(TextTransfers, HangsUpOnTheOldestOfTooManyReaders)
{
    TextTransfers transfers;
    std::deque<PipeReader> readers;
    while (readers.size() <= TextTransfers::maxTransfers) {
        readers.push_back(started(transfers, longText()));
    }
    EXPECT_EQ(transfers.activeCount(), TextTransfers::maxTransfers);
    ASSERT_TRUE(readers[0].awaitEnd());
    EXPECT_LT(readers[0].content().size(), longText()->size());
    ASSERT_TRUE(readers[1].awaitEnd());
    EXPECT_EQ(readers[1].content().size(), longText()->size());
    ASSERT_TRUE(readers.back().awaitEnd());
    EXPECT_EQ(readers.back().content().size(), longText()->size());
}

TEST(TextTransfers, HangsUpOnEverybodyAtTheEnd)
{
    const std::size_t before = openDescriptors();
    std::deque<PipeReader> readers;
    {
        TextTransfers transfers;
        readers.push_back(started(transfers, longText()));
        readers.push_back(started(transfers, longText()));
    }
    EXPECT_TRUE(readers[0].awaitEnd());
    EXPECT_TRUE(readers[1].awaitEnd());
    readers.clear();
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace orlimo

#include "platform/clipboard/linux/TextTransfer.h"

#include "tests/platform/files/OpenDescriptors.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/platform/process/TestPipe.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <utility>

namespace orlimo {
namespace {

SharedText shared(std::string text)
{
    return std::make_shared<const std::string>(std::move(text));
}

/// Keeps SIGPIPE waiting in this thread while it lives.
class BlockedSigpipe
{
public:
    BlockedSigpipe()
    {
        ::sigaddset(&pipeSignal, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
    }
    BlockedSigpipe(const BlockedSigpipe&) = delete;
    BlockedSigpipe& operator=(const BlockedSigpipe&) = delete;
    ~BlockedSigpipe()
    {
        while (isPending()) {
            constexpr timespec atOnce{};
            (void)::sigtimedwait(&pipeSignal, nullptr, &atOnce);
        }
        ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }

    [[nodiscard]] static bool isPending()
    {
        sigset_t pending{};
        ::sigpending(&pending);
        return ::sigismember(&pending, SIGPIPE) == 1;
    }

private:
    sigset_t pipeSignal{};
    sigset_t previous{};
};

TEST(TextTransfer, WritesAShortTextAtOnce)
{
    TestPipe pipe;
    {
        TextTransfer transfer(shared("123456"), std::move(pipe.writeEnd));
        EXPECT_TRUE(transfer.advance());
    }
    PipeReader reader(std::move(pipe.readEnd));
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "123456");
}

TEST(TextTransfer, WritesNothingOfAnEmptyText)
{
    TestPipe pipe;
    {
        TextTransfer transfer(shared(""), std::move(pipe.writeEnd));
        EXPECT_TRUE(transfer.advance());
    }
    PipeReader reader(std::move(pipe.readEnd));
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_EQ(reader.content(), "");
}

TEST(TextTransfer, GoesOnWhereTheReaderHasMadeRoom)
{
    std::string text;
    while (text.size() < std::size_t{1024} * 1024) {
        text += std::to_string(text.size()) + ' ';
    }
    TestPipe pipe;
    PipeReader reader(std::move(pipe.readEnd));
    {
        TextTransfer transfer(shared(text), std::move(pipe.writeEnd));
        int turns = 0;
        for (; !transfer.advance(); ++turns) {
            reader.read(4096);
        }
        EXPECT_GT(turns, 1);
    }
    ASSERT_TRUE(reader.awaitEnd());
    EXPECT_TRUE(reader.content() == text) << reader.content().size();
}

TEST(TextTransfer, EndsWithAReaderThatHangsUp)
{
    // The signal would end the process: it is neither ignored nor handled here.
    ASSERT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_DFL);
    TestPipe pipe;
    pipe.readEnd = UniqueFd();
    TextTransfer transfer(shared("123456"), std::move(pipe.writeEnd));
    EXPECT_TRUE(transfer.advance());
    EXPECT_FALSE(BlockedSigpipe::isPending());
}

TEST(TextTransfer, LeavesASignalThatWasWaitingWhereItIs)
{
    const BlockedSigpipe held;
    ASSERT_EQ(::raise(SIGPIPE), 0);
    TestPipe pipe;
    pipe.readEnd = UniqueFd();
    TextTransfer transfer(shared("123456"), std::move(pipe.writeEnd));
    EXPECT_TRUE(transfer.advance());
    EXPECT_TRUE(BlockedSigpipe::isPending());
}

TEST(TextTransfer, LeavesNoSignalToAThreadThatHoldsThemBack)
{
    const BlockedSigpipe held;
    TestPipe pipe;
    pipe.readEnd = UniqueFd();
    TextTransfer transfer(shared("123456"), std::move(pipe.writeEnd));
    EXPECT_TRUE(transfer.advance());
    EXPECT_FALSE(BlockedSigpipe::isPending());
}

TEST(TextTransfer, ClosesItsEnd)
{
    const std::size_t before = openDescriptors();
    {
        TestPipe pipe;
        TextTransfer transfer(shared("123456"), std::move(pipe.writeEnd));
        EXPECT_TRUE(transfer.advance());
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace orlimo

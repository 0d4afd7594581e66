#include "platform/process/LogLine.h"

#include "platform/files/UniqueFd.h"
#include "platform/process/StandardStreams.h"
#include "tests/platform/process/OutputRedirection.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OpenPipe.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

struct Pipe
{
    /// `flags` hold for both ends.
    explicit Pipe(int flags = 0)
    {
        const auto ends = openPipe();
        for (const int end : ends) {
            EXPECT_EQ(::fcntl(end, F_SETFL, flags), 0);
        }
        reader = UniqueFd(ends[0]);
        writer = UniqueFd(ends[1]);
    }

    UniqueFd reader;
    UniqueFd writer;
};

/// Reads to the end, at most `step` bytes at a time.
std::string readAll(int descriptor, std::size_t step)
{
    std::string all;
    std::string part(step, '\0');
    for (;;) {
        const ssize_t got = ::read(descriptor, part.data(), part.size());
        if (got <= 0) {
            return all;
        }
        all.append(part, 0, static_cast<std::size_t>(got));
    }
}

/// What each single write to standard output carried while `work` ran.
std::vector<std::string> writesOf(const std::function<void()>& work)
{
    // A socket that keeps its messages apart gives each write back on its own.
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()), 0);
    // Not every system lets a message be as long by itself.
    constexpr int room = 65536;
    for (const int end : ends) {
        EXPECT_EQ(::setsockopt(end, SOL_SOCKET, SO_SNDBUF, &room, sizeof room), 0);
        EXPECT_EQ(::setsockopt(end, SOL_SOCKET, SO_RCVBUF, &room, sizeof room), 0);
    }
    const UniqueFd receiver(ends[0]);
    {
        const UniqueFd sender(ends[1]);
        const OutputRedirection redirection(sender.get());
        work();
    }
    std::vector<std::string> writes;
    std::string message(room, '\0');
    for (;;) {
        const ssize_t got = ::recv(receiver.get(), message.data(), message.size(), MSG_DONTWAIT);
        if (got <= 0) {
            return writes;
        }
        writes.emplace_back(message, 0, static_cast<std::size_t>(got));
    }
}

/// What a reader that takes a page at a time gets of `lines` through a pipe, of which `flags` hold
/// for the writer.
std::string readThroughSlowPipe(const std::vector<std::string>& lines, int writerFlags)
{
    Pipe pipe;
    EXPECT_EQ(::fcntl(pipe.writer.get(), F_SETFL, writerFlags), 0);
    std::string read;
    std::thread reader([&] { read = readAll(pipe.reader.get(), 4096); });
    {
        const OutputRedirection redirection(pipe.writer.get());
        for (const std::string& line : lines) {
            writeLogLine(line);
        }
        pipe.writer = UniqueFd();
    }
    reader.join();
    return read;
}

/// Sixteen megabytes in which no two places look alike.
std::string hugeLine()
{
    std::string line;
    for (int number = 0; line.size() < std::size_t{16} << 20U; ++number) {
        line.append(std::to_string(number)).push_back(' ');
    }
    return line;
}

TEST(LogLine, IsOneWrite)
{
    const auto writes = writesOf([] {
        writeLogLine("Database init");
        writeLogLine("two words");
        writeLogLine(std::string(10'000, 'x'));
    });
    EXPECT_EQ(
        writes,
        (std::vector<std::string>{
            "Database init\n", "two words\n", std::string(10'000, 'x') + "\n"}));
}

TEST(LogLine, AnEmptyLineIsALineBreak)
{
    EXPECT_EQ(writesOf([] { writeLogLine(""); }), std::vector<std::string>{"\n"});
}

TEST(LogLine, IsWrittenByteForByte)
{
    const auto line = "a\0b\nc\r\n\xFF\xFE \xE2\x80\xA8 \x1B[31m\t"sv;
    EXPECT_EQ(writesOf([line] { writeLogLine(line); }), std::vector{std::string(line) + "\n"});
}

TEST(LogLine, IsInAFileAtOnce)
{
    std::vector<std::string> seen;
    {
        const OutputCapture output;
        writeLogLine("first");
        seen.push_back(output.text());
        writeLogLine("second");
        seen.push_back(output.text());
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"first\n", "first\nsecond\n"}));
}

TEST(LogLine, IsInAPipeAtOnce)
{
    const Pipe pipe(O_NONBLOCK);
    std::string seen;
    {
        const OutputRedirection redirection(pipe.writer.get());
        writeLogLine("at once");
        seen = readAll(pipe.reader.get(), 100);
    }
    EXPECT_EQ(seen, "at once\n");
}

TEST(LogLine, PassesASlowPipeInFull)
{
    const std::string line = hugeLine();
    EXPECT_TRUE(readThroughSlowPipe({line, "after"}, 0) == line + "\nafter\n");
}

TEST(LogLine, PassesAPipeThatDoesNotBlockInFull)
{
    const std::string line = hugeLine();
    EXPECT_TRUE(readThroughSlowPipe({line, "after"}, O_NONBLOCK) == line + "\nafter\n");
}

/// How often the signal of the next test was handled.
std::atomic<int> interruptions = 0;

TEST(LogLine, IsNotLostToASignal)
{
    struct sigaction interrupting
    {};
    struct sigaction before
    {};
    interrupting.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(::sigaction(SIGUSR1, &interrupting, &before), 0);

    Pipe pipe(O_NONBLOCK);
    const std::string filling(4096, 'x');
    std::size_t filled = 0;
    while (::write(pipe.writer.get(), filling.data(), filling.size()) > 0) {
        filled += filling.size();
    }
    ASSERT_EQ(::fcntl(pipe.writer.get(), F_SETFL, 0), 0);
    ASSERT_EQ(::fcntl(pipe.reader.get(), F_SETFL, 0), 0);
    std::string read;
    {
        const OutputRedirection redirection(pipe.writer.get());
        pipe.writer = UniqueFd();
        std::thread writer([] { writeLogLine("interrupted"); });
        // The pipe is full: the writer blocks, and each signal throws it out of its write.
        for (int number = 1; number <= 20; ++number) {
            ::pthread_kill(writer.native_handle(), SIGUSR1);
            (void)await([number] { return interruptions >= number; });
        }
        read.resize(filled);
        std::size_t got = 0;
        while (got < filled) {
            got += static_cast<std::size_t>(
                ::read(pipe.reader.get(), read.data() + got, filled - got));
        }
        writer.join();
    }
    EXPECT_EQ(readAll(pipe.reader.get(), 100), "interrupted\n");
    ::sigaction(SIGUSR1, &before, nullptr);
}

/// The lines that come out of a pipe into which four threads write at a time: whole lines of one
/// character each, `length` characters long.
std::string linesOfFourThreads(std::size_t length, int linesOfEach)
{
    Pipe pipe;
    std::string read;
    std::thread reader([&] { read = readAll(pipe.reader.get(), 4096); });
    {
        const OutputRedirection redirection(pipe.writer.get());
        pipe.writer = UniqueFd();
        std::vector<JoiningThread> writers;
        for (const char letter : {'a', 'b', 'c', 'd'}) {
            writers.emplace_back([letter, length, linesOfEach] {
                for (int line = 0; line < linesOfEach; ++line) {
                    writeLogLine(std::string(length, letter));
                }
            });
        }
    }
    reader.join();
    return read;
}

void expectWholeLines(const std::string& text, std::size_t length, int linesOfEach)
{
    std::map<std::string, int> numbers;
    for (const std::string& line : linesOf(text)) {
        ++numbers[line];
    }
    ASSERT_EQ(numbers.size(), 4U) << "lines are mixed";
    for (const auto& [line, number] : numbers) {
        EXPECT_EQ(line, std::string(length, line.front()));
        EXPECT_EQ(number, linesOfEach);
    }
}

TEST(LogLine, IsNotMixedWithTheLinesOfOtherThreads)
{
    expectWholeLines(linesOfFourThreads(80, 500), 80, 500);
}

TEST(LogLine, IsNotMixedWithTheLinesOfOtherThreadsHoweverLong)
{
    expectWholeLines(linesOfFourThreads(300'000, 4), 300'000, 4);
}

TEST(LogLine, AReaderThatHasGoneAwayLosesTheLineAndNothingElse)
{
    const auto run = runForked([] {
        prepareStandardStreams();
        {
            Pipe pipe;
            const OutputRedirection redirection(pipe.writer.get());
            pipe.writer = UniqueFd();
            pipe.reader = UniqueFd();
            writeLogLine("lost");
            writeLogLine(std::string(1'000'000, 'x'));
        }
        writeLogLine("after");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.signal, std::nullopt);
    EXPECT_EQ(run.output, "after\n");
}

TEST(LogLine, AFileThatCannotGrowLosesTheLineAndNothingElse)
{
    const TemporaryFolder folder;
    const auto run = runForked([&folder] {
        (void)std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        (void)::getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t before = std::exchange(limit.rlim_cur, 0);
        (void)::setrlimit(RLIMIT_FSIZE, &limit);
        {
            const auto file = folder.path() / "full";
            const UniqueFd full(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            const OutputRedirection redirection(full.get());
            writeLogLine("lost");
        }
        limit.rlim_cur = before;
        (void)::setrlimit(RLIMIT_FSIZE, &limit);
        writeLogLine("after");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "after\n");
    EXPECT_EQ(contentOf(folder.path() / "full"), "");
}

TEST(LogLine, AClosedStreamLosesTheLineAndNothingElse)
{
    const auto run = runForked([] {
        const int saved = ::dup(STDOUT_FILENO);
        ::close(STDOUT_FILENO);
        writeLogLine("lost");
        ::dup2(saved, STDOUT_FILENO);
        writeLogLine("after");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "after\n");
}

} // namespace
} // namespace orlimo

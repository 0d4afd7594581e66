#include "platform/process/LogLine.h"

#include "platform/files/UniqueFd.h"
#include "platform/process/StandardStreams.h"
#include "tests/platform/process/TestPipe.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <functional>
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

/// Redirects this process's standard output to another descriptor while the object lives. Expect
/// nothing meanwhile: a failure would be reported on the same stream.
class OutputRedirection
{
public:
    explicit OutputRedirection(int descriptor)
        : saved(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3))
    {
        (void)::dup2(descriptor, STDOUT_FILENO);
    }
    OutputRedirection(const OutputRedirection&) = delete;
    OutputRedirection& operator=(const OutputRedirection&) = delete;
    ~OutputRedirection() { (void)::dup2(saved.get(), STDOUT_FILENO); }

private:
    UniqueFd saved;
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
    // A datagram socket keeps writes apart. Not every system accepts messages as long by default.
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()), 0);
    constexpr int size = 65536;
    EXPECT_EQ(::setsockopt(ends[1], SOL_SOCKET, SO_SNDBUF, &size, sizeof size), 0);
    EXPECT_EQ(::setsockopt(ends[0], SOL_SOCKET, SO_RCVBUF, &size, sizeof size), 0);
    const UniqueFd receiver(ends[0]);
    const UniqueFd sender(ends[1]);
    {
        const OutputRedirection redirection(sender.get());
        work();
    }
    std::vector<std::string> writes;
    std::string message(size, '\0');
    ssize_t length = 0;
    while ((length = ::recv(receiver.get(), message.data(), message.size(), MSG_DONTWAIT)) > 0) {
        writes.emplace_back(message, 0, static_cast<std::size_t>(length));
    }
    return writes;
}

TEST(LogLine, EachIsWrittenAtOnceByteForByte)
{
    const auto bytes = "a\0b\nc\r\n\xFF\xFE \xE2\x80\xA8 \x1B[31m\t"sv;
    const auto writes = writesOf([bytes] {
        writeLogLine("Database init");
        writeLogLine("");
        writeLogLine(bytes);
        writeLogLine(std::string(10'000, 'x'));
    });
    EXPECT_EQ(
        writes,
        (std::vector<std::string>{
            "Database init\n", "\n", std::string(bytes) + "\n", std::string(10'000, 'x') + "\n"}));
}

/// The flags of a pipe's end to write to.
class LogLineThroughSlowPipe : public testing::TestWithParam<int>
{};

INSTANTIATE_TEST_SUITE_P(Flags, LogLineThroughSlowPipe, testing::Values(0, O_NONBLOCK));

TEST_P(LogLineThroughSlowPipe, IsWrittenInFull)
{
    // Many times what a pipe holds, in which no two places look alike.
    std::string line;
    for (int number = 0; line.size() < std::size_t{2} << 20U; ++number) {
        line.append(std::to_string(number)).push_back(' ');
    }
    TestPipe pipe;
    EXPECT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, GetParam()), 0);
    std::string read;
    std::thread reader([&] { read = readAll(pipe.readEnd.get(), 4096); });
    {
        const OutputRedirection redirection(pipe.writeEnd.get());
        writeLogLine(line);
        writeLogLine("after");
        pipe.writeEnd = UniqueFd();
    }
    reader.join();
    EXPECT_TRUE(read == line + "\nafter\n");
}

std::atomic<int> interruptions = 0;

TEST(LogLine, SignalDuringWriteLosesNothing)
{
    struct sigaction interrupting
    {};
    struct sigaction before
    {};
    interrupting.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(::sigaction(SIGUSR1, &interrupting, &before), 0);

    TestPipe pipe;
    ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, O_NONBLOCK), 0);
    std::string filling;
    while (::write(pipe.writeEnd.get(), "x", 1) > 0) {
        filling.push_back('x');
    }
    ASSERT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, 0), 0);
    bool areHandled = true;
    {
        const OutputRedirection redirection(pipe.writeEnd.get());
        pipe.writeEnd = UniqueFd();
        std::thread writer([] { writeLogLine("interrupted"); });
        // The pipe is full: the writer blocks, and each signal interrupts its write.
        for (int number = 1; number <= 20 && areHandled; ++number) {
            ::pthread_kill(writer.native_handle(), SIGUSR1);
            areHandled = await([number] { return interruptions >= number; });
        }
        std::string drained(filling.size(), '\0');
        EXPECT_EQ(::read(pipe.readEnd.get(), drained.data(), drained.size()), filling.size());
        writer.join();
    }
    EXPECT_TRUE(areHandled);
    EXPECT_EQ(readAll(pipe.readEnd.get(), 100), "interrupted\n");
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(LogLine, LongLinesOfOtherThreadsAreNotMixedIn)
{
    TestPipe pipe;
    std::string read;
    std::thread reader([&] { read = readAll(pipe.readEnd.get(), 4096); });
    {
        const OutputRedirection redirection(pipe.writeEnd.get());
        pipe.writeEnd = UniqueFd();
        std::vector<JoiningThread> writers;
        for (const char letter : {'a', 'b', 'c', 'd'}) {
            writers.emplace_back([letter] {
                for (int line = 0; line < 4; ++line) {
                    writeLogLine(std::string(300'000, letter));
                }
            });
        }
    }
    reader.join();
    std::map<std::string, int> lines;
    for (const std::string& line : linesOf(read)) {
        ++lines[line];
    }
    ASSERT_EQ(lines.size(), 4U) << "lines are mixed";
    for (const auto& [line, number] : lines) {
        EXPECT_EQ(line, std::string(300'000, line.front()));
        EXPECT_EQ(number, 4);
    }
}

void limitFileSize(rlim_t size)
{
    rlimit limit{};
    (void)::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    (void)::setrlimit(RLIMIT_FSIZE, &limit);
}

/// What a process writes that first writes lines to `lost`, -1 for a closed stream, and then
/// "after" to its own standard output.
std::string outputAfterLossTo(const std::function<int()>& lost)
{
    const auto run = runForked([&lost] {
        prepareStandardStreams();
        {
            const UniqueFd target(lost());
            const OutputRedirection redirection(target.get());
            if (!target) {
                ::close(STDOUT_FILENO);
            }
            writeLogLine("lost");
            writeLogLine(std::string(1'000'000, 'x'));
        }
        limitFileSize(RLIM_INFINITY);
        writeLogLine("after");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.signal, std::nullopt);
    return run.output;
}

TEST(LogLine, UnwritableLineIsDroppedAndNothingElse)
{
    EXPECT_EQ(outputAfterLossTo([] { return -1; }), "after\n");
    EXPECT_EQ(outputAfterLossTo([] { return TestPipe().writeEnd.release(); }), "after\n");
    const TemporaryFolder folder;
    const auto full = folder.path() / "full";
    EXPECT_EQ(
        outputAfterLossTo([&full] {
            (void)std::signal(SIGXFSZ, SIG_IGN);
            limitFileSize(0);
            return ::open(full.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        }),
        "after\n");
    EXPECT_EQ(contentOf(full), "");
}

} // namespace
} // namespace orlimo

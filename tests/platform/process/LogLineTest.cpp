#include "platform/process/LogLine.h"

#include "platform/files/UniqueFd.h"
#include "platform/process/StandardStreams.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
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

/// What is read to the end of a pipe whose writing end has `flags` while `work` writes to standard
/// output.
std::string readWhile(const std::function<void()>& work, int flags = 0)
{
    TestPipe pipe;
    EXPECT_EQ(::fcntl(pipe.writeEnd.get(), F_SETFL, flags), 0);
    std::string all;
    JoiningThread reader([&] {
        std::array<char, 4096> part{};
        ssize_t got = 0;
        while ((got = ::read(pipe.readEnd.get(), part.data(), part.size())) > 0) {
            all.append(part.data(), static_cast<std::size_t>(got));
        }
    });
    {
        const OutputRedirection redirection(pipe.writeEnd.get());
        pipe.writeEnd = UniqueFd();
        work();
    }
    reader.join();
    return all;
}

TEST(LogLine, EachIsWrittenAtOnceByteForByte)
{
    // A datagram socket keeps writes apart. Not every system accepts messages as long by default.
    std::array<int, 2> ends{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()), 0);
    const UniqueFd receiver(ends[0]);
    const UniqueFd sender(ends[1]);
    constexpr int size = 65536;
    ASSERT_EQ(::setsockopt(sender.get(), SOL_SOCKET, SO_SNDBUF, &size, sizeof size), 0);
    ASSERT_EQ(::setsockopt(receiver.get(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size), 0);
    const auto bytes = "a\0b\nc\r\n\xFF\xFE \xE2\x80\xA8 \x1B[31m\t"sv;
    for (const std::string& line :
         {std::string("Database init"),
          std::string(),
          std::string(bytes),
          std::string(10'000, 'x')})
    {
        {
            const OutputRedirection redirection(sender.get());
            writeLogLine(line);
        }
        std::string message(size, '\0');
        const ssize_t length = ::recv(receiver.get(), message.data(), message.size(), MSG_DONTWAIT);
        ASSERT_GT(length, 0) << line;
        EXPECT_EQ(message.substr(0, static_cast<std::size_t>(length)), line + "\n");
        EXPECT_LT(::recv(receiver.get(), message.data(), message.size(), MSG_DONTWAIT), 0);
    }
}

TEST(LogLine, LongLinesOfThreadsAreWrittenInFullAndNotMixed)
{
    // Many times what a pipe holds, in which no two places look alike.
    const auto lineOf = [](int thread) {
        std::string line = std::to_string(thread);
        for (int number = 0; line.size() < std::size_t{1} << 20U; ++number) {
            line.append(" ").append(std::to_string(number));
        }
        return line;
    };
    for (const int flags : {0, O_NONBLOCK}) {
        const std::string read = readWhile(
            [&lineOf] {
                std::vector<JoiningThread> writers;
                for (const int thread : {1, 2, 3, 4}) {
                    writers.emplace_back([line = lineOf(thread)] {
                        writeLogLine(line);
                        writeLogLine(line);
                    });
                }
            },
            flags);
        std::map<std::string, int> lines;
        for (const std::string& line : linesOf(read)) {
            ++lines[line];
        }
        ASSERT_EQ(lines.size(), 4U) << "lines are mixed";
        for (const int thread : {1, 2, 3, 4}) {
            EXPECT_EQ(lines[lineOf(thread)], 2) << thread;
        }
    }
}

TEST(LogLine, UnwritableLineIsDroppedAndNothingElse)
{
    prepareStandardStreams(); // ignores SIGPIPE
    const std::string read = readWhile([] {
        for (const bool isClosed : {true, false}) {
            const UniqueFd target(isClosed ? -1 : TestPipe().writeEnd.release());
            const OutputRedirection redirection(target.get());
            if (isClosed) {
                ::close(STDOUT_FILENO);
            }
            writeLogLine("lost");
            writeLogLine(std::string(1'000'000, 'x'));
        }
        writeLogLine("after");
    });
    EXPECT_EQ(read, "after\n");
}

} // namespace
} // namespace orlimo

#include "platform/process/StandardStreams.h"

#include "platform/process/LogLine.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OpenPipe.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// What a descriptor leads to, told apart from everything else; empty when it is closed.
std::string targetOf(int descriptor)
{
    struct stat target
    {};
    struct stat nothing
    {};
    if (::fstat(descriptor, &target) != 0) {
        return "";
    }
    if (::stat("/dev/null", &nothing) == 0 && target.st_dev == nothing.st_dev &&
        target.st_ino == nothing.st_ino)
    {
        return "/dev/null";
    }
    return std::to_string(target.st_dev) + ":" + std::to_string(target.st_ino);
}

/// Where the three standard streams lead to.
std::string streams()
{
    std::ostringstream text;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        text << targetOf(stream) << "\n";
    }
    return text.str();
}

class StandardStreamsTest : public testing::Test
{
protected:
    /// Runs `work` in a process of its own and returns what it reports, through a file.
    [[nodiscard]] std::string reportOf(const std::function<std::string()>& work)
    {
        const auto run = runForked([&] { writeFile(reportFile, work()); });
        EXPECT_EQ(run.status, 0);
        return contentOf(reportFile);
    }

    TemporaryFolder folder;
    std::filesystem::path reportFile = folder.path() / "report";
};

TEST_F(StandardStreamsTest, ClosedOnesAreOpenedOnNothing)
{
    const auto report = reportOf([] {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::close(stream);
        }
        prepareStandardStreams();
        return streams();
    });
    EXPECT_EQ(report, "/dev/null\n/dev/null\n/dev/null\n");
}

TEST_F(StandardStreamsTest, EachClosedOneIsOpenedOnNothingAlone)
{
    for (const int closed : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const auto report = reportOf([closed] {
            std::array<std::string, 3> expected{};
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                expected.at(static_cast<std::size_t>(stream)) = targetOf(stream);
            }
            expected.at(static_cast<std::size_t>(closed)) = "/dev/null";
            ::close(closed);
            prepareStandardStreams();
            const bool same =
                streams() == expected[0] + "\n" + expected[1] + "\n" + expected[2] + "\n";
            return same ? std::string("as expected") : streams();
        });
        EXPECT_EQ(report, "as expected") << closed;
    }
}

TEST_F(StandardStreamsTest, OpenOnesAreLeftAsTheyAre)
{
    const auto report = reportOf([] {
        const std::string before = streams();
        prepareStandardStreams();
        return streams() == before ? "as before" : streams();
    });
    EXPECT_EQ(report, "as before");
}

TEST_F(StandardStreamsTest, ThoseOpenedOnNothingCanBeReadAndWrittenAndAreHandedDown)
{
    const auto report = reportOf([] {
        ::close(STDOUT_FILENO);
        prepareStandardStreams();
        std::ostringstream text;
        text << ((::fcntl(STDOUT_FILENO, F_GETFL) & O_ACCMODE) == O_RDWR) << " "
             << ((::fcntl(STDOUT_FILENO, F_GETFD) & FD_CLOEXEC) == 0);
        return text.str();
    });
    EXPECT_EQ(report, "1 1");
}

TEST_F(StandardStreamsTest, NoFileOpenedLaterReceivesLogLines)
{
    const auto later = folder.path() / "later";
    const auto run = runForked([&later] {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::close(stream);
        }
        prepareStandardStreams();
        const int file = ::open(later.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        writeLogLine("a log line");
        ::_exit(file > STDERR_FILENO ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(contentOf(later), "");
}

TEST_F(StandardStreamsTest, AReaderThatHangsUpNoLongerEndsTheProcess)
{
    const auto hangUp = [] {
        const auto ends = openPipe();
        ::close(ends[0]);
        return ::write(ends[1], "x", 1);
    };
    const auto unprepared = runForked([&hangUp] {
        (void)std::signal(SIGPIPE, SIG_DFL);
        (void)hangUp();
    });
    EXPECT_EQ(unprepared.signal, SIGPIPE);
    const auto prepared = runForked([&hangUp] {
        (void)std::signal(SIGPIPE, SIG_DFL);
        prepareStandardStreams();
        ::_exit(hangUp() == -1 ? 0 : 1);
    });
    EXPECT_EQ(prepared.status, 0);
}

} // namespace
} // namespace orlimo

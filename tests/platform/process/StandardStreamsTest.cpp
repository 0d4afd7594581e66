#include "platform/process/StandardStreams.h"

#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// The device and inode of an open file.
std::pair<dev_t, ino_t> fileOf(int descriptor)
{
    struct stat status
    {};
    return ::fstat(descriptor, &status) == 0 ? std::pair{status.st_dev, status.st_ino}
                                             : std::pair{dev_t{0}, ino_t{0}};
}

/// Which of the three streams are closed, as a set of bits.
class StandardStreamsTest : public testing::TestWithParam<unsigned>
{
protected:
    static bool isClosed(int stream)
    {
        return (GetParam() >> static_cast<unsigned>(stream) & 1U) != 0;
    }
};

INSTANTIATE_TEST_SUITE_P(Closed, StandardStreamsTest, testing::Range(0U, 8U));

/// Open ones are left alone; a closed one is opened on /dev/null, so that no file that is opened
/// later takes its number, and can be read, written and inherited.
TEST_P(StandardStreamsTest, ClosedOnesAreOpenedOnNothing)
{
    const auto run = runForked([] {
        const auto nothing = fileOf(::open("/dev/null", O_RDWR | O_CLOEXEC));
        std::array<std::pair<dev_t, ino_t>, 3> expected;
        for (const int stream : {0, 1, 2}) {
            expected.at(static_cast<std::size_t>(stream)) =
                isClosed(stream) ? nothing : fileOf(stream);
            if (isClosed(stream)) {
                ::close(stream);
            }
        }
        prepareStandardStreams();
        for (const int stream : {0, 1, 2}) {
            if (fileOf(stream) != expected.at(static_cast<std::size_t>(stream))) {
                ::_exit(1 + stream);
            }
            if (isClosed(stream) &&
                ((::fcntl(stream, F_GETFL) & O_ACCMODE) != O_RDWR || ::fcntl(stream, F_GETFD) != 0))
            {
                ::_exit(11 + stream);
            }
        }
    });
    EXPECT_EQ(run.status, 0) << "1 to 3: another file, 11 to 13: wrong flags";
}

} // namespace
} // namespace orlimo

#include "platform/process/StandardStreams.h"

#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// What a descriptor is open on, and how.
struct OpenFile
{
    explicit OpenFile(int descriptor)
        : access(::fcntl(descriptor, F_GETFL) & O_ACCMODE)
        , flags(::fcntl(descriptor, F_GETFD))
    {
        struct stat status
        {};
        EXPECT_EQ(::fstat(descriptor, &status), 0);
        file = {status.st_dev, status.st_ino};
    }

    bool operator==(const OpenFile&) const = default;

    std::pair<dev_t, ino_t> file;
    int access;
    int flags;
};

TEST(StandardStreams, OpenOnesStayAndClosedOnesAreOpenedOnNothing)
{
    // Can be read, written and inherited.
    const OpenFile nothing(UniqueFd(::open("/dev/null", O_RDWR)).get());
    for (unsigned closed = 0; closed < 8; ++closed) {
        std::array<UniqueFd, 3> saved;
        std::vector<OpenFile> expected;
        for (const int stream : {0, 1, 2}) {
            const bool isClosed = (closed >> static_cast<unsigned>(stream) & 1U) != 0;
            expected.push_back(isClosed ? nothing : OpenFile(stream));
            saved.at(static_cast<std::size_t>(stream)) =
                UniqueFd(::fcntl(stream, F_DUPFD_CLOEXEC, 3));
            if (isClosed) {
                ::close(stream);
            }
        }
        prepareStandardStreams();
        const std::vector<OpenFile> found{OpenFile(0), OpenFile(1), OpenFile(2)};
        for (const int stream : {0, 1, 2}) {
            (void)::dup2(saved.at(static_cast<std::size_t>(stream)).get(), stream);
        }
        EXPECT_TRUE(found == expected) << closed;
    }
}

} // namespace
} // namespace orlimo

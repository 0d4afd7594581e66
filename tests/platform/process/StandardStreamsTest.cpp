#include "platform/process/StandardStreams.h"

#include "platform/files/UniqueFd.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// What a descriptor is open on, how, and whether programs inherit it.
auto openFile(int descriptor)
{
    struct stat status
    {};
    EXPECT_EQ(::fstat(descriptor, &status), 0);
    const int access = ::fcntl(descriptor, F_GETFL) & O_ACCMODE;
    return std::tuple(status.st_dev, status.st_ino, access, ::fcntl(descriptor, F_GETFD));
}

TEST(StandardStreams, OpenOnesStayAndClosedOnesAreOpenedOnNothing)
{
    // Can be read, written and inherited.
    const auto nothing = openFile(UniqueFd(::open("/dev/null", O_RDWR)).get());
    for (unsigned closed = 0; closed < 8; ++closed) {
        std::array<UniqueFd, 3> saved;
        std::vector<decltype(openFile(0))> expected;
        for (const int stream : {0, 1, 2}) {
            const bool isClosed = (closed >> static_cast<unsigned>(stream) & 1U) != 0;
            expected.push_back(isClosed ? nothing : openFile(stream));
            saved.at(static_cast<std::size_t>(stream)) =
                UniqueFd(::fcntl(stream, F_DUPFD_CLOEXEC, 3));
            if (isClosed) {
                ::close(stream);
            }
        }
        prepareStandardStreams();
        const std::vector found{openFile(0), openFile(1), openFile(2)};
        for (const int stream : {0, 1, 2}) {
            (void)::dup2(saved.at(static_cast<std::size_t>(stream)).get(), stream);
        }
        EXPECT_TRUE(found == expected) << closed;
    }
}

} // namespace
} // namespace orlimo

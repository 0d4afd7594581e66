#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/support/Await.h"
#include "tests/support/process/OpenPipe.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <string>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

/// A pipe, both ends of which wait.
struct TestPipe
{
    std::array<int, 2> ends = openPipe();
    UniqueFd readEnd{ends[0]};
    UniqueFd writeEnd{ends[1]};
};

/// Reads the end of a pipe at the test's pace. Never blocks.
class PipeReader
{
public:
    explicit PipeReader(UniqueFd end)
        : readEnd(std::move(end))
    {
        (void)::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK);
    }

    /// Reads the available bytes, at most `most`.
    void read(std::size_t most)
    {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(readEnd.get(), buffer.data(), std::min(most, buffer.size()));
        isAtEnd = count == 0 || (count < 0 && errno != EAGAIN);
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
    }

    /// Whether the writer has closed its end and everything is read.
    [[nodiscard]] bool hasEnded() const { return isAtEnd; }

    /// Everything that was read so far.
    [[nodiscard]] const std::string& content() const { return text; }

    /// Runs the event loop until the end is reached; false when it is not.
    [[nodiscard]] bool awaitEnd(std::size_t mostAtATime = 65536)
    {
        return await([&] {
            read(mostAtATime);
            return isAtEnd;
        });
    }

private:
    UniqueFd readEnd;
    std::string text;
    bool isAtEnd = false;
};

} // namespace orlimo

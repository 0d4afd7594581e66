#include "platform/clipboard/linux/TextTransfer.h"

#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/types.h>

namespace orlimo {

namespace {

/// Keeps SIGPIPE away from this thread while it lives, and takes the one that a write has caused
/// with it. One that was waiting before is left as it was. The program ignores the signal
/// altogether; a transfer does not rely on that.
class PipeSignalBlock
{
public:
    PipeSignalBlock()
    {
        ::sigemptyset(&pipeSignal);
        ::sigaddset(&pipeSignal, SIGPIPE);
        sigset_t pending{};
        ::sigpending(&pending);
        wasPending = ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
    }
    PipeSignalBlock(const PipeSignalBlock&) = delete;
    PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;
    ~PipeSignalBlock()
    {
        if (!wasPending) {
            constexpr timespec noWait{};
            while (::sigtimedwait(&pipeSignal, nullptr, &noWait) < 0 && errno == EINTR) {
            }
        }
        ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }

private:
    sigset_t pipeSignal{};
    sigset_t previous{};
    bool wasPending = false;
};

/// Writes as ::write does, but for the signal.
ssize_t writeWithoutSigpipe(int descriptor, std::string_view bytes)
{
    ssize_t written = 0;
    int error = 0;
    {
        const PipeSignalBlock block;
        written = ::write(descriptor, bytes.data(), bytes.size());
        error = errno;
    }
    errno = error;
    return written;
}

} // namespace

TextTransfer::TextTransfer(SharedText textToWrite, UniqueFd writeDescriptor)
    : text(std::move(textToWrite))
    , writeEnd(std::move(writeDescriptor))
{
    const int flags = ::fcntl(writeEnd.get(), F_GETFL);
    (void)::fcntl(writeEnd.get(), F_SETFL, flags | O_NONBLOCK);
}

bool TextTransfer::advance()
{
    while (written < text->size()) {
        const ssize_t count =
            writeWithoutSigpipe(writeEnd.get(), std::string_view(*text).substr(written));
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return false;
        } else if (errno != EINTR) {
            return true;
        }
    }
    return true;
}

} // namespace orlimo

#include "platform/process/StandardStreams.h"

#include <csignal>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

void prepareStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0) {
            // The lowest free descriptor is this stream's. Deliberately not closed on exec:
            // children inherit the three streams.
            (void)::open("/dev/null", O_RDWR); // NOLINT(android-cloexec-open)
        }
    }
    (void)std::signal(SIGPIPE, SIG_IGN);
}

} // namespace orlimo

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
            // The lowest free number is given out, which is this stream's own. Deliberately not
            // closed on exec: a child gets the three streams too.
            (void)::open("/dev/null", O_RDWR); // NOLINT(android-cloexec-open)
        }
    }
    (void)std::signal(SIGPIPE, SIG_IGN);
}

} // namespace orlimo

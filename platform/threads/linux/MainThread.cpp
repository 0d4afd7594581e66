#include "platform/threads/MainThread.h"

#include "platform/process/FatalStop.h"

#include <unistd.h>

namespace orlimo {

bool isMainThread()
{
    // The first thread's id is the process's id.
    return ::gettid() == ::getpid();
}

void requireMainThread(const char* file, int line)
{
    if (!isMainThread()) {
        fatalStop("called off the main thread", file, line);
    }
}

} // namespace orlimo

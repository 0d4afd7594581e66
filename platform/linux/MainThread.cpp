#include "platform/MainThread.h"

#include <unistd.h>

namespace orlimo {

bool isMainThread()
{
    // The first thread's id is the process's id.
    return ::gettid() == ::getpid();
}

} // namespace orlimo

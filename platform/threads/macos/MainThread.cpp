#include "platform/threads/MainThread.h"

#include "platform/process/FatalStop.h"

#include <pthread.h>

namespace orlimo {

bool isMainThread()
{
    return ::pthread_main_np() != 0;
}

void requireMainThread(const char* file, int line)
{
    if (!isMainThread()) {
        fatalStop("called off the main thread", file, line);
    }
}

} // namespace orlimo

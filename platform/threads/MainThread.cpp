#include "platform/threads/MainThread.h"

#include "platform/process/FatalStop.h"

#include <thread>

namespace orlimo {

namespace {

/// Static initialization runs on the first thread, before `main`.
const std::thread::id mainThread = std::this_thread::get_id();

} // namespace

bool isMainThread()
{
    return std::this_thread::get_id() == mainThread;
}

void requireMainThread(const char* file, int line)
{
    if (!isMainThread()) {
        fatalStop("called off the main thread", file, line);
    }
}

} // namespace orlimo

// Preloaded into a program (LD_PRELOAD), it makes the disk slow: each sync of a write-ahead log
// takes as many milliseconds longer as the file says that ORLIMO_SLOW_DISK names; none while there
// is no such file. Built without sanitizers.
#include <cstdlib>
#include <fstream>
#include <string>

#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

namespace {

bool isLog(int descriptor)
{
    char target[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), target, sizeof target);
    return length > 0 && std::string(target, static_cast<std::size_t>(length)).ends_with("-wal");
}

int sync(const char* name, int descriptor)
{
    const char* const file = std::getenv("ORLIMO_SLOW_DISK");
    int milliseconds = 0;
    if (file != nullptr && isLog(descriptor) && std::ifstream(file) >> milliseconds) {
        ::poll(nullptr, 0, milliseconds);
    }
    return reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, name))(descriptor);
}

} // namespace

extern "C" int fsync(int descriptor)
{
    return sync("fsync", descriptor);
}

extern "C" int fdatasync(int descriptor)
{
    return sync("fdatasync", descriptor);
}

// fcntl() with the command that tells the path of an open file.

#include <cstdarg>
#include <string>

#include <fcntl.h>
#include <sys/param.h>
#include <unistd.h>

#undef fcntl

namespace {

int writePathOf(int descriptor, char* path)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path, MAXPATHLEN - 1);
    if (length < 0) {
        return -1;
    }
    path[length] = '\0';
    return 0;
}

} // namespace

int fcntl_with_path(int descriptor, int command, ...)
{
    // Every command takes one argument or none, which is as wide as a pointer at the most.
    va_list arguments;
    va_start(arguments, command);
    auto* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return command == F_GETPATH ? writePathOf(descriptor, static_cast<char*>(argument))
                                : ::fcntl(descriptor, command, argument);
}

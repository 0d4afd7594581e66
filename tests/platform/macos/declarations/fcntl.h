// What the system's C library adds to this header.
#pragma once

#include_next <fcntl.h>

/// A command of fcntl() that writes the path of the open file into a buffer of MAXPATHLEN
/// characters. macOS 10.0
#define F_GETPATH 50

#ifdef __cplusplus
extern "C"
#endif
    /// fcntl() with the command above beside this system's own.
    int
    fcntl_with_path(int descriptor, int command, ...);

#define fcntl(...) fcntl_with_path(__VA_ARGS__)

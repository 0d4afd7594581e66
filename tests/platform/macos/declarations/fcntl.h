// What the system's C library adds to this header.
#pragma once

#include_next <fcntl.h>

/// The system's C library, macOS 10.0: a command of fcntl() that writes the path of the open file
/// into a buffer of MAXPATHLEN characters.
#define F_GETPATH 50

#ifdef __cplusplus
extern "C" {
#endif

/// fcntl() with the commands above beside this system's own.
int fcntl_with_path(int descriptor, int command, ...);

#ifdef __cplusplus
}
#endif

/// The system's C library, macOS 10.0
#define fcntl(...) fcntl_with_path(__VA_ARGS__)

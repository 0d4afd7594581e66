// What the system's C library adds to this header.
#pragma once

#include_next <sys/stat.h>

/// The system's C library, macOS 10.5: the member of `struct stat` with the time of the last
/// modification, which POSIX calls st_mtim.
#define st_mtimespec st_mtim

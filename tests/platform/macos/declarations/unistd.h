// What the system's C library adds to this header.
#pragma once

#include_next <unistd.h>

/// The system's C library, macOS 10.5: the user's own part of the system's folder for caches, made
/// where there is none.
#define _CS_DARWIN_USER_CACHE_DIR 65538

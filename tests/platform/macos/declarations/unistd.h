#pragma once

#include_next <unistd.h>

/// The user's own part of the system's folder for caches.
#define _CS_DARWIN_USER_CACHE_DIR 65538

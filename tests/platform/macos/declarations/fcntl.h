#pragma once

#include_next <fcntl.h>

/// A command of fcntl() that writes the path of the open file into a buffer of MAXPATHLEN bytes.
#define F_GETPATH 50

extern "C" int fcntl_with_path(int descriptor, int command, ...);
#define fcntl(...) fcntl_with_path(__VA_ARGS__)

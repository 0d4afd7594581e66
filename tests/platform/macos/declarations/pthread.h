// What the system's C library adds to this header.
#pragma once

#include_next <pthread.h>

#ifdef __cplusplus
extern "C"
#endif
    /// macOS 10.4: not zero on the process's first thread.
    int
    pthread_main_np(void);

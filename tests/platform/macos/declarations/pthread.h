#pragma once

#include_next <pthread.h>

/// Not zero on the process's first thread.
extern "C" int pthread_main_np(void);

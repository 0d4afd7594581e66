// The functions that the system's C library adds, with what this one has.

#include <ctime>

#include <pthread.h>
#include <unistd.h>

unsigned long long clock_gettime_nsec_np(clockid_t clock)
{
    timespec time{};
    if (clock != CLOCK_UPTIME_RAW || ::clock_gettime(CLOCK_MONOTONIC, &time) != 0) {
        return 0;
    }
    constexpr unsigned long long nanosecondsInASecond = 1'000'000'000;
    return static_cast<unsigned long long>(time.tv_sec) * nanosecondsInASecond +
           static_cast<unsigned long long>(time.tv_nsec);
}

int pthread_main_np()
{
    return ::gettid() == ::getpid() ? 1 : 0;
}

// Preloaded into a program (LD_PRELOAD), it has the program find that it cannot become the
// superuser, nor anyone else. A compositor that refuses to run where it could return to the
// superuser's rights runs then, also for a superuser who tests on a machine that has no other user.
// For anyone else nothing changes.
//
// Built without sanitizers.
#include <cerrno>

#include <sys/types.h>

extern "C" {

[[gnu::visibility("default")]] int setuid(uid_t /*user*/)
{
    errno = EPERM;
    return -1;
}

[[gnu::visibility("default")]] int setgid(gid_t /*group*/)
{
    errno = EPERM;
    return -1;
}
}

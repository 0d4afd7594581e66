#pragma once

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

/// Leads this process's standard output to another descriptor while the object lives. What a test
/// expects is judged afterwards: a failure would be reported on the same stream.
class OutputRedirection
{
public:
    explicit OutputRedirection(int descriptor)
        : saved(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3))
    {
        EXPECT_GE(saved, 0);
        (void)::dup2(descriptor, STDOUT_FILENO);
    }
    OutputRedirection(const OutputRedirection&) = delete;
    OutputRedirection& operator=(const OutputRedirection&) = delete;
    ~OutputRedirection()
    {
        ::dup2(saved, STDOUT_FILENO);
        ::close(saved);
    }

private:
    int saved;
};

} // namespace orlimo

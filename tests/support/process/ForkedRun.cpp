#include "tests/support/process/ForkedRun.h"

#include "tests/support/Await.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orlimo {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// An exception ends the child here; it must not reach the test framework's frames below.
[[noreturn]] void
runAsChild(const std::function<void()>& work, const File& output, const File& errors) noexcept
{
    const rlimit none{};
    (void)::setrlimit(RLIMIT_CORE, &none);
    (void)::alarm(static_cast<unsigned>(defaultTimeout.count()));
    (void)::dup2(::fileno(output.get()), STDOUT_FILENO);
    (void)::dup2(::fileno(errors.get()), STDERR_FILENO);
    work();
    (void)std::fflush(nullptr);
    ::_exit(0);
}

} // namespace

ForkedRun runForked(const std::function<void()>& work)
{
    const File output(std::tmpfile(), std::fclose);
    const File errors(std::tmpfile(), std::fclose);
    (void)std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        runAsChild(work, output, errors);
    }
    int end = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(child, &end, 0);
    } while (ended < 0 && errno == EINTR);
    ForkedRun run;
    EXPECT_EQ(ended, child) << "a process cannot be forked";
    if (WIFEXITED(end)) {
        run.status = WEXITSTATUS(end);
    }
    if (WIFSIGNALED(end)) {
        run.signal = WTERMSIG(end);
    }
    run.output = contentOf(output.get());
    run.errors = contentOf(errors.get());
    return run;
}

} // namespace orlimo

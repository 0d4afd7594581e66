#include "tests/support/FatalStopExpectation.h"

#include "tests/support/process/ForkedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace orlimo {

void expectFatalStop(
    const std::function<void()>& work,
    const std::vector<std::string>& lines,
    const ExpectedStop& stop)
{
    std::string before;
    for (const std::string& line : lines) {
        before.append(line).append("\n");
    }
    before.append("Orlimo stops at ").append(stop.file).append(":");
    const ForkedRun run = runForked([&work] {
        // Both streams in one, so that the order shows too.
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        work();
    });
    EXPECT_EQ(run.signal, SIGABRT);
    ASSERT_THAT(run.errors, testing::StartsWith(before));
    const std::string rest = run.errors.substr(before.size());
    const std::size_t number = rest.find_first_not_of("0123456789");
    EXPECT_NE(number, 0U) << run.errors;
    EXPECT_EQ(rest.substr(number), ": " + std::string(stop.reason) + "\n") << run.errors;
}

} // namespace orlimo

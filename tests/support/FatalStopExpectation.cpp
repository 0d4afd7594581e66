#include "tests/support/FatalStopExpectation.h"

#include "tests/support/process/ForkedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace orlimo {

namespace {

/// A regular expression that matches `text` alone.
std::string escaped(std::string_view text)
{
    constexpr std::string_view special = R"(.[]{}()*+?^$|\)";
    std::string expression;
    for (const char character : text) {
        if (special.find(character) != std::string_view::npos) {
            expression.push_back('\\');
        }
        expression.push_back(character);
    }
    return expression;
}

} // namespace

void expectFatalStop(
    const std::function<void()>& work,
    const std::vector<std::string>& lines,
    const ExpectedStop& stop)
{
    std::string whole;
    for (const std::string& line : lines) {
        whole.append(escaped(line)).append("\n");
    }
    whole.append("Orlimo stops at ").append(escaped(stop.file)).append(":[0-9]+: ");
    whole.append(escaped(stop.reason)).append("\n");
    const ForkedRun run = runForked([&work] {
        // Both streams in one, so that the order shows too.
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        work();
    });
    EXPECT_EQ(run.signal, SIGABRT);
    EXPECT_THAT(run.errors, testing::MatchesRegex(whole));
}

} // namespace orlimo

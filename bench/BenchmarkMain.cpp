#include "bench/DescriptorBuffer.h"
#include "platform/files/UniqueFd.h"
#include "tests/support/TestSandbox.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>

#include <iostream>

#include <fcntl.h>
#include <unistd.h>

/// Runs the benchmarks in a home of their own, with the program's own log lines led to nowhere and
/// the figures where standard output was.
int main(int argc, char* argv[])
{
    const orlimo::UniqueFd figures(::dup(STDOUT_FILENO));
    const orlimo::UniqueFd nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (!figures || !nowhere || ::dup2(nowhere.get(), STDOUT_FILENO) < 0) {
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const orlimo::TestSandbox sandbox;
    const QGuiApplication application(argc, argv);
    // The library's reporters write to this stream, the log lines to the descriptor itself.
    orlimo::DescriptorBuffer buffer(figures.get());
    std::streambuf* const before = std::cout.rdbuf(&buffer);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::cout.rdbuf(before);
    return 0;
}

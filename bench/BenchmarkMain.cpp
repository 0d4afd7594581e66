#include "tests/support/TestSandbox.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>

/// Runs the benchmarks in a home of their own. The program's log lines go to standard output:
/// figures are read from --benchmark_out.
int main(int argc, char* argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const orlimo::TestSandbox sandbox;
    const QGuiApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

#include <benchmark/benchmark.h>

#include <fstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

/// Runs the benchmarks with the program's own log lines led to nowhere, and the table where
/// standard output was.
int main(int argc, char* argv[])
{
    const int table = ::dup(STDOUT_FILENO);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (table < 0 || nowhere < 0 || ::dup2(nowhere, STDOUT_FILENO) < 0) {
        return 1;
    }
    std::ofstream stream("/dev/fd/" + std::to_string(table), std::ios::app);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_None);
    reporter.SetOutputStream(&stream);
    reporter.SetErrorStream(&stream);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}

#include "capture/CodeExtraction.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <string>
#include <string_view>

namespace orlimo {
namespace {

/// The rule with four digits allowed, which tries the most places.
constexpr std::string_view pattern = R"((?<!\d)\d{4,6}(?!\d))";

/// `part` over and over, as often as it fits into `length` bytes.
std::string repeated(std::string_view part, std::size_t length)
{
    std::string text;
    text.reserve(length);
    while (text.size() + part.size() <= length) {
        text += part;
    }
    return text;
}

/// Looks for codes in a text made of `part`: the time should grow with the length and nothing else.
void findCodes(benchmark::State& state, std::string_view part)
{
    const std::string text = repeated(part, static_cast<std::size_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(findNumbers(text, pattern));
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(text.size()) * static_cast<std::int64_t>(state.iterations()));
}

/// How many nanoseconds of processor time one byte takes where `text` is searched `times` times.
double nanosecondsPerByte(const std::string& text, int times)
{
    const std::clock_t before = std::clock();
    for (int done = 0; done < times; ++done) {
        benchmark::DoNotOptimize(findNumbers(text, pattern));
    }
    constexpr double nanoseconds = 1e9 / CLOCKS_PER_SEC;
    return static_cast<double>(std::clock() - before) * nanoseconds /
           (static_cast<double>(text.size()) * times);
}

/// Compares a text of that length with one of a sixteenth, which is searched as often as makes up
/// for it, half of that before and half after: what slows the processor slows both. The counters
/// are means over the iterations.
void compareLengths(benchmark::State& state, std::string_view part)
{
    constexpr int fraction = 16;
    const auto length = static_cast<std::size_t>(state.range(0));
    const std::string longText = repeated(part, length);
    const std::string shortText = repeated(part, length / fraction);
    double ofLong = 0;
    double ofShort = 0;
    while (state.KeepRunning()) {
        ofShort += nanosecondsPerByte(shortText, fraction / 2) / 2;
        ofLong += nanosecondsPerByte(longText, 1);
        ofShort += nanosecondsPerByte(shortText, fraction / 2) / 2;
    }
    state.counters["long_ns"] = {ofLong, benchmark::Counter::kAvgIterations};
    state.counters["short_ns"] = {ofShort, benchmark::Counter::kAvgIterations};
}

void longTextLengths(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("bytes")->Arg(160'000)->Arg(16'000'000)->Iterations(1);
}

// An enclosing keycap (U+20E3) on the last of five digits: each match ends inside a character and
// is left out.
constexpr std::string_view keycap = "77777\xE2\x83\xA3";
// The combining acute accent (U+0301), alone and in a long character after each code.
constexpr std::string_view accent = "\xCC\x81";
constexpr std::string_view codeAndAccents =
    "48291 \xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81";

#define ORLIMO_CODE_BENCHMARKS(name, part)                                                         \
    BENCHMARK_CAPTURE(findCodes, name, part)->ArgName("bytes")->Arg(100);                          \
    BENCHMARK_CAPTURE(compareLengths, name, part)->Apply(longTextLengths)
ORLIMO_CODE_BENCHMARKS(words, "lunch at noon? ");
ORLIMO_CODE_BENCHMARKS(codes, "482913 ");
ORLIMO_CODE_BENCHMARKS(digits, "7");
ORLIMO_CODE_BENCHMARKS(digitAndLetter, "7a");
ORLIMO_CODE_BENCHMARKS(threeDigitsAndLetter, "777a");
ORLIMO_CODE_BENCHMARKS(fullWidthDigits, "\xEF\xBC\x97");
ORLIMO_CODE_BENCHMARKS(keycaps, keycap);
ORLIMO_CODE_BENCHMARKS(combiningMarks, accent);
ORLIMO_CODE_BENCHMARKS(codesWithCombiningMarks, codeAndAccents);
#undef ORLIMO_CODE_BENCHMARKS

} // namespace
} // namespace orlimo

#include "capture/CodeExtraction.h"

#include <benchmark/benchmark.h>

#include <string>

namespace orlimo {
namespace {

constexpr std::string_view pattern = R"((?<!\d)\d{4,6}(?!\d))";

std::string repeated(std::string_view part, std::size_t length)
{
    std::string text;
    while (text.size() < length) {
        text += part;
    }
    return text;
}

/// Looks for codes in `part` over and over: the time should grow with the length and nothing else.
void findCodes(benchmark::State& state, std::string_view part)
{
    const std::string text = repeated(part, static_cast<std::size_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(findNumbers(text, pattern));
    }
    state.SetComplexityN(state.range(0));
    state.SetBytesProcessed(
        static_cast<std::int64_t>(text.size()) * static_cast<std::int64_t>(state.iterations()));
}

constexpr std::int64_t shortest = 100;
constexpr std::int64_t longest = 10'000'000;

BENCHMARK_CAPTURE(findCodes, words, "lunch at noon? ")
    ->RangeMultiplier(10)
    ->Range(shortest, longest)
    ->Complexity();
BENCHMARK_CAPTURE(findCodes, digits, "7")
    ->RangeMultiplier(10)
    ->Range(shortest, longest)
    ->Complexity();
BENCHMARK_CAPTURE(findCodes, digitAndLetter, "7a")
    ->RangeMultiplier(10)
    ->Range(shortest, longest)
    ->Complexity();
BENCHMARK_CAPTURE(findCodes, fullWidthDigits, "\xEF\xBC\x97")
    ->RangeMultiplier(10)
    ->Range(shortest, longest)
    ->Complexity();

} // namespace
} // namespace orlimo

#include "capture/CodeExtraction.h"

#include <benchmark/benchmark.h>

#include <string>

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
    state.SetComplexityN(state.range(0));
    state.SetBytesProcessed(
        static_cast<std::int64_t>(text.size()) * static_cast<std::int64_t>(state.iterations()));
}

void overLengthsOfTexts(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("bytes")->RangeMultiplier(10)->Range(100, 1'000'000)->Arg(16'000'000);
    benchmark->Complexity();
}

BENCHMARK_CAPTURE(findCodes, words, "lunch at noon? ")->Apply(overLengthsOfTexts);
BENCHMARK_CAPTURE(findCodes, codes, "482913 ")->Apply(overLengthsOfTexts);
BENCHMARK_CAPTURE(findCodes, digits, "7")->Apply(overLengthsOfTexts);
BENCHMARK_CAPTURE(findCodes, digitAndLetter, "7a")->Apply(overLengthsOfTexts);
BENCHMARK_CAPTURE(findCodes, threeDigitsAndLetter, "777a")->Apply(overLengthsOfTexts);
BENCHMARK_CAPTURE(findCodes, fullWidthDigits, "\xEF\xBC\x97")->Apply(overLengthsOfTexts);
// An enclosing keycap (U+20E3) on the last of five digits, so that each match ends inside a
// character and is left out.
BENCHMARK_CAPTURE(findCodes, keycaps, "77777\xE2\x83\xA3")->Apply(overLengthsOfTexts);
// Combining acute accents (U+0301) alone: characters without an end.
BENCHMARK_CAPTURE(findCodes, combiningMarks, "\xCC\x81")->Apply(overLengthsOfTexts);
// A match, and then a character that is long.
BENCHMARK_CAPTURE(
    findCodes,
    codesWithCombiningMarks,
    "48291 \xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81")
    ->Apply(overLengthsOfTexts);

} // namespace
} // namespace orlimo

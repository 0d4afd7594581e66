#include "capture/BodyDecoding.h"
#include "tests/capture/reference/RandomSource.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

namespace orlimo {
namespace {

/// The hexadecimal text of a body of `length` characters: a short string, and a rest of arbitrary
/// bytes.
std::string bodyOf(std::size_t length)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string body = "4E53537472696E67"
                       "019584012B"
                       "05"
                       "48656C6C6F";
    RandomSource randomSource(1);
    while (body.size() < length) {
        body.push_back(digits[randomSource.below(digits.size())]);
    }
    return body;
}

void setBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.range(0) * static_cast<std::int64_t>(state.iterations()));
}

void decodeBody(benchmark::State& state)
{
    const std::string body = bodyOf(static_cast<std::size_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(decodeAttributedBody(body));
    }
    setBytes(state);
}

/// The implementation by which the tests judge the one above.
void decodeBodyPlainly(benchmark::State& state)
{
    const std::string body = bodyOf(static_cast<std::size_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(referenceDecoding(body));
    }
    setBytes(state);
}

/// One pass of a byte copy over the same text, the floor for anything that reads it.
void copyBody(benchmark::State& state)
{
    const std::string body = bodyOf(static_cast<std::size_t>(state.range(0)));
    std::string copy(body.size(), '\0');
    while (state.KeepRunning()) {
        std::memcpy(copy.data(), body.data(), body.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    setBytes(state);
}

void bodyLengths(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("bytes")->RangeMultiplier(10)->Range(100, 1'000'000)->Arg(16'000'000);
}

BENCHMARK(decodeBody)->Apply(bodyLengths);
BENCHMARK(decodeBodyPlainly)->Apply(bodyLengths);
BENCHMARK(copyBody)->Apply(bodyLengths);

} // namespace
} // namespace orlimo

#include "capture/BodyDecoding.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

namespace orlimo {
namespace {

/// The hexadecimal text of a body of about `length` characters: a short string and a long rest.
std::string bodyOf(std::size_t length)
{
    std::string body = "4E53537472696E67"
                       "019584012B"
                       "05"
                       "48656C6C6F";
    while (body.size() < length) {
        body += "8684026949";
    }
    return body;
}

void decodeBody(benchmark::State& state)
{
    const std::string body = bodyOf(static_cast<std::size_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(decodeAttributedBody(body));
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(body.size()) * static_cast<std::int64_t>(state.iterations()));
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
    state.SetBytesProcessed(
        static_cast<std::int64_t>(body.size()) * static_cast<std::int64_t>(state.iterations()));
}

constexpr std::int64_t shortest = 100;
constexpr std::int64_t longest = 16'000'000;

BENCHMARK(decodeBody)->RangeMultiplier(10)->Range(shortest, longest);
BENCHMARK(copyBody)->RangeMultiplier(10)->Range(shortest, longest);

} // namespace
} // namespace orlimo

#include "bench/CheckedStore.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <vector>

namespace orlimo {
namespace {

/// Made when first asked for, and kept, for a large one takes its time.
CheckedStore& storeOf(std::int64_t number)
{
    static std::map<std::int64_t, CheckedStore> stores;
    return stores.try_emplace(number, number).first->second;
}

double medianMicroseconds(std::vector<std::chrono::nanoseconds> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return std::chrono::duration<double, std::micro>(*middle).count();
}

/// `read` once after each message that another connection delivers, as in use: a commit makes the
/// reader forget the pages that it knew. The counter is the median over the readings, which other
/// programs on the same processors disturb less than the mean.
void readStore(benchmark::State& state, void (CheckedStore::*read)(), WordsIn place)
{
    CheckedStore& store = storeOf(state.range(0));
    for (int delivered = 0; delivered < CheckedStore::examinedMessages; ++delivered) {
        store.deliver(place);
    }
    std::vector<std::chrono::nanoseconds> times;
    while (state.KeepRunning()) {
        store.deliver(place);
        const auto before = std::chrono::steady_clock::now();
        (store.*read)();
        const auto taken = std::chrono::steady_clock::now() - before;
        times.emplace_back(taken);
        state.SetIterationTime(std::chrono::duration<double>(taken).count());
    }
    state.counters["median_us"] = medianMicroseconds(std::move(times));

    const std::string plan = store.queryPlan();
    state.SetLabel(plan);
    if (plan != "SCAN message USING INDEX message_idx_date") {
        state.SkipWithError("the query does not follow the index of dates alone");
    }
}

// Each leaves a compiled statement behind, so that their number is limited.
constexpr std::int64_t readings = 300;

void overSizesOfStores(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("messages")->Arg(1'000)->Arg(100'000)->Arg(5'000'000);
    benchmark->UseManualTime()->Iterations(readings);
}

BENCHMARK_CAPTURE(readStore, checkText, &CheckedStore::check, WordsIn::text)
    ->Apply(overSizesOfStores);
BENCHMARK_CAPTURE(readStore, checkBody, &CheckedStore::check, WordsIn::body)
    ->Apply(overSizesOfStores);
BENCHMARK_CAPTURE(readStore, fetchText, &CheckedStore::fetch, WordsIn::text)
    ->Apply(overSizesOfStores);
BENCHMARK_CAPTURE(readStore, fetchBody, &CheckedStore::fetch, WordsIn::body)
    ->Apply(overSizesOfStores);

} // namespace
} // namespace orlimo

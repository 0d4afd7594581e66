#include "bench/CheckedStore.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace orlimo {
namespace {

using Times = std::vector<std::chrono::nanoseconds>;

/// Made when first asked for, and kept, for a large one takes its time.
CheckedStore& storeOf(std::int64_t number)
{
    static std::map<std::int64_t, CheckedStore> stores;
    return stores.try_emplace(number, number).first->second;
}

double medianMicroseconds(Times times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return std::chrono::duration<double, std::micro>(*middle).count();
}

/// `read` on stores of growing sizes in turn, each time after a message that another connection
/// delivers, as in use: a commit makes the reader forget the pages that it knew. The counters are
/// the medians over the readings of each store, which what else runs on the same processors
/// disturbs less than means, and all of them alike.
void readStores(benchmark::State& state, void (CheckedStore::*read)(), TextLocation location)
{
    std::map<std::int64_t, Times> timesBySize;
    for (const std::int64_t number : {1'000, 100'000, 5'000'000}) {
        if (number > state.range(0)) {
            break;
        }
        timesBySize.try_emplace(number);
        CheckedStore& store = storeOf(number);
        for (int delivered = 0; delivered < CheckedStore::maxCheckedMessages; ++delivered) {
            store.deliver(location);
        }
        (store.*read)();
        const std::string plan = store.queryPlan();
        if (plan != "SCAN message USING INDEX message_idx_date") {
            state.SkipWithError(("the query does not follow the index alone: " + plan).c_str());
            return;
        }
        state.SetLabel(plan);
    }
    while (state.KeepRunning()) {
        for (auto& [number, times] : timesBySize) {
            CheckedStore& store = storeOf(number);
            store.deliver(location);
            const auto before = std::chrono::steady_clock::now();
            (store.*read)();
            times.emplace_back(std::chrono::steady_clock::now() - before);
        }
    }
    for (const auto& [number, times] : timesBySize) {
        state.counters["us_" + std::to_string(number)] = medianMicroseconds(times);
    }
}

void storeSizes(benchmark::internal::Benchmark* benchmark)
{
    // Each reading leaves a compiled statement behind, so that their number is limited.
    constexpr std::int64_t readings = 300;
    benchmark->ArgName("largest")->Arg(100'000)->Arg(5'000'000)->Iterations(readings);
}

BENCHMARK_CAPTURE(readStores, checkText, &CheckedStore::check, TextLocation::text)
    ->Apply(storeSizes);
BENCHMARK_CAPTURE(readStores, checkBody, &CheckedStore::check, TextLocation::body)
    ->Apply(storeSizes);
BENCHMARK_CAPTURE(readStores, fetchText, &CheckedStore::fetch, TextLocation::text)
    ->Apply(storeSizes);
BENCHMARK_CAPTURE(readStores, fetchBody, &CheckedStore::fetch, TextLocation::body)
    ->Apply(storeSizes);

} // namespace
} // namespace orlimo

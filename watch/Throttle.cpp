#include "watch/Throttle.h"

#include "platform/process/FatalStop.h"
#include "platform/threads/MainThread.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace orlimo {

namespace {

std::chrono::milliseconds wholeMilliseconds(double seconds)
{
    const double product = seconds * 1000.0;
    // Written so that NaN fails too.
    if (!(product > -9223372036854777856.0 && product < 9223372036854775808.0)) {
        fatalStop("a throttle's delay is beyond what a time interval can hold");
    }
    return std::chrono::milliseconds(static_cast<std::int64_t>(product));
}

/// `time` + `interval`, clamped to the range of Uptime.
Uptime saturatingSum(Uptime time, std::chrono::milliseconds interval)
{
    using std::chrono::nanoseconds;
    constexpr std::int64_t perMillisecond = 1'000'000;
    const std::int64_t start = time.time_since_epoch().count();
    std::int64_t length = 0;
    std::int64_t sum = 0;
    if (__builtin_mul_overflow(interval.count(), perMillisecond, &length) ||
        __builtin_add_overflow(start, length, &sum))
    {
        return interval.count() < 0 ? Uptime::min() : Uptime::max();
    }
    return Uptime(nanoseconds(sum));
}

} // namespace

std::shared_ptr<Throttle>
Throttle::create(double delay, Queue& decisions, Queue& main, UptimeClock clock)
{
    return std::shared_ptr<Throttle>(new Throttle(delay, decisions, main, std::move(clock)));
}

Throttle::Throttle(double delayInSeconds, Queue& decisions, Queue& main, UptimeClock uptimeClock)
    : clock(std::move(uptimeClock))
    , lastFireTime(clock())
    , queue(decisions)
    , delay(wholeMilliseconds(delayInSeconds))
    , mainQueue(main)
{}

void Throttle::throttle(Action action)
{
    queue.async([throttle = weak_from_this(), action = std::move(action)]() mutable {
        if (const auto self = throttle.lock()) {
            self->decide(std::move(action));
        }
    });
}

void Throttle::decide(Action action)
{
    if (accept()) {
        mainQueue.async([action = std::move(action)] {
            if (!isMainThread()) {
                fatalStop("an accepted call runs outside the main thread");
            }
            action();
        });
    }
}

bool Throttle::accept()
{
    // The last acceptance is read before the clock: it is then never later than now, so that a zero
    // delay accepts every call even if two decisions overlap. The exchange lets only one of them
    // win.
    Uptime last = lastFireTime.load();
    for (;;) {
        const Uptime now = clock();
        if (now < saturatingSum(last, delay)) {
            return false;
        }
        if (lastFireTime.compare_exchange_strong(last, now)) {
            return true;
        }
    }
}

} // namespace orlimo

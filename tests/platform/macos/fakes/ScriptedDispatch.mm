#include "tests/platform/macos/fakes/ScriptedDispatch.h"

#include "platform/threads/macos/MainDispatchQueue.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <set>
#include <utility>

#include <Block.h>
#import <dispatch/dispatch.h>

struct dispatch_source_type_s
{};
const dispatch_source_type_s _dispatch_source_type_vnode{};
const dispatch_source_type_s _dispatch_source_type_timer{};

namespace orlimo {

namespace {

using Source = ScriptedDispatch::Source;
using Task = ScriptedDispatch::Task;

ScriptedDispatch& script = ScriptedDispatch::shared();

Source& sourceOf(dispatch_object_t object)
{
    return *reinterpret_cast<Source*>(object);
}

/// A queue handle points to its name.
template <typename Handle> Handle queueNamed(const std::string& name)
{
    static auto& names = *new std::set<std::string>;
    return reinterpret_cast<Handle>(const_cast<std::string*>(&*names.insert(name).first));
}

const std::string& nameOf(dispatch_queue_t queue)
{
    return *reinterpret_cast<const std::string*>(queue);
}

Source& recorded(const std::string& call, dispatch_object_t object)
{
    Source& source = sourceOf(object);
    if (!source.isTimer) {
        script.calls.push_back(call);
    }
    return source;
}

/// Wraps a copy of a block.
Task taskOf(dispatch_block_t block)
{
    const std::shared_ptr<void> copy(_Block_copy(block), _Block_release);
    return [copy] { reinterpret_cast<dispatch_block_t>(copy.get())(); };
}

/// Enqueues the event handler, which does not run if the source has been cancelled by then.
void enqueueEvent(Source& source)
{
    script.queues[source.queue].push_back([&source] {
        source.data = std::exchange(source.pending, 0);
        if (const Task handler = source.eventHandler; !source.cancelled) {
            handler();
        }
    });
}

void enqueueCancellation(Source& source)
{
    script.queues[source.queue].push_back([&source] {
        if (const auto handler = std::exchange(source.cancelHandler, {})) {
            handler();
        }
        source.eventHandler = {};
    });
}

} // namespace

ScriptedDispatch& ScriptedDispatch::shared()
{
    // Never destroyed: remaining handlers release their captures into it.
    static ScriptedDispatch& instance = *new ScriptedDispatch;
    return instance;
}

void ScriptedDispatch::reset()
{
    // Destroyed after the exchange: its handlers may call back into the new state.
    const ScriptedDispatch old = std::exchange(*this, {});
}

void ScriptedDispatch::run(const std::string& queue)
{
    for (auto& list = queues[queue]; !list.empty();) {
        const Task task = std::move(list.front());
        list.pop_front();
        task();
    }
}

void ScriptedDispatch::advance(std::chrono::nanoseconds span)
{
    now += span;
    for (Source& timer : sources) {
        if (timer.due && *timer.due <= now) {
            timer.due.reset();
            enqueueEvent(timer);
        }
    }
}

const ScriptedDispatch::Source* ScriptedDispatch::timer() const
{
    const auto found = std::ranges::find_if(sources, [](const Source& source) {
        return source.isTimer && !source.cancelled && !source.released;
    });
    return found == sources.end() ? nullptr : &*found;
}

void ScriptedDispatch::fire(std::uintptr_t events)
{
    Source& fired = sources.front();
    if (fired.active && !fired.cancelled &&
        std::exchange(fired.pending, fired.pending | events) == 0) {
        enqueueEvent(fired);
    }
}

bool isMainDispatchQueueDrained()
{
    return true; // by the test
}

} // namespace orlimo

using namespace orlimo;

void dispatch_retain(dispatch_object_t /*queue*/) {}

void dispatch_release(dispatch_object_t object)
{
    const auto isObject = [object](const Source& source) { return &source == &sourceOf(object); };
    if (std::ranges::any_of(script.sources, isObject)) { // no queue
        const bool isActive = sourceOf(object).active;
        recorded(isActive ? "release" : "release of an inactive source", object).released = true;
    }
}

void dispatch_activate(dispatch_object_t object)
{
    Source& source = recorded("activate", object);
    if (!std::exchange(source.active, true) && source.cancelled) {
        enqueueCancellation(source);
    }
}

dispatch_queue_main_t dispatch_get_main_queue()
{
    return queueNamed<dispatch_queue_main_t>("main");
}

dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags)
{
    return queueNamed<dispatch_queue_global_t>(
        "global " + std::to_string(identifier) + " " + std::to_string(flags));
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t)
{
    return queueNamed<dispatch_queue_t>(label);
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work)
{
    script.queues[nameOf(queue)].push_back([context, work] { work(context); });
}

dispatch_time_t dispatch_time(dispatch_time_t /*now*/, int64_t delta)
{
    return static_cast<dispatch_time_t>(script.now.time_since_epoch().count() + delta);
}

dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue)
{
    const bool isTimer = type == DISPATCH_SOURCE_TYPE_TIMER;
    if (!isTimer && mask == 0) {
        return nullptr;
    }
    script.sources.push_back(
        {.handle = handle, .mask = mask, .queue = nameOf(queue), .isTimer = isTimer});
    return reinterpret_cast<dispatch_source_t>(&script.sources.back());
}

void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler)
{
    recorded("set event handler", source).eventHandler = taskOf(handler);
}

void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler)
{
    recorded("set cancel handler", source).cancelHandler = taskOf(handler);
}

void dispatch_source_cancel(dispatch_source_t object)
{
    Source& source = recorded("cancel", object);
    source.due.reset();
    if (!std::exchange(source.cancelled, true) && source.active) {
        enqueueCancellation(source);
    }
}

void dispatch_source_set_timer(
    dispatch_source_t object, dispatch_time_t start, uint64_t interval, uint64_t leeway)
{
    if (interval != DISPATCH_TIME_FOREVER) {
        std::abort(); // only one-shot timers are supported
    }
    Source& timer = sourceOf(object);
    timer.due = Uptime(std::chrono::nanoseconds(start));
    timer.leeway = std::chrono::nanoseconds(leeway);
}

uintptr_t dispatch_source_get_data(dispatch_source_t source)
{
    return sourceOf(source).data;
}

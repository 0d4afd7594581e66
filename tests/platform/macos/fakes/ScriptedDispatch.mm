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

ScriptedDispatch& ScriptedDispatch::shared()
{
    // Never destroyed: remaining handlers release their captures into it.
    static ScriptedDispatch& script = *new ScriptedDispatch;
    return script;
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
            queues[timer.queue].push_back([&timer] {
                const Task handler = timer.eventHandler;
                if (!timer.cancelled) {
                    handler();
                }
            });
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
    if (!fired.active || fired.cancelled ||
        std::exchange(fired.pending, fired.pending | events) != 0) {
        return;
    }
    queues[fired.queue].push_back([&fired] {
        fired.data = std::exchange(fired.pending, 0);
        if (!fired.cancelled) {
            const Task handler = fired.eventHandler;
            handler();
        }
    });
}

bool isMainDispatchQueueDrained()
{
    return true; // by the test
}

namespace {

/// The source behind a dispatch object; null for a queue.
ScriptedDispatch::Source* sourceBehind(dispatch_object_t object)
{
    for (auto& source : ScriptedDispatch::shared().sources) {
        if (reinterpret_cast<dispatch_object_t>(&source) == object) {
            return &source;
        }
    }
    return nullptr;
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

ScriptedDispatch::Source& recorded(const std::string& call, dispatch_object_t object)
{
    auto& source = *sourceBehind(object);
    if (!source.isTimer) {
        ScriptedDispatch::shared().calls.push_back(call);
    }
    return source;
}

/// Wraps a copy of a block.
ScriptedDispatch::Task taskOf(dispatch_block_t block)
{
    const std::shared_ptr<void> copy(_Block_copy(block), _Block_release);
    return [copy] { reinterpret_cast<dispatch_block_t>(copy.get())(); };
}

/// Enqueues the cancel handler of an active, cancelled source.
void announceCancellation(ScriptedDispatch::Source& source)
{
    ScriptedDispatch::shared().queues[source.queue].push_back([&source] {
        if (const auto handler = std::exchange(source.cancelHandler, {})) {
            handler();
        }
        source.eventHandler = {};
    });
}

} // namespace

} // namespace orlimo

using namespace orlimo;

void dispatch_retain(dispatch_object_t /*queue*/) {}

void dispatch_release(dispatch_object_t object)
{
    if (const auto* const source = sourceBehind(object)) {
        recorded(source->active ? "release" : "release of an inactive source", object).released =
            true;
    }
}

void dispatch_activate(dispatch_object_t object)
{
    auto& source = recorded("activate", object);
    if (!std::exchange(source.active, true) && source.cancelled) {
        announceCancellation(source);
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
    ScriptedDispatch::shared().queues[nameOf(queue)].push_back([context, work] { work(context); });
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta)
{
    const auto now = ScriptedDispatch::shared().now.time_since_epoch().count();
    return (when == DISPATCH_TIME_NOW ? static_cast<dispatch_time_t>(now) : when) +
           static_cast<dispatch_time_t>(delta);
}

dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue)
{
    auto& script = ScriptedDispatch::shared();
    if (type == DISPATCH_SOURCE_TYPE_VNODE && mask == 0) {
        return nullptr;
    }
    script.sources.push_back(
        {.handle = handle,
         .mask = mask,
         .queue = nameOf(queue),
         .isTimer = type == DISPATCH_SOURCE_TYPE_TIMER});
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
    auto& source = recorded("cancel", object);
    source.due.reset();
    if (!std::exchange(source.cancelled, true) && source.active) {
        announceCancellation(source);
    }
}

void dispatch_source_set_timer(
    dispatch_source_t object, dispatch_time_t start, uint64_t interval, uint64_t leeway)
{
    if (interval != DISPATCH_TIME_FOREVER) {
        std::abort(); // only one-shot timers are supported
    }
    auto& timer = *sourceBehind(object);
    timer.due = Uptime(std::chrono::nanoseconds(start));
    timer.leeway = std::chrono::nanoseconds(leeway);
}

uintptr_t dispatch_source_get_data(dispatch_source_t source)
{
    return sourceBehind(source)->data;
}

#include "tests/platform/macos/fakes/ScriptedDispatch.h"

#include "platform/macos/MainDispatchQueue.h"
#include "tests/platform/macos/fakes/BlockTask.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#import <dispatch/dispatch.h>
#include <unistd.h>

struct dispatch_source_type_s
{};
const dispatch_source_type_s _dispatch_source_type_vnode{};
const dispatch_source_type_s _dispatch_source_type_timer{};

namespace orlimo {

ScriptedDispatch& ScriptedDispatch::shared()
{
    // Never destroyed, nor are the queues: handlers that are still held release what they hold
    // here.
    static ScriptedDispatch& script = *new ScriptedDispatch;
    return script;
}

void ScriptedDispatch::note(const std::string& name, std::uintptr_t handle)
{
    calls.push_back({name, ::lseek(static_cast<int>(handle), 0, SEEK_CUR)});
}

std::vector<std::string> ScriptedDispatch::namesOfCalls() const
{
    std::vector<std::string> names;
    names.reserve(calls.size());
    for (const Call& call : calls) {
        names.push_back(call.name);
    }
    return names;
}

std::vector<long> ScriptedDispatch::positionsAtCalls() const
{
    std::vector<long> positions;
    positions.reserve(calls.size());
    for (const Call& call : calls) {
        positions.push_back(call.position);
    }
    return positions;
}

std::size_t ScriptedDispatch::run(const std::string& queue)
{
    std::size_t number = 0;
    for (auto& list = queues[queue]; !list.empty(); ++number) {
        const Task task = std::move(list.front());
        list.pop_front();
        task();
    }
    return number;
}

void ScriptedDispatch::advance(std::chrono::nanoseconds span)
{
    time += span;
    for (Source& timer : sources) {
        if (timer.due && *timer.due <= time) {
            timer.due.reset();
            add(timer.queue, [&timer] {
                const Task handler = timer.eventHandler;
                if (!timer.cancelled) {
                    handler();
                }
            });
        }
    }
}

UptimeClock ScriptedDispatch::clock() const
{
    return [this] { return now(); };
}

std::vector<std::chrono::nanoseconds> ScriptedDispatch::delays() const
{
    std::vector<std::chrono::nanoseconds> spans;
    for (const Source& timer : timers()) {
        if (timer.due) {
            spans.push_back(*timer.due - time);
        }
    }
    return spans;
}

std::vector<ScriptedDispatch::Source> ScriptedDispatch::timers() const
{
    std::vector<Source> living;
    std::ranges::copy_if(sources, std::back_inserter(living), [](const Source& source) {
        return source.isTimer && !source.cancelled && source.references > 0;
    });
    return living;
}

std::size_t ScriptedDispatch::addSource(Source source)
{
    sources.push_back(std::move(source));
    return sources.size() - 1;
}

void ScriptedDispatch::setTimer(std::size_t number, Uptime when, std::chrono::nanoseconds leeway)
{
    Source& timer = sources.at(number);
    timer.due = when;
    timer.leeway = leeway;
}

void ScriptedDispatch::fire(std::uintptr_t events, std::size_t number)
{
    Source& fired = sources.at(number);
    if (!fired.active || fired.cancelled) {
        return;
    }
    if (std::exchange(fired.pending, fired.pending | events) != 0) {
        return;
    }
    add(fired.queue, [this, number] {
        Source& running = sources.at(number);
        running.data = std::exchange(running.pending, 0);
        if (!running.cancelled) {
            const Task handler = running.eventHandler;
            handler();
        }
    });
}

void ScriptedDispatch::cancel(std::size_t number)
{
    Source& ending = sources.at(number);
    ending.due.reset();
    if (!std::exchange(ending.cancelled, true) && ending.active) {
        addCancellation(number);
    }
}

void ScriptedDispatch::activate(std::size_t number)
{
    Source& beginning = sources.at(number);
    if (!std::exchange(beginning.active, true) && beginning.cancelled) {
        addCancellation(number);
    }
}

void ScriptedDispatch::addCancellation(std::size_t number)
{
    add(sources.at(number).queue, [this, number] {
        Source& ended = sources.at(number);
        if (const Task handler = std::exchange(ended.cancelHandler, {})) {
            handler();
        }
        ended.eventHandler = {};
    });
}

namespace {

/// What a dispatch_object_t points to: a queue's name, or a source's number.
struct Object
{
    std::string queue;
    std::size_t source = 0;
};

Object& objectBehind(dispatch_object_t object)
{
    return *reinterpret_cast<Object*>(object);
}

template <typename Handle> Handle queueNamed(const std::string& name)
{
    static auto& objects = *new std::map<std::string, Object>;
    return reinterpret_cast<Handle>(&objects.try_emplace(name, Object{name, 0}).first->second);
}

ScriptedDispatch::Source& sourceBehind(dispatch_source_t source)
{
    return ScriptedDispatch::shared().source(objectBehind(source).source);
}

/// A timer's calls are not noted.
void note(const std::string& call, dispatch_object_t object)
{
    auto& script = ScriptedDispatch::shared();
    const auto& source = script.source(objectBehind(object).source);
    if (!source.isTimer) {
        script.note(call, source.handle);
    }
}

} // namespace

bool isMainDispatchQueueDrained()
{
    return true; // by the test
}

} // namespace orlimo

using orlimo::note;
using orlimo::Object;
using orlimo::objectBehind;
using orlimo::queueNamed;
using orlimo::ScriptedDispatch;
using orlimo::sourceBehind;
using orlimo::taskOf;
using orlimo::Uptime;

void dispatch_retain(dispatch_object_t object)
{
    if (objectBehind(object).queue.empty()) {
        ++ScriptedDispatch::shared().source(objectBehind(object).source).references;
    }
}

void dispatch_release(dispatch_object_t object)
{
    Object& released = objectBehind(object);
    if (!released.queue.empty()) {
        return;
    }
    auto& source = ScriptedDispatch::shared().source(released.source);
    note(source.active ? "release" : "release of an inactive source", object);
    if (--source.references == 0) {
        delete &released;
    }
}

void dispatch_activate(dispatch_object_t object)
{
    note("activate", object);
    ScriptedDispatch::shared().activate(objectBehind(object).source);
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
    ScriptedDispatch::shared().add(objectBehind(queue).queue, [context, work] { work(context); });
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta)
{
    const auto now = ScriptedDispatch::shared().now().time_since_epoch().count();
    return (when == DISPATCH_TIME_NOW ? static_cast<dispatch_time_t>(now) : when) +
           static_cast<dispatch_time_t>(delta);
}

dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue)
{
    auto& script = ScriptedDispatch::shared();
    if (type == DISPATCH_SOURCE_TYPE_TIMER) {
        const std::size_t number = script.addSource(
            {.queue = objectBehind(queue).queue,
             .isTimer = true,
             .isStrict = mask == DISPATCH_TIMER_STRICT});
        return reinterpret_cast<dispatch_source_t>(new Object{"", number});
    }
    script.note("create", handle);
    if (type != DISPATCH_SOURCE_TYPE_VNODE || mask == 0) {
        return nullptr;
    }
    const std::size_t number =
        script.addSource({.handle = handle, .mask = mask, .queue = objectBehind(queue).queue});
    return reinterpret_cast<dispatch_source_t>(new Object{"", number});
}

void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler)
{
    note("set event handler", source);
    sourceBehind(source).eventHandler = taskOf(handler);
}

void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler)
{
    note("set cancel handler", source);
    sourceBehind(source).cancelHandler = taskOf(handler);
}

void dispatch_source_cancel(dispatch_source_t source)
{
    note("cancel", source);
    ScriptedDispatch::shared().cancel(objectBehind(source).source);
}

void dispatch_source_set_timer(
    dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t leeway)
{
    if (interval != DISPATCH_TIME_FOREVER) {
        std::abort(); // one firing each time is all that is known here
    }
    ScriptedDispatch::shared().setTimer(
        objectBehind(source).source,
        Uptime(std::chrono::nanoseconds(start)),
        std::chrono::nanoseconds(leeway));
}

uintptr_t dispatch_source_get_data(dispatch_source_t source)
{
    return sourceBehind(source).data;
}

#include "tests/platform/macos/fakes/ScriptedDispatch.h"

#include "platform/macos/MainDispatchQueue.h"
#include "tests/platform/macos/fakes/BlockTask.h"

#include <utility>

#import <dispatch/dispatch.h>
#include <unistd.h>

struct dispatch_source_type_s
{};
const dispatch_source_type_s _dispatch_source_type_vnode{};

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

void ScriptedDispatch::addAfter(Uptime when, const std::string& queue, Task task)
{
    later.emplace(when, std::pair(queue, std::move(task)));
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
    while (!later.empty() && later.begin()->first <= time) {
        auto [queue, task] = later.begin()->second;
        later.erase(later.begin());
        add(queue, std::move(task));
    }
}

UptimeClock ScriptedDispatch::clock() const
{
    return [this] { return now(); };
}

std::vector<std::chrono::nanoseconds> ScriptedDispatch::delays() const
{
    std::vector<std::chrono::nanoseconds> spans;
    spans.reserve(later.size());
    for (const auto& entry : later) {
        spans.push_back(entry.first - time);
    }
    return spans;
}

std::size_t ScriptedDispatch::addSource(Source source)
{
    sources.push_back(std::move(source));
    return sources.size() - 1;
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
        const Task handler = std::exchange(ended.cancelHandler, {});
        handler();
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

void note(const std::string& call, dispatch_object_t source)
{
    auto& script = ScriptedDispatch::shared();
    script.note(call, script.source(objectBehind(source).source).handle);
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

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block)
{
    ScriptedDispatch::shared().addAfter(
        Uptime(std::chrono::nanoseconds(when)), objectBehind(queue).queue, taskOf(block));
}

dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue)
{
    ScriptedDispatch::shared().note("create", handle);
    if (type != DISPATCH_SOURCE_TYPE_VNODE || mask == 0) {
        return nullptr;
    }
    const std::size_t number = ScriptedDispatch::shared().addSource(
        {.handle = handle, .mask = mask, .queue = objectBehind(queue).queue});
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

uintptr_t dispatch_source_get_data(dispatch_source_t source)
{
    return sourceBehind(source).data;
}

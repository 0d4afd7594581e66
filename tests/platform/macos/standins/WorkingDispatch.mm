// A dispatch library that works: queues on threads, times on the host's clock, vnode sources on
// the host's own notifications. The main queue runs when it is drained.

#include "tests/platform/macos/standins/WorkingDispatch.h"

#include "tests/platform/macos/standins/BlockTask.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#import <dispatch/dispatch.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

struct dispatch_source_type_s
{};
const dispatch_source_type_s _dispatch_source_type_vnode{};
const dispatch_source_type_s _dispatch_source_type_timer{};

namespace orlimo {

namespace {

using Task = std::function<void()>;
using std::chrono::steady_clock;

/// What a dispatch_object_t points to.
class Object
{
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    void retain() { ++references; }
    void release()
    {
        if (--references == 0) {
            retire();
        }
    }
    virtual void activate() {}

protected:
    virtual ~Object() = default;

private:
    /// Nobody refers to the object any more.
    virtual void retire() = 0;

    std::atomic<int> references = 1;
};

template <typename Kind> Kind* objectBehind(dispatch_object_t object)
{
    return static_cast<Kind*>(reinterpret_cast<Object*>(object));
}

template <typename Handle> Handle handleOf(Object* object)
{
    return reinterpret_cast<Handle>(object);
}

class WorkQueue : public Object
{
public:
    virtual void add(Task task) = 0;
};

class MainWorkQueue final : public WorkQueue
{
public:
    void add(Task task) override
    {
        const std::lock_guard guard(mutex);
        list.push_back(std::move(task));
        (void)::eventfd_write(event, 1);
    }

    std::size_t drain()
    {
        eventfd_t count = 0;
        (void)::eventfd_read(event, &count);
        std::size_t number = 0;
        for (Task task = takeFirst(); task; task = takeFirst()) {
            task();
            ++number;
        }
        return number;
    }

    [[nodiscard]] int handle() const { return event; }

private:
    Task takeFirst()
    {
        const std::lock_guard guard(mutex);
        if (list.empty()) {
            return {};
        }
        Task first = std::move(list.front());
        list.pop_front();
        return first;
    }

    void retire() override {}

    const int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::mutex mutex;
    std::deque<Task> list;
};

/// Runs work on threads, which are started when they are needed and stay until the queue goes.
class ThreadWorkQueue final : public WorkQueue
{
public:
    ThreadWorkQueue(std::size_t most, int nicenessOfThreads)
        : mostThreads(most)
        , niceness(nicenessOfThreads)
    {}

    void add(Task task) override
    {
        const std::lock_guard guard(mutex);
        list.push_back(std::move(task));
        if (idle < list.size() && threads < mostThreads) {
            ++threads;
            std::thread([this] { run(); }).detach();
        }
        changed.notify_one();
    }

private:
    void run()
    {
        if (niceness != 0) {
            (void)::setpriority(PRIO_PROCESS, 0, niceness);
        }
        std::unique_lock guard(mutex);
        while (awaitTask(guard)) {
            Task task = std::move(list.front());
            list.pop_front();
            guard.unlock();
            task();
            task = nullptr;
            guard.lock();
        }
        const bool isLast = --threads == 0;
        guard.unlock();
        if (isLast) {
            delete this;
        }
    }

    bool awaitTask(std::unique_lock<std::mutex>& guard)
    {
        ++idle;
        changed.wait(guard, [this] { return retired || !list.empty(); });
        --idle;
        return !list.empty();
    }

    void retire() override
    {
        std::unique_lock guard(mutex);
        retired = true;
        changed.notify_all();
        if (threads == 0) {
            guard.unlock();
            delete this;
        }
    }

    const std::size_t mostThreads;
    const int niceness;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> list;
    std::size_t threads = 0;
    std::size_t idle = 0;
    bool retired = false;
};

/// Adds work to queues when its time has come.
class Timers
{
public:
    void add(steady_clock::time_point when, WorkQueue* queue, Task task)
    {
        queue->retain();
        const std::lock_guard guard(mutex);
        list.emplace(when, std::pair(queue, std::move(task)));
        if (!std::exchange(running, true)) {
            std::thread([this] { run(); }).detach();
        }
        changed.notify_one();
    }

private:
    void run()
    {
        std::unique_lock guard(mutex);
        for (;;) {
            if (list.empty()) {
                changed.wait(guard);
            } else if (const auto first = list.begin()->first; first > steady_clock::now()) {
                changed.wait_until(guard, first);
            } else {
                auto [queue, task] = std::move(list.begin()->second);
                list.erase(list.begin());
                guard.unlock();
                queue->add(std::move(task));
                queue->release();
                guard.lock();
            }
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::multimap<steady_clock::time_point, std::pair<WorkQueue*, Task>> list;
    bool running = false;
};

class Source : public Object
{
public:
    void setEventHandler(Task task) { eventHandler = std::move(task); }
    virtual void cancel() = 0;

protected:
    Task eventHandler;
};

/// Reports the growth of an open file, from the moment when it is activated on.
class FileSource final : public Source
{
public:
    FileSource(int fileDescriptor, WorkQueue* targetQueue)
        : descriptor(fileDescriptor)
        , queue(targetQueue)
    {
        queue->retain();
    }

    void setCancelHandler(Task task) { cancelHandler = std::move(task); }
    [[nodiscard]] unsigned data() const { return delivered; }

    void activate() override
    {
        const std::lock_guard guard(mutex);
        if (std::exchange(active, true)) {
            return;
        }
        if (cancelled) {
            addCancellation();
            return;
        }
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        (void)::inotify_add_watch(notifications, link.c_str(), IN_MODIFY);
        watcher = std::thread([this, size = presentSize()] { watch(size); });
    }

    void cancel() override
    {
        const std::lock_guard guard(mutex);
        if (cancelled.exchange(true) || !active) {
            return;
        }
        stopWatching();
        addCancellation();
    }

private:
    ~FileSource() override
    {
        ::close(notifications);
        ::close(stop);
        queue->release();
    }

    void retire() override
    {
        if (!active) {
            (void)std::fputs("an inactive dispatch object is released\n", stderr);
            std::abort();
        }
        stopWatching();
        delete this;
    }

    [[nodiscard]] off_t presentSize() const
    {
        struct stat status
        {};
        return ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
    }

    void watch(off_t size)
    {
        std::array<pollfd, 2> awaited{pollfd{notifications, POLLIN, 0}, pollfd{stop, POLLIN, 0}};
        while (::poll(awaited.data(), awaited.size(), -1) < 0 || awaited[1].revents == 0) {
            alignas(inotify_event) std::array<char, 4096> events{};
            while (::read(notifications, events.data(), events.size()) > 0) {
            }
            const off_t present = presentSize();
            if (std::exchange(size, present) < present) {
                merge(DISPATCH_VNODE_EXTEND);
            }
        }
    }

    void merge(unsigned events)
    {
        if (pending.fetch_or(events) == 0) {
            retain();
            queue->add([this] {
                fire();
                release();
            });
        }
    }

    void fire()
    {
        const unsigned events = pending.exchange(0);
        if (!cancelled && eventHandler) {
            delivered = events;
            eventHandler();
        }
    }

    void stopWatching()
    {
        if (watcher.joinable()) {
            (void)::eventfd_write(stop, 1);
            watcher.join();
        }
    }

    void addCancellation()
    {
        retain();
        queue->add([this] {
            if (cancelHandler) {
                cancelHandler();
            }
            cancelHandler = nullptr;
            eventHandler = nullptr;
            release();
        });
    }

    const int descriptor;
    WorkQueue* const queue;
    const int notifications = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    const int stop = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    Task cancelHandler;
    std::mutex mutex;
    std::thread watcher;
    bool active = false;
    std::atomic<bool> cancelled = false;
    std::atomic<unsigned> pending = 0;
    unsigned delivered = 0;
};

// None of these is ever destroyed: threads use them until the process ends.

MainWorkQueue& mainWorkQueue()
{
    static auto* const queue = new MainWorkQueue;
    return *queue;
}

WorkQueue& backgroundWorkQueue()
{
    constexpr int backgroundNiceness = 10;
    static auto* const queue =
        new ThreadWorkQueue(std::max(2U, std::thread::hardware_concurrency()), backgroundNiceness);
    return *queue;
}

Timers& timers()
{
    static auto* const made = new Timers;
    return *made;
}

/// Fires once each time that it is set. Set and cancelled on its queue.
class TimerSource final : public Source
{
public:
    explicit TimerSource(WorkQueue* targetQueue)
        : queue(targetQueue)
    {
        queue->retain();
    }

    void set(steady_clock::time_point when)
    {
        retain();
        timers().add(when, queue, [this, setting = ++settings] {
            if (setting == settings && eventHandler) {
                const Task handler = eventHandler;
                handler();
            }
            release();
        });
    }

    void cancel() override
    {
        ++settings;
        eventHandler = nullptr;
    }

private:
    ~TimerSource() override { queue->release(); }
    void retire() override { delete this; }

    WorkQueue* const queue;
    int settings = 0;
};

} // namespace

int mainDispatchQueueHandle()
{
    return mainWorkQueue().handle();
}

std::size_t drainMainDispatchQueue()
{
    return mainWorkQueue().drain();
}

} // namespace orlimo

using orlimo::backgroundWorkQueue;
using orlimo::FileSource;
using orlimo::handleOf;
using orlimo::mainWorkQueue;
using orlimo::Object;
using orlimo::objectBehind;
using orlimo::Source;
using orlimo::taskOf;
using orlimo::ThreadWorkQueue;
using orlimo::TimerSource;
using orlimo::WorkQueue;
using std::chrono::steady_clock;

void dispatch_retain(dispatch_object_t object)
{
    objectBehind<Object>(object)->retain();
}

void dispatch_release(dispatch_object_t object)
{
    objectBehind<Object>(object)->release();
}

void dispatch_activate(dispatch_object_t object)
{
    objectBehind<Object>(object)->activate();
}

dispatch_queue_main_t dispatch_get_main_queue()
{
    return handleOf<dispatch_queue_main_t>(&mainWorkQueue());
}

dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags)
{
    return identifier == QOS_CLASS_BACKGROUND && flags == 0
               ? handleOf<dispatch_queue_global_t>(&backgroundWorkQueue())
               : nullptr;
}

dispatch_queue_t dispatch_queue_create(const char*, dispatch_queue_attr_t)
{
    return handleOf<dispatch_queue_t>(new ThreadWorkQueue(1, 0));
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work)
{
    objectBehind<WorkQueue>(queue)->add([context, work] { work(context); });
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta)
{
    const auto start =
        when == DISPATCH_TIME_NOW
            ? static_cast<int64_t>(
                  std::chrono::nanoseconds(steady_clock::now().time_since_epoch()).count())
            : static_cast<int64_t>(when);
    return static_cast<dispatch_time_t>(start + delta);
}

dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue)
{
    constexpr uintptr_t everyEvent = 0x1ff;
    if (type == DISPATCH_SOURCE_TYPE_TIMER) {
        return handleOf<dispatch_source_t>(new TimerSource(objectBehind<WorkQueue>(queue)));
    }
    if (type != DISPATCH_SOURCE_TYPE_VNODE || handle > INT32_MAX || mask == 0 ||
        (mask & ~everyEvent) != 0)
    {
        return nullptr;
    }
    return handleOf<dispatch_source_t>(
        new FileSource(static_cast<int>(handle), objectBehind<WorkQueue>(queue)));
}

void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler)
{
    objectBehind<Source>(source)->setEventHandler(taskOf(handler));
}

void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler)
{
    objectBehind<FileSource>(source)->setCancelHandler(taskOf(handler));
}

void dispatch_source_cancel(dispatch_source_t source)
{
    objectBehind<Source>(source)->cancel();
}

void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t, uint64_t)
{
    objectBehind<TimerSource>(source)->set(
        steady_clock::time_point(std::chrono::nanoseconds(start)));
}

uintptr_t dispatch_source_get_data(dispatch_source_t source)
{
    return objectBehind<FileSource>(source)->data();
}

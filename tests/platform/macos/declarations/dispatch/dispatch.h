// The dispatch library as far as it is used, in the form that the system's headers have for C++:
// objects are opaque and have their subtypes.
#pragma once

#include <stdint.h>
#include <sys/qos.h>

#ifndef __BLOCKS__
#error "the dispatch library's declarations need blocks"
#endif

/// Dispatch, macOS 10.6: what is counted by references.
typedef struct dispatch_object_s
{
private:
    dispatch_object_s();
    ~dispatch_object_s();
    dispatch_object_s(const dispatch_object_s&);
    void operator=(const dispatch_object_s&);
} * dispatch_object_t;

/// Dispatch, macOS 10.6
typedef struct dispatch_queue_s : public dispatch_object_s{} * dispatch_queue_t;

/// Dispatch, macOS 10.14: subtypes of the queue.
typedef struct dispatch_queue_global_s : public dispatch_queue_s{} * dispatch_queue_global_t;
typedef struct dispatch_queue_serial_s : public dispatch_queue_s{} * dispatch_queue_serial_t;
typedef struct dispatch_queue_main_s : public dispatch_queue_serial_s{} * dispatch_queue_main_t;

/// Dispatch, macOS 10.6
typedef struct dispatch_queue_attr_s : public dispatch_object_s{} * dispatch_queue_attr_t;
typedef struct dispatch_source_s : public dispatch_object_s{} * dispatch_source_t;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
typedef void (^dispatch_block_t)(void);
typedef void (*dispatch_function_t)(void*);
typedef uint64_t dispatch_time_t;

extern "C" {

/// Dispatch, macOS 10.6
void dispatch_retain(dispatch_object_t object);
void dispatch_release(dispatch_object_t object);

/// Dispatch, macOS 10.12: begins the work of an object that was made inactive, such as a source;
/// does nothing to one that is active. An inactive object must not be released for the last time.
void dispatch_activate(dispatch_object_t object);

/// Dispatch, macOS 10.6: the queue of the main thread's event loop.
dispatch_queue_main_t dispatch_get_main_queue(void);

/// Dispatch, macOS 10.6; by the class of its quality of service from macOS 10.10 on. The flags are
/// 0.
dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);

/// Dispatch, macOS 10.6: a queue whose label is copied; its reference is the caller's.
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes);

/// Dispatch, macOS 10.7: the attributes of a queue that runs one block at a time.
#define DISPATCH_QUEUE_SERIAL nullptr

/// Dispatch, macOS 10.6
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);

/// Dispatch, macOS 10.6
#define DISPATCH_TIME_NOW 0ULL
/// Dispatch, macOS 10.6: `delta` nanoseconds after `when` on the clock that stands still while the
/// machine sleeps.
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
/// Dispatch, macOS 10.6
#define DISPATCH_TIME_FOREVER (~0ULL)

/// Dispatch, macOS 10.6
extern const struct dispatch_source_type_s _dispatch_source_type_vnode;
#define DISPATCH_SOURCE_TYPE_VNODE (&_dispatch_source_type_vnode)
#define DISPATCH_VNODE_EXTEND 0x4

/// Dispatch, macOS 10.6: the handle is 0, the mask flags of the timer.
extern const struct dispatch_source_type_s _dispatch_source_type_timer;
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
/// Dispatch, macOS 10.9: the system keeps to the leeway even where it would make it longer.
#define DISPATCH_TIMER_STRICT 0x1

/// Dispatch, macOS 10.6: an inactive source, whose reference is the caller's; null for a handle or
/// a mask that the type does not have.
dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue);

/// Dispatch, macOS 10.6
void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler);

/// Dispatch, macOS 10.6: the timer's next firing, the interval between those after it
/// (DISPATCH_TIME_FOREVER: none), and how many nanoseconds late they may be. Replaces what was set.
void dispatch_source_set_timer(
    dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t leeway);

/// Dispatch, macOS 10.6: runs once when the source is cancelled and the system has let go of its
/// handle.
void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler);

/// Dispatch, macOS 10.6
void dispatch_source_cancel(dispatch_source_t source);

/// Dispatch, macOS 10.6: for a vnode source, what has happened to the file since the event handler
/// last began. Inside the event handler.
uintptr_t dispatch_source_get_data(dispatch_source_t source);

} // extern "C"

// The dispatch library as far as it is used, in the form that the system's headers have for C++:
// objects are opaque and have their subtypes.
#pragma once

#include <stdint.h>
#include <sys/qos.h>

#ifndef __BLOCKS__
#error "the dispatch library's declarations need blocks"
#endif

typedef struct dispatch_object_s
{
} * dispatch_object_t;
typedef struct dispatch_queue_s : public dispatch_object_s{} * dispatch_queue_t;
typedef struct dispatch_queue_global_s : public dispatch_queue_s{} * dispatch_queue_global_t;
typedef struct dispatch_queue_main_s : public dispatch_queue_s{} * dispatch_queue_main_t;
typedef struct dispatch_queue_attr_s : public dispatch_object_s{} * dispatch_queue_attr_t;
typedef struct dispatch_source_s : public dispatch_object_s{} * dispatch_source_t;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
typedef void (^dispatch_block_t)(void);
typedef void (*dispatch_function_t)(void*);
typedef uint64_t dispatch_time_t;

#define DISPATCH_QUEUE_SERIAL nullptr
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
#define DISPATCH_SOURCE_TYPE_VNODE (&_dispatch_source_type_vnode)
#define DISPATCH_TIMER_STRICT 0x1
#define DISPATCH_TIME_FOREVER (~0ULL)
#define DISPATCH_TIME_NOW 0ULL
#define DISPATCH_VNODE_EXTEND 0x4

extern "C" {

extern const struct dispatch_source_type_s _dispatch_source_type_timer;
extern const struct dispatch_source_type_s _dispatch_source_type_vnode;

void dispatch_retain(dispatch_object_t object);
void dispatch_release(dispatch_object_t object);
/// An object that was never activated must not be released for the last time.
void dispatch_activate(dispatch_object_t object);

dispatch_queue_main_t dispatch_get_main_queue(void);
dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);

/// `delta` nanoseconds after `when` on the clock that stands still while the machine sleeps.
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);

/// An inactive source; null for a handle or a mask that the type does not have.
dispatch_source_t dispatch_source_create(
    dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t queue);
void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler);
void dispatch_source_set_timer(
    dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t leeway);
/// Runs once when the source is cancelled and the system has let go of its handle.
void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler);
void dispatch_source_cancel(dispatch_source_t source);
/// Inside the event handler of a vnode source: what has happened to the file since the last one.
uintptr_t dispatch_source_get_data(dispatch_source_t source);

} // extern "C"

#pragma once

#include "platform/process/macos/Retained.h"

#include <functional>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Calls a function once the thread's run loop runs in its default mode: not from the loops that
/// AppKit runs in other modes meanwhile, such as the one that follows the mouse from the press of a
/// button to its release. Used and destroyed on one thread, on which it calls.
class DefaultModeCall
{
public:
    explicit DefaultModeCall(std::function<void()> function);
    DefaultModeCall(const DefaultModeCall&) = delete;
    DefaultModeCall& operator=(const DefaultModeCall&) = delete;
    /// A call that is scheduled is dropped.
    ~DefaultModeCall();

    /// Requests a call; requests before it are merged. Returns at once.
    void schedule();

private:
    void cancel();

    std::function<void()> called;
    Retained<NSObject*> target;
};

} // namespace orlimo

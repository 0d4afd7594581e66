#pragma once

namespace orlimo {

/// Receives the lifecycle events of the application. Main thread.
class ApplicationDelegate
{
public:
    ApplicationDelegate() = default;
    ApplicationDelegate(const ApplicationDelegate&) = delete;
    ApplicationDelegate& operator=(const ApplicationDelegate&) = delete;
    virtual ~ApplicationDelegate() = default;

    /// Before the event loop.
    virtual void applicationWillFinishLaunching() = 0;
    /// Once the event loop runs. The launch event is still current.
    virtual void applicationDidFinishLaunching() = 0;
    /// Once each time the application goes from inactive to active.
    virtual void applicationWillBecomeActive() = 0;
};

} // namespace orlimo

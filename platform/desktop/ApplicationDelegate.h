#pragma once

namespace orlimo {

/// What an application is told at the turns of its life. Main thread.
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
    /// The application goes from inactive to active; once each time.
    virtual void applicationWillBecomeActive() = 0;
};

} // namespace orlimo

#pragma once

#include "platform/ApplicationDelegate.h"
#include "platform/LaunchEvent.h"

#include <optional>

namespace orlimo {

/// Hands the turns of the application's life on to another delegate, and keeps the launch event
/// current until launching has finished. Main thread.
class LaunchTurns final : public ApplicationDelegate
{
public:
    /// `next` must outlive the turns.
    LaunchTurns(ApplicationDelegate& next, bool launchedAtLogin)
        : delegate(next)
    {
        launchEvent.emplace(launchedAtLogin);
    }

    void applicationWillFinishLaunching() override { delegate.applicationWillFinishLaunching(); }

    void applicationDidFinishLaunching() override
    {
        delegate.applicationDidFinishLaunching();
        launchEvent.reset();
    }

    void applicationWillBecomeActive() override { delegate.applicationWillBecomeActive(); }

private:
    ApplicationDelegate& delegate;
    std::optional<LaunchEventHandling> launchEvent;
};

} // namespace orlimo

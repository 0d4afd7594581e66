#pragma once

#include "platform/desktop/ApplicationDelegate.h"
#include "platform/loginitem/LaunchEvent.h"

#include <functional>
#include <optional>
#include <utility>

namespace orlimo {

/// Hands the turns of the application's life on to another delegate, keeps the launch event current
/// until launching has finished, and then has done what waits for that. Main thread.
class LaunchTurns final : public ApplicationDelegate
{
public:
    /// `next` must outlive the turns.
    LaunchTurns(
        ApplicationDelegate& next,
        bool launchedAtLogin,
        std::function<void()> workAfterLaunching = [] {})
        : delegate(next)
        , afterLaunching(std::move(workAfterLaunching))
    {
        launchEvent.emplace(launchedAtLogin);
    }

    void applicationWillFinishLaunching() override { delegate.applicationWillFinishLaunching(); }

    void applicationDidFinishLaunching() override
    {
        delegate.applicationDidFinishLaunching();
        launchEvent.reset();
        afterLaunching();
    }

    void applicationWillBecomeActive() override { delegate.applicationWillBecomeActive(); }

private:
    ApplicationDelegate& delegate;
    std::function<void()> afterLaunching;
    std::optional<LaunchEventHandling> launchEvent;
};

} // namespace orlimo

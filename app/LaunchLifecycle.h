#pragma once

#include "platform/desktop/ApplicationDelegate.h"
#include "platform/loginitem/LaunchEvent.h"

#include <functional>
#include <optional>
#include <utility>

namespace orlimo {

/// Hands the turns of the application's life on to another delegate, keeps the launch event current
/// until launching has finished, and then has done what waits for that. Main thread.
class LaunchLifecycle final : public ApplicationDelegate
{
public:
    /// `next` must outlive the turns.
    LaunchLifecycle(
        ApplicationDelegate& next,
        bool launchedAtLogin,
        std::function<void()> launchedCallback = [] {})
        : delegate(next)
        , onLaunched(std::move(launchedCallback))
    {
        launchEvent.emplace(launchedAtLogin);
    }

    void applicationWillFinishLaunching() override { delegate.applicationWillFinishLaunching(); }

    void applicationDidFinishLaunching() override
    {
        delegate.applicationDidFinishLaunching();
        launchEvent.reset();
        onLaunched();
    }

    void applicationWillBecomeActive() override { delegate.applicationWillBecomeActive(); }

private:
    ApplicationDelegate& delegate;
    std::function<void()> onLaunched;
    std::optional<LaunchEventHandling> launchEvent;
};

} // namespace orlimo

#pragma once

#include "platform/desktop/ApplicationDelegate.h"
#include "platform/loginitem/LaunchEvent.h"

#include <functional>
#include <optional>
#include <utility>

namespace orlimo {

/// Forwards the application's lifecycle events to another delegate, keeps the launch event current
/// until launching has finished, and then calls back. Main thread.
class LaunchLifecycle final : public ApplicationDelegate
{
public:
    /// `next` must outlive the events.
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

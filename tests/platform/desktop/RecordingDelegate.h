#pragma once

#include "platform/desktop/ApplicationDelegate.h"

#include <functional>
#include <string>
#include <vector>

namespace orlimo {

using LifecycleEvents = std::vector<std::string>;

/// Records the application's lifecycle events and runs a test's code in each.
class RecordingDelegate final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { note("will finish", onWillFinish); }
    void applicationDidFinishLaunching() override { note("did finish", onDidFinish); }
    void applicationWillBecomeActive() override { note("active", onActive); }

    LifecycleEvents lifecycleEvents;
    std::function<void()> onWillFinish = [] {};
    std::function<void()> onDidFinish = [] {};
    std::function<void()> onActive = [] {};

private:
    void note(const std::string& event, const std::function<void()>& work)
    {
        lifecycleEvents.push_back(event);
        work();
    }
};

} // namespace orlimo

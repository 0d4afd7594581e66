#pragma once

#include "platform/desktop/ApplicationDelegate.h"

#include <functional>
#include <string>
#include <vector>

namespace orlimo {

using Turns = std::vector<std::string>;

/// Notes the turns of the application's life, and does what a test asks at them.
class RecordingDelegate final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { note("will finish", whenWillFinish); }
    void applicationDidFinishLaunching() override { note("did finish", whenDidFinish); }
    void applicationWillBecomeActive() override { note("active", whenActive); }

    Turns turns;
    std::function<void()> whenWillFinish = [] {};
    std::function<void()> whenDidFinish = [] {};
    std::function<void()> whenActive = [] {};

private:
    void note(const std::string& turn, const std::function<void()>& work)
    {
        turns.push_back(turn);
        work();
    }
};

} // namespace orlimo

#pragma once

#include "platform/services/Services.h"
#include "tests/app/RecordingApplication.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/login/ScriptedLoginItemService.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ScriptedVnodeSource.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orlimo {

/// A fake of every service, which does what a test says. Nothing of the system is touched, but the
/// store in the Library folder. Must outlive what it is given to.
class FakeServices
{
public:
    explicit FakeServices(std::filesystem::path libraryFolder = {});

    MemoryUserDefaults userDefaults;
    RecordingPasteboard pasteboard;
    std::vector<std::string> loginItemCalls;
    ScriptedLoginItemService loginItem{loginItemCalls};
    ManualQueue mainQueue;
    ManualQueue decisions;
    ManualClock clock;
    std::shared_ptr<ScriptedVnodeSource::Script> source =
        std::make_shared<ScriptedVnodeSource::Script>();
    RecordingApplication application;
    Services services;
};

} // namespace orlimo

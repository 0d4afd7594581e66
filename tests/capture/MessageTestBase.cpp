#include "tests/capture/MessageTestBase.h"

#include "capture/Preferences.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/support/process/OutputCapture.h"

namespace orlimo {

MessageTestBase::MessageTestBase()
    : store(library.path())
    , database(processLifetimeDatabase(library.path()))
{
    defaults.setBool(true, preference::capturingEnabled);
}

CaptureServices MessageTestBase::services()
{
    const WatchServices watchServices{
        .mainQueue = watch.main,
        .decisionQueue = watch.decisions,
        .clock = watch.clock.function(),
        .makeVnodeSource = ScriptedVnodeSource::factory(watch.source),
        .openFile = FileHandle::openForReading,
    };
    return {
        .database = database,
        .userDefaults = defaults,
        .pasteboard = clipboard,
        .libraryFolder = [folder = library.path()] { return folder; },
        .makeFileMonitor =
            [watchServices](const auto& file) { return FileMonitor::create(file, watchServices); },
    };
}

std::shared_ptr<Message> MessageTestBase::watching()
{
    const OutputCapture swallowed;
    auto message = Message::create(services());
    EXPECT_TRUE(message->registFileObserver());
    return message;
}

} // namespace orlimo

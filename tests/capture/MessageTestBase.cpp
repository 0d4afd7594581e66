#include "tests/capture/MessageTestBase.h"

#include "capture/Preferences.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/TestCaptureServices.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/watch/SystemWatchServices.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

namespace orlimo {

namespace {

WatchServices idleWatchServices()
{
    WatchServices services = systemWatchServices();
    services.makeVnodeSource = [](int, VnodeEvents, Queue&) {
        return std::make_unique<IdleVnodeSource>();
    };
    return services;
}

} // namespace

MessageTestBase::MessageTestBase()
    : store(library.path())
    , database(processLifetimeDatabase(library.path()))
    , defaults(captureUserDefaults())
{
    defaults.setBool(true, preference::capturingEnabled);
    setClipboardText("before");
}

std::filesystem::path MessageTestBase::log() const
{
    return library.path() / "Messages/chat.db-wal";
}

CaptureServices MessageTestBase::services() const
{
    return {
        .database = database,
        .userDefaults = defaults,
        .pasteboard = capturePasteboard(),
        .libraryFolder = [folder = library.path()] { return folder; },
        .makeFileMonitor =
            [](const auto& file) { return FileMonitor::create(file, idleWatchServices()); },
    };
}

std::shared_ptr<Message> MessageTestBase::watching(CaptureServices services)
{
    const OutputCapture swallowed;
    auto message = Message::create(std::move(services));
    EXPECT_TRUE(message->registFileObserver());
    return message;
}

std::string MessageTestBase::clipboardText()
{
    return QGuiApplication::clipboard()->text().toStdString();
}

void MessageTestBase::setClipboardText(const std::string& text)
{
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace orlimo

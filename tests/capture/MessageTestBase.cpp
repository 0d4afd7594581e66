#include "tests/capture/MessageTestBase.h"

#include "capture/PreferenceKeys.h"
#include "tests/capture/CaptureServices.h"
#include "tests/capture/IdleVnodeSource.h"
#include "tests/capture/stores/KeptDatabase.h"
#include "tests/support/process/OutputCapture.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

namespace orlimo {

namespace {

WatchHost idleHost()
{
    WatchHost host = WatchHost::native();
    host.makeVnodeSource = [](int, VnodeEvents, Queue&) {
        return std::make_unique<IdleVnodeSource>();
    };
    return host;
}

} // namespace

MessageTestBase::MessageTestBase()
    : store(library.path())
    , database(keptDatabase(library.path()))
    , defaults(captureUserDefaults())
{
    defaults.setBool(true, preference::capturingEnabled);
    setClipboardText("before");
}

std::filesystem::path MessageTestBase::log() const
{
    return library.path() / "Messages/chat.db-wal";
}

CaptureHost MessageTestBase::host() const
{
    return {
        .database = database,
        .userDefaults = defaults,
        .pasteboard = capturePasteboard(),
        .libraryFolder = [folder = library.path()] { return folder; },
        .makeFileMonitor = [](const auto& file) { return FileMonitor::create(file, idleHost()); },
    };
}

std::shared_ptr<Message> MessageTestBase::watching(CaptureHost host)
{
    const OutputCapture swallowed;
    auto message = Message::create(std::move(host));
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

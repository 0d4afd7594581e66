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
#include <utility>
#include <vector>

namespace orlimo {

/// An empty file.
class FakeFile final : public FileHandle::OpenFile
{
public:
    [[nodiscard]] int descriptor() const override { return -1; }
    [[nodiscard]] std::uint64_t seekToEnd() const override { return 0; }
    std::error_code close() override { return {}; }
};

/// The content alone, without an icon.
class FakeMenuBarExtra final : public MenuBarExtra
{
public:
    explicit FakeMenuBarExtra(ContentBuilder builder)
        : makeContent(std::move(builder))
    {}

    void open() override
    {
        if (content == nullptr) {
            content = makeContent();
        }
        content->show();
    }
    void openOnRequest() override { open(); }
    void openIfNoTray() override {}
    void close() override { content->hide(); }
    [[nodiscard]] bool isOpen() const override
    {
        return content != nullptr && content->isVisible();
    }

private:
    ContentBuilder makeContent;
    std::unique_ptr<QWidget> content;
};

/// A fake of every service, which does what a test says. Nothing of the system is touched, but the
/// store in the Library folder. Must outlive what it is given to.
class FakeServices
{
public:
    explicit FakeServices(std::filesystem::path folder = {})
        : libraryFolder(std::move(folder))
    {}

    std::filesystem::path libraryFolder;
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
    Services services{
        .userDefaults = userDefaults,
        .pasteboard = pasteboard,
        .loginItem = loginItem,
        .mainQueue = mainQueue,
        .backgroundQueue = decisions,
        .clock = clock.function(),
        .libraryFolder = [folder = libraryFolder] { return folder; },
        .openFile = [](const auto&) { return FileHandle(std::make_unique<FakeFile>()); },
        .makeVnodeSource = ScriptedVnodeSource::factory(source),
        .userEntry = [] { return UserEntry{.homeDirectory = "/home/somebody"}; },
        .canListDirectory = [](const auto&) { return true; },
        .currentLaunchEvent = [] { return std::nullopt; },
        .logLoginItemError = [](auto, auto) {},
        .application = [this]() -> SharedApplication& { return application; },
        .makeMenuBarExtra =
            [](auto builder, const auto&, const auto&) {
                return std::make_unique<FakeMenuBarExtra>(std::move(builder));
            },
        .openUrl = [](const auto&) { return true; },
        .mainScreenFrame = [] { return QRect(0, 0, 1280, 800); },
        .fromSystemCoordinates = [](const auto& rectangle) { return rectangle; },
        .orderFrontRegardless = [](auto&) {},
        .symbols =
            {.draw = [](auto, auto, const auto&, auto) { return QPixmap(); },
             .size = [](auto, auto) { return QSize(0, 0); }}};
};

} // namespace orlimo

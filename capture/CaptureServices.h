#pragma once

#include "capture/Database.h"
#include "platform/clipboard/Pasteboard.h"
#include "platform/preferences/UserDefaults.h"
#include "watch/FileMonitor.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace orlimo {

/// What the capture controller works on. Handed in whole, so that tests give it a store, a folder
/// or a watch of their own.
struct CaptureServices
{
    Database& database;
    UserDefaults& userDefaults;
    Pasteboard& pasteboard;
    std::function<std::optional<std::filesystem::path>()> libraryFolder;
    std::function<std::shared_ptr<FileMonitor>(const std::filesystem::path&)> makeFileMonitor;
};

} // namespace orlimo

#include "platform/loginitem/linux/XdgLoginItemService.h"

#include "platform/files/linux/HomeFolder.h"
#include "platform/loginitem/linux/AutostartEntry.h"
#include "platform/loginitem/linux/RunningProgram.h"
#include "platform/process/linux/EnvironmentVariable.h"

#include <QString>

#include <cerrno>
#include <filesystem>
#include <string>

namespace orlimo {

namespace {

/// Where the desktop looks for the user's own entries. Absent for a user without a home.
std::optional<std::filesystem::path> autostartFolder()
{
    const std::string configuration = environmentVariable("XDG_CONFIG_HOME");
    if (configuration.starts_with('/')) {
        return std::filesystem::path(configuration) / "autostart";
    }
    auto home = homeFolder(environmentVariable("HOME").c_str(), std::nullopt);
    if (!home) {
        home = homeFolder(nullptr, homeInUserDatabase());
    }
    return home ? std::optional(*home / ".config" / "autostart") : std::nullopt;
}

/// The entry for the current path of the program.
std::optional<AutostartEntry> autostartEntry()
{
    const auto folder = autostartFolder();
    return folder ? std::optional<AutostartEntry>(std::in_place, *folder, runningProgram())
                  : std::nullopt;
}

ServiceError homeMissingError()
{
    const auto message = QStringLiteral("HOME: ") + qt_error_string(ENOENT);
    return {.code = ENOENT, .localizedDescription = message.toStdString()};
}

} // namespace

LoginItemStatus XdgLoginItemService::status() const
{
    const auto entry = autostartEntry();
    return entry ? entry->status() : LoginItemStatus::notRegistered;
}

std::optional<ServiceError> XdgLoginItemService::registerItem()
{
    const auto entry = autostartEntry();
    return entry ? entry->add() : homeMissingError();
}

std::optional<ServiceError> XdgLoginItemService::unregisterItem()
{
    const auto entry = autostartEntry();
    return entry ? entry->remove() : homeMissingError();
}

} // namespace orlimo

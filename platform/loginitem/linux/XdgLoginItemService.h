#pragma once

#include "platform/loginitem/LoginItemService.h"

#include <filesystem>
#include <memory>

namespace orlimo {

/// The login item of a program that the desktop starts from the user's own autostart folder. Main
/// thread.
class XdgLoginItemService final : public LoginItemService
{
public:
    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] std::optional<ServiceError> registerItem() override;
    [[nodiscard]] std::optional<ServiceError> unregisterItem() override;
};

/// The service for where the program runs: this one, or that of the portal if `sandboxMarker`
/// exists, a file inside a Flatpak, whose autostart folder the desktop does not see.
[[nodiscard]] std::unique_ptr<LoginItemService>
makeLoginItemService(const std::filesystem::path& sandboxMarker);

} // namespace orlimo

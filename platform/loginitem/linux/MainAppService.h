#pragma once

#include "platform/loginitem/LoginItemService.h"

#include <filesystem>
#include <memory>

namespace orlimo {

/// The login item service for where the program runs. `sandboxMarker` is a file that exists only
/// inside a Flatpak, where the desktop does not see what the program writes into its autostart
/// folder.
[[nodiscard]] std::unique_ptr<LoginItemService>
makeLoginItemService(const std::filesystem::path& sandboxMarker);

} // namespace orlimo

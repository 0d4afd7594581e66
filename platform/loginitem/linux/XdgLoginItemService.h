#pragma once

#include "platform/loginitem/LoginItemService.h"

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

} // namespace orlimo

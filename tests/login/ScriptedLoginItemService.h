#pragma once

#include "platform/loginitem/LoginItemService.h"

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// A fake login item service that writes each call into a list.
class ScriptedLoginItemService final : public LoginItemService
{
public:
    explicit ScriptedLoginItemService(std::vector<std::string>& callList)
        : calls(callList)
    {}

    LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
    /// Where set, the operation fails with it and changes nothing.
    std::optional<ServiceError> registerError;
    std::optional<ServiceError> unregisterError;

    /// For results after the call; empty until it is set.
    ResponseHandler responseHandler;

    void setResponseHandler(const ResponseHandler& handler) override { responseHandler = handler; }

    [[nodiscard]] LoginItemStatus status() const override
    {
        calls.emplace_back("status");
        return currentStatus;
    }

    [[nodiscard]] std::optional<ServiceError> registerItem() override
    {
        calls.emplace_back("register");
        if (!registerError) {
            currentStatus = LoginItemStatus::enabled;
        }
        return registerError;
    }

    [[nodiscard]] std::optional<ServiceError> unregisterItem() override
    {
        calls.emplace_back("unregister");
        if (!unregisterError) {
            currentStatus = LoginItemStatus::notRegistered;
        }
        return unregisterError;
    }

private:
    std::vector<std::string>& calls;
};

} // namespace orlimo

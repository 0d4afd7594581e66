#pragma once

#include <filesystem>

namespace orlimo {

/// Has window managers that start from now on give the keyboard to no new window by themselves, as
/// long as it lives.
class ShyWindowManager
{
public:
    ShyWindowManager();
    ShyWindowManager(const ShyWindowManager&) = delete;
    ShyWindowManager& operator=(const ShyWindowManager&) = delete;
    ~ShyWindowManager();

private:
    std::filesystem::path configuration;
};

} // namespace orlimo

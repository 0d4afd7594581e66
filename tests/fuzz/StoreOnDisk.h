#pragma once

#include "platform/files/UniqueFd.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string_view>

namespace orlimo {

/// A message store in a folder of its own, whose files are given byte for byte.
class StoreOnDisk
{
public:
    StoreOnDisk();

    [[nodiscard]] const std::filesystem::path& libraryFolder() const { return library.path(); }

    /// Makes the store hold `bytes`: up to the header of a write-ahead log the store itself, from
    /// there on its log. What else lies beside the store is removed. No connection may be open.
    void fill(std::string_view bytes);

    /// Whether the store, and its log where there was one, still are what `bytes` made them.
    [[nodiscard]] bool isUnchanged(std::string_view bytes) const;

private:
    TemporaryFolder library;
    std::filesystem::path log;
    std::filesystem::path sharedIndex;
    std::filesystem::path journal;
    UniqueFd store;
};

} // namespace orlimo

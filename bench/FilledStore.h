#pragma once

#include "sample/SampleStore.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>

namespace orlimo {

/// Where a message has its text.
enum class TextLocation {
    text,
    body,
};

/// A message store with many messages, in a folder of its own that goes with the object. None of
/// them holds a code.
class FilledStore
{
public:
    /// Makes a store of `number` messages at once. Failures are thrown as std::runtime_error.
    explicit FilledStore(std::int64_t number);

    /// Delivers one more message, as the newest one, the way the Messages application does.
    void deliver(TextLocation location);

    [[nodiscard]] const std::filesystem::path& libraryFolder() const { return library.path(); }

private:
    [[nodiscard]] std::filesystem::path createFile() const;
    void fill(std::int64_t number);

    TemporaryFolder library;
    sample::SampleStore store;
};

} // namespace orlimo

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orlimo {

/// One message as fetched from the store. Lists of them are ordered newest first.
struct Msg
{
    /// The row's identifier in the store.
    std::int64_t rowid = 0;
    /// UTF-8; absent if the store holds none. An empty text is present.
    std::optional<std::string> text;
    /// The archived attributed string that holds the message text if `text` is absent: not its
    /// bytes, but their upper-case hexadecimal text.
    std::optional<std::string> attributedBody;

    friend bool operator==(const Msg&, const Msg&) = default;
};

} // namespace orlimo

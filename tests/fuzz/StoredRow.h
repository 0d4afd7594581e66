#pragma once

#include "tests/fuzz/InputReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orlimo {

/// One row of the store's table of messages, with whatever may stand in its columns.
struct StoredRow
{
    struct Null
    {};
    struct Text
    {
        std::string bytes;
    };
    struct Blob
    {
        std::vector<std::uint8_t> bytes;
    };
    /// What one column holds.
    using Cell = std::variant<Null, Text, Blob, std::int64_t>;

    Cell text;
    Cell body;
    std::optional<std::int64_t> date;

    /// The row that the next bytes of an input stand for.
    [[nodiscard]] static StoredRow from(InputReader& input);
};

/// Up to fourteen rows: more than the program looks at.
[[nodiscard]] std::vector<StoredRow> storedRowsFrom(InputReader& input);

} // namespace orlimo

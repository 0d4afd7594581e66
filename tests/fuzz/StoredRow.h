#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orlimo {

/// Makes structured values of a fuzzer's bytes. Every sequence of bytes is valid: beyond the end
/// all bytes are zero and all strings empty.
class InputReader
{
public:
    /// Reads from `bytes`, which are the caller's and outlive this object.
    explicit InputReader(std::string_view bytes)
        : rest(bytes)
    {}

    [[nodiscard]] bool atEnd() const { return rest.empty(); }

    [[nodiscard]] std::uint8_t byte()
    {
        if (rest.empty()) {
            return 0;
        }
        const auto first = static_cast<std::uint8_t>(rest.front());
        rest.remove_prefix(1);
        return first;
    }

    /// Four bytes, the low one first.
    [[nodiscard]] std::int32_t integer()
    {
        std::uint32_t value = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            value |= static_cast<std::uint32_t>(byte()) << shift;
        }
        return static_cast<std::int32_t>(value);
    }

    /// Up to a backslash, which is doubled inside the string; the byte after a single one is
    /// skipped. So inserting or removing a byte does not shift later values.
    [[nodiscard]] std::string string()
    {
        std::string text;
        while (!rest.empty()) {
            const char next = rest.front();
            rest.remove_prefix(1);
            if (next != '\\') {
                text.push_back(next);
            } else if (byte() == '\\') {
                text.push_back('\\');
            } else {
                break;
            }
        }
        return text;
    }

private:
    std::string_view rest;
};

/// One row of the store's table of messages, with a value of any type in its columns.
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

    /// The row that the next bytes of an input encode.
    [[nodiscard]] static StoredRow from(InputReader& input);
};

/// Up to fourteen rows: more than the program looks at.
[[nodiscard]] std::vector<StoredRow> storedRowsFrom(InputReader& input);

} // namespace orlimo

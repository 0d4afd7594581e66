#pragma once

#include "tests/capture/reference/BodyBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
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

/// What one column of a row holds: a value of any type.
struct Cell
{
    /// The value in SQL.
    std::string sql = "NULL";
    /// The value's bytes, or a number's digits, which are its text too.
    std::optional<std::string> bytes{};

    static Cell blob(const std::string& bytes)
    {
        return {.sql = "x'" + asHexadecimal(bytes) + "'", .bytes = bytes};
    }
    static Cell text(const std::string& bytes)
    {
        return {.sql = "CAST(" + blob(bytes).sql + " AS TEXT)", .bytes = bytes};
    }
    static Cell number(std::int64_t value)
    {
        return {.sql = std::to_string(value), .bytes = std::to_string(value)};
    }
};

/// One row of the store's table of messages.
struct StoredRow
{
    Cell text;
    Cell body;
    std::optional<std::int64_t> date;
};

inline Cell textFrom(unsigned kind, InputReader& input)
{
    switch (kind) {
    case 0:
        return {};
    case 1:
        return Cell::text(input.string());
    case 2:
        return Cell::blob(input.string());
    default:
        return Cell::number(input.integer());
    }
}

inline Cell bodyFrom(unsigned kind, InputReader& input)
{
    switch (kind) {
    case 0:
        return {};
    case 1:
        return Cell::blob(input.string());
    case 2:
        return Cell::blob(mutableStringBody(input.string()));
    case 3:
        return Cell::blob(immutableStringBody(input.string()));
    case 4: // what follows the marker and the fixed run: a length, to begin with
        return Cell::blob("NSString\x01\x95\x84\x01\x2B" + input.string());
    case 5:
        return Cell::text(input.string());
    case 6: { // an archive in which one byte is another
        const std::uint8_t place = input.byte();
        const auto value = static_cast<char>(input.byte());
        std::string archive = mutableStringBody(input.string());
        archive[place % archive.size()] = value;
        return Cell::blob(archive);
    }
    default:
        return Cell::number(input.integer());
    }
}

/// The rows that an input encodes, up to fourteen: more than the program looks at.
[[nodiscard]] inline std::vector<StoredRow> storedRowsFrom(InputReader& input)
{
    std::vector<StoredRow> rows;
    while (!input.atEnd() && rows.size() < 14) {
        const unsigned kinds = input.byte();
        // Few dates, so that some are equal; one of them is none.
        const std::uint8_t date = input.byte();
        StoredRow& row = rows.emplace_back();
        if (date != 0x80) {
            row.date = std::int64_t(static_cast<std::int8_t>(date)) * 1'000'000'000;
        }
        row.text = textFrom(kinds % 4, input);
        row.body = bodyFrom(kinds / 4 % 8, input);
    }
    return rows;
}

} // namespace orlimo

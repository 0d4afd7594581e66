#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orlimo {

/// Makes structured values of a fuzzer's bytes. Every sequence of bytes stands for some: behind the
/// end all bytes are zero and all strings empty.
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

    /// Up to a backslash, which two backslashes stand for inside the string; what follows the
    /// single one is passed over. So a byte more or less shifts nothing that comes behind it.
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

} // namespace orlimo

#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace orlimo {

/// Messages of every kind without an end, and the code that the store then holds.
class SoakTraffic
{
public:
    /// The command that has the writer store the next message.
    [[nodiscard]] std::string next();

    /// The code that a check finds now: that of the newest of the ten newest messages that has one.
    [[nodiscard]] std::string code(bool fourDigitInclude) const;

    /// How many messages there were.
    [[nodiscard]] std::size_t messages() const { return number; }

private:
    struct Message
    {
        std::string command;
        std::optional<std::string> code{};
    };

    [[nodiscard]] Message make() const;

    std::size_t number = 0;
    std::deque<std::optional<std::string>> newest;
};

} // namespace orlimo

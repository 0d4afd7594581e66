#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace orlimo {

/// How many of the newest messages the program looks at.
inline constexpr std::size_t maxCheckedMessages = 10;

inline constexpr std::size_t fullWidthDigit = 3; // bytes

inline std::string fullWidth(const std::string& digits)
{
    std::string wide;
    for (const char digit : digits) {
        wide += "\xEF\xBC";
        wide += static_cast<char>(0x90 + (digit - '0'));
    }
    return wide;
}

/// A number that begins with a 4 and has `digits` digits.
inline std::string numbered(std::size_t number, int digits)
{
    std::size_t first = 4;
    std::size_t range = 1;
    for (int digit = 1; digit < digits; ++digit) {
        first *= 10;
        range *= 10;
    }
    return std::to_string(first + number % range);
}

inline bool hasFourDigits(const std::string& code)
{
    return code.size() == 4 || code.size() == 4 * fullWidthDigit;
}

/// Messages of every kind without an end, and the code that the store then holds.
class SoakTraffic
{
public:
    /// The command that has the writer store the next message.
    [[nodiscard]] std::string next()
    {
        Message message = make();
        ++number;
        newest.push_front(std::move(message.code));
        newest.resize(std::min(newest.size(), maxCheckedMessages));
        return message.command;
    }

    /// The code that a check finds now: that of the newest of the ten newest messages that has one.
    [[nodiscard]] std::string code(bool fourDigitInclude) const
    {
        for (const auto& code : newest) {
            if (code && (fourDigitInclude || !hasFourDigits(*code))) {
                return *code;
            }
        }
        throw std::logic_error("there is always a code among the newest messages");
    }

    /// How many messages there were.
    [[nodiscard]] std::size_t messages() const { return number; }

private:
    struct Message
    {
        std::string command;
        std::optional<std::string> code{};
    };

    [[nodiscard]] Message make() const
    {
        const std::string six = numbered(number, 6);
        const std::string five = numbered(number, 5);
        const std::string four = numbered(number, 4);
        constexpr std::size_t kinds = 7;
        switch (number % kinds) {
        case 0:
            return {"text Your code is " + six + ".", six};
        case 1:
            return {"body " + six + " is your code. Do not share it.", six};
        case 2:
            return {"text Lunch at noon?"};
        case 3:
            return {"body " + std::string(300, 'x') + " Use " + five + " to sign in.", five};
        case 4:
            return {"text \\xE7\\xA2\\xBC " + fullWidth(six), fullWidth(six)};
        case 5:
            return {"text PIN " + four, four};
        default:
            // In the class of string that is not decoded.
            return {"immutable Code " + six};
        }
    }

    std::size_t number = 0;
    std::deque<std::optional<std::string>> newest;
};

} // namespace orlimo

#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>

namespace orlimo {

/// Messages of every kind without an end, and the code that the store then holds.
class SoakTraffic
{
public:
    /// The command that has the writer store the next message.
    [[nodiscard]] std::string next()
    {
        /// How many of the newest messages the program looks at.
        constexpr std::size_t maxCheckedMessages = 10;
        newest.push_front(make());
        ++number;
        if (newest.size() > maxCheckedMessages) {
            newest.pop_back();
        }
        return newest.front().command;
    }

    /// The code that a check finds now: that of the newest of the ten newest messages that has one.
    [[nodiscard]] std::string code(bool fourDigitInclude) const
    {
        for (const Message& message : newest) {
            if (message.code && (fourDigitInclude || !message.hasFourDigits)) {
                return *message.code;
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
        bool hasFourDigits = false;
    };

    [[nodiscard]] Message make() const
    {
        const std::string six = numbered(6);
        const std::string five = numbered(5);
        const std::string four = numbered(4);
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
            return {"text PIN " + four, four, true};
        default:
            // In the class of string that is not decoded.
            return {"immutable Code " + six};
        }
    }

    /// A code of as many digits that tells of the message's number and begins with a 4.
    [[nodiscard]] std::string numbered(std::size_t digits) const
    {
        const std::string padded = std::string(digits, '0') + std::to_string(number);
        return "4" + padded.substr(padded.size() - (digits - 1));
    }

    static std::string fullWidth(const std::string& digits)
    {
        std::string wide;
        for (const char digit : digits) {
            wide += "\xEF\xBC";
            wide += static_cast<char>(0x90 + (digit - '0'));
        }
        return wide;
    }

    std::size_t number = 0;
    std::deque<Message> newest; ///< first the last one
};

} // namespace orlimo

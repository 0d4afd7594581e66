#include "tests/soak/SoakTraffic.h"

#include <algorithm>
#include <stdexcept>

namespace orlimo {

namespace {

/// How many of the newest messages the program looks at.
constexpr std::size_t maxCheckedMessages = 10;

constexpr std::size_t fullWidthDigit = 3; // bytes

std::string fullWidth(const std::string& digits)
{
    std::string wide;
    for (const char digit : digits) {
        wide += "\xEF\xBC";
        wide += static_cast<char>(0x90 + (digit - '0'));
    }
    return wide;
}

/// A number that begins with a 4 and has `digits` digits.
std::string numbered(std::size_t number, int digits)
{
    std::size_t first = 4;
    std::size_t range = 1;
    for (int digit = 1; digit < digits; ++digit) {
        first *= 10;
        range *= 10;
    }
    return std::to_string(first + number % range);
}

bool hasFourDigits(const std::string& code)
{
    return code.size() == 4 || code.size() == 4 * fullWidthDigit;
}

} // namespace

std::string SoakTraffic::next()
{
    Message message = make();
    ++number;
    newest.push_front(std::move(message.code));
    newest.resize(std::min(newest.size(), maxCheckedMessages));
    return message.command;
}

std::string SoakTraffic::code(bool fourDigitInclude) const
{
    for (const auto& code : newest) {
        if (code && (fourDigitInclude || !hasFourDigits(*code))) {
            return *code;
        }
    }
    throw std::logic_error("there is always a code among the newest messages");
}

SoakTraffic::Message SoakTraffic::make() const
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

} // namespace orlimo

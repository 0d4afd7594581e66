#include "sample/SampleCycle.h"

#include "sample/ArchivedBody.h"

#include <array>

namespace orlimo::sample {

namespace {

/// Digits of a script whose zero has the UTF-8 bytes `lead` and then `zero`.
std::string
toScriptDigits(const std::string& digits, std::string_view leadBytes, unsigned char zero)
{
    std::string written;
    for (const char digit : digits) {
        written.append(leadBytes).push_back(static_cast<char>(zero + (digit - '0')));
    }
    return written;
}

CycleMessage textMessage(const std::string& text, const std::optional<std::string>& code)
{
    return {
        .message = {.text = text},
        .code = code,
        .description = "in the text column: " + text,
    };
}

CycleMessage bodyMessage(const std::string& text, const std::optional<std::string>& code)
{
    return {
        .message = {.attributedBody = archivedBody(text, ArchivedString::mutableString)},
        .code = code,
        .description = "as a body alone: " + text,
    };
}

CycleMessage pictureMessage()
{
    // In the text a placeholder represents an attachment.
    return {
        .message =
            {.attributedBody = archivedBody("\xEF\xBF\xBC", ArchivedString::immutableString)},
        .code = std::nullopt,
        .description = "as a body alone: a picture",
    };
}

} // namespace

CycleMessage SampleCycle::next()
{
    constexpr int kinds = 12;
    switch (position++ % kinds) {
    case 0: {
        const auto code = uniqueCode(6);
        return textMessage("Your Orlimo sample code is " + code + ".", code);
    }
    case 1: {
        const auto code = uniqueCode(6);
        return bodyMessage(code + " is your sample code. Do not share it.", code);
    }
    case 2:
        return textMessage("Lunch at noon?", std::nullopt);
    case 3: {
        const auto code = uniqueCode(5);
        return textMessage("Use " + code + " to sign in. Valid for 10 minutes.", code);
    }
    case 4: {
        const auto code = toScriptDigits(uniqueCode(6), "\xEF\xBC", 0x90);
        return textMessage(
            "\xE8\xAA\x8D\xE8\xA8\xBC\xE3\x82\xB3\xE3\x83\xBC\xE3\x83\x89 " + code, code);
    }
    case 5:
        return pictureMessage();
    case 6: {
        const auto code = uniqueCode(6);
        return bodyMessage(
            "Hello! Somebody, you we hope, asked for a code to sign in to the sample service. If "
            "it was not you, there is nothing that you have to do. The code is " +
                code + ", and it is valid for ten minutes.",
            code);
    }
    case 7: {
        const auto code = uniqueCode(4);
        return textMessage("PIN " + code, code);
    }
    case 8:
        return bodyMessage("Your parcel 00340434161094022115 is on its way.", std::nullopt);
    case 9: {
        const auto code = toScriptDigits(uniqueCode(6), "\xD9", 0xA0);
        return bodyMessage(
            "\xD8\xB1\xD9\x85\xD8\xB2 \xD8\xA7\xD9\x84\xD8\xAA\xD8\xAD\xD9\x82\xD9\x82: " + code,
            code);
    }
    case 10: {
        const auto code = uniqueCode(6);
        return textMessage("Order 1234567: the code is " + code + ".", code);
    }
    default: {
        const auto code = uniqueCode(5);
        return bodyMessage("Code: " + code, code);
    }
    }
}

std::string SampleCycle::uniqueCode(int digits) const
{
    // Visits all numbers of this length in large steps: as the step is coprime to the range, none
    // repeats before all were visited.
    constexpr std::int64_t step = 48'271;
    std::int64_t range = 9;
    std::int64_t first = 1;
    for (int digit = 1; digit < digits; ++digit) {
        range *= 10;
        first *= 10;
    }
    return std::to_string(first + (position * step) % range);
}

} // namespace orlimo::sample

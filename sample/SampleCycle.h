#pragma once

#include "sample/SampleMessage.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orlimo::sample {

/// One message of the cycle and its expected code.
struct CycleMessage
{
    SampleMessage message;
    /// The code that Orlimo should copy; absent if the message holds none.
    std::optional<std::string> code;
    /// A description for people.
    std::string description;
};

/// An endless sequence of realistic messages: in the text column, as a short and as a long body, in
/// the class of string that is not decoded, with a code of four, five or six digits, in digits of
/// another script, with a number that is too long, without a code. No code repeats in a run.
class SampleCycle
{
public:
    [[nodiscard]] CycleMessage next();

private:
    [[nodiscard]] std::string uniqueCode(int digits) const;

    std::int64_t position = 0;
};

} // namespace orlimo::sample

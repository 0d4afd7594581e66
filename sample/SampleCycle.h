#pragma once

#include "sample/SampleMessage.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orlimo::sample {

/// One message of the cycle and what is to come of it.
struct CycleMessage
{
    SampleMessage message;
    /// The code that Orlimo is to copy; absent where the message holds none.
    std::optional<std::string> code;
    /// What it is, for a person.
    std::string description;
};

/// Messages as they come in life, without an end: in the text column, as a short and as a long
/// body, in the class of string that is not decoded, with a code of four, five or six digits, in
/// digits of another script, with too long a number, without a code. No code comes twice in a run.
class SampleCycle
{
public:
    [[nodiscard]] CycleMessage next();

private:
    [[nodiscard]] std::string uniqueCode(int digits) const;

    std::int64_t position = 0;
};

} // namespace orlimo::sample

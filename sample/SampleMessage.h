#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orlimo::sample {

/// A message to be stored: its text in the text column, in an archived body, in both, or in
/// neither.
struct SampleMessage
{
    std::optional<std::string> text{};
    std::optional<std::vector<std::uint8_t>> attributedBody{};
    bool isFromMe = false;
};

} // namespace orlimo::sample

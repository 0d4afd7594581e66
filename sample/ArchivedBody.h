#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace orlimo::sample {

/// The class of the string inside an archived message body. Both occur in real stores.
enum class ArchivedString {
    mutableString,
    immutableString,
};

/// The archive of an attributed string with the text `text` (UTF-8), byte for byte as the Messages
/// application stores it: the stream's header, the class names, the text with its length in UTF-8
/// bytes, and one run of attributes over all of it. Throws std::length_error for text of more than
/// 65535 bytes.
[[nodiscard]] std::vector<std::uint8_t> archivedBody(std::string_view text, ArchivedString string);

} // namespace orlimo::sample

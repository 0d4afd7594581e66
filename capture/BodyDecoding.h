#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

/// The text of an archived attributed string, given as its hexadecimal text (UTF-8; letters in
/// either case). The archive is not parsed: the text follows the first class name "NSString", a
/// fixed run of bytes and a length, of one byte, or of the byte 81 and two more, the low one first.
///
/// Logs which form the length has. Nothing if text with a one-byte length is not well-formed UTF-8.
/// A body without the class name, with nothing after it, truncated, of length zero, or with a
/// two-byte length and text that is not well-formed, is a fatal stop.
[[nodiscard]] std::optional<std::string> decodeAttributedBody(std::string_view hexadecimalText);

/// The bytes that pairs of hexadecimal digits denote. Other characters are not rejected: the nibble
/// table gives them a value too. A pair without a second digit is a fatal stop.
[[nodiscard]] std::vector<std::uint8_t> hexToBytes(std::string_view text);

} // namespace orlimo

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orlimo {

/// `bytes` as the store reader returns them: two upper-case hexadecimal digits a byte.
[[nodiscard]] std::string asHexadecimal(std::string_view bytes);

/// The archived length of a string of `length` bytes: one byte, or from 128 on the byte 81 and two
/// more.
[[nodiscard]] std::string archivedLength(std::size_t length);

/// The body of a message with a mutable string, as it is stored.
[[nodiscard]] std::string mutableStringBody(std::string_view messageText);

/// The same with an immutable string, whose fixed run differs in one byte.
[[nodiscard]] std::string immutableStringBody(std::string_view messageText);

} // namespace orlimo

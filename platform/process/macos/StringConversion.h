#pragma once

#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Converts UTF-8 to an autoreleased NSString. Each ill-formed byte becomes U+FFFD.
[[nodiscard]] NSString* toNSString(std::string_view utf8);

/// Converts to UTF-8; nil is empty. Half of a surrogate pair becomes U+FFFD.
[[nodiscard]] std::string toUtf8(NSString* text);

} // namespace orlimo

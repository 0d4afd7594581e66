#pragma once

#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Text in UTF-8 as the system holds it, for the current autorelease pool. Each byte that is
/// ill-formed becomes U+FFFD.
[[nodiscard]] NSString* toNSString(std::string_view utf8);

/// The text in UTF-8; empty for nil. Half of a surrogate pair becomes U+FFFD.
[[nodiscard]] std::string toUtf8(NSString* text);

} // namespace orlimo

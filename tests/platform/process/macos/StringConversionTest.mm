#include "platform/process/macos/StringConversion.h"

#include "tests/platform/macos/fakes/FakeObject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

std::string roundTripped(std::string_view utf8)
{
    @autoreleasepool {
        return toUtf8(toNSString(utf8));
    }
}

/// What comes of units that the system may hold though they are no well-formed text.
std::string utf8Of(const std::vector<unichar>& units)
{
    FakeObject& text = FakeObject::named("text");
    text.returns<NSUInteger>("length", units.size());
    text.responds("getCharacters:range:", [&units](NSInvocation* invocation) {
        std::copy(units.begin(), units.end(), FakeObject::argument<unichar*>(invocation, 0));
    });
    std::string utf8 = toUtf8(text.object());
    FakeObject::resetAll();
    return utf8;
}

TEST(StringConversion, GivesTheSameTextBack)
{
    for (const auto text :
         {""sv,
          "12\0 34\0"sv,
          " leading and trailing \n"sv,
          "\u00E9 e\u0301 \u0661\u0662 \u6F22\u5B57"sv,
          "\U0001F511\U0001F468\u200D\U0001F469"sv,
          "a mark \uFEFF in the middle"sv,
          "\uFFFD \uFFFE \uFFFF \U0010FFFF"sv})
    {
        EXPECT_EQ(roundTripped(text), text);
    }
    EXPECT_EQ(roundTripped("12345678"sv.substr(1, 6)), "234567");
    EXPECT_EQ(toUtf8(nil), "");
}

TEST(StringConversion, PutsTheReplacementCharacterForEachIllFormedByteAndHalfASurrogatePair)
{
    for (const auto& [illFormed, meant] :
         {std::pair{"\xFF"sv, "\uFFFD"sv},
          std::pair{"a\x80\x80z"sv, "a\uFFFD\uFFFDz"sv},
          std::pair{"a\xC3"sv, "a\uFFFD"sv},                       // the beginning of a character
          std::pair{"\xF0\x9F\x94z"sv, "\uFFFD\uFFFD\uFFFDz"sv},   // the same, in the middle
          std::pair{"a\xED\xA0\xBDz"sv, "a\uFFFD\uFFFD\uFFFDz"sv}, // half of a surrogate pair
          std::pair{"\xC0\xAF"sv, "\uFFFD\uFFFD"sv}})              // longer than it need be
    {
        EXPECT_EQ(roundTripped(illFormed), meant);
    }
    EXPECT_EQ(utf8Of({'a', 0xD83D, 'z', 0xD83D}), "a\uFFFDz\uFFFD");
    EXPECT_EQ(utf8Of({'a', 0xDD11, 'z'}), "a\uFFFDz");
    EXPECT_EQ(utf8Of({0xDD11, 0xD83D}), "\uFFFD\uFFFD") << "in the wrong order";
    EXPECT_EQ(utf8Of({0xD83D, 0xDD11}), "\U0001F511") << "a whole pair";
}

} // namespace
} // namespace orlimo

#include "platform/macos/StringConversion.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#import <Foundation/Foundation.h>

/// A text of any units, which outlive it.
@interface UnitString : NSString {
    const unichar* units;
    NSUInteger count;
}
- (instancetype)initWithUnits:(const unichar*)someUnits count:(NSUInteger)theirCount;
@end

@implementation UnitString

- (instancetype)initWithUnits:(const unichar*)someUnits count:(NSUInteger)theirCount
{
    self = [super init];
    if (self != nil) {
        units = someUnits;
        count = theirCount;
    }
    return self;
}

- (NSUInteger)length
{
    return count;
}

- (unichar)characterAtIndex:(NSUInteger)index
{
    return units[index];
}

@end

namespace orlimo {
namespace {

using namespace std::string_view_literals;

/// The text's units, as the system counts them.
std::u16string unitsOf(NSString* text)
{
    std::u16string units;
    for (NSUInteger index = 0; index < [text length]; ++index) {
        units.push_back([text characterAtIndex:index]);
    }
    return units;
}

std::string throughTheSystem(std::string_view utf8)
{
    @autoreleasepool {
        return toUtf8(toNSString(utf8));
    }
}

/// What comes of units that the system may hold though they are no well-formed text.
std::string utf8Of(const std::vector<unichar>& units)
{
    @autoreleasepool {
        UnitString* const text = [[[UnitString alloc] initWithUnits:units.data()
                                                              count:units.size()] autorelease];
        return toUtf8(text);
    }
}

TEST(StringConversion, GivesTheSameTextBack)
{
    for (const auto text :
         {"123456"sv,
          ""sv,
          " leading and trailing \n"sv,
          "\u00E9 e\u0301 \u0661\u0662 \u6F22\u5B57"sv,
          "\U0001F511\U0001F468\u200D\U0001F469"sv,
          "a mark \uFEFF in the middle"sv,
          "\uFFFD \uFFFE \uFFFF \U0010FFFF"sv})
    {
        EXPECT_EQ(throughTheSystem(text), text);
    }
}

TEST(StringConversion, TakesANulForACharacterLikeAnyOther)
{
    EXPECT_EQ(throughTheSystem("12\0 34"sv), "12\0 34"sv);
    EXPECT_EQ(throughTheSystem("\0"sv), "\0"sv);
    @autoreleasepool {
        EXPECT_EQ([toNSString("12\0 34"sv) length], 6U);
    }
}

TEST(StringConversion, NormalisesNothing)
{
    EXPECT_EQ(throughTheSystem("\u00E9"), "\u00E9");
    EXPECT_EQ(throughTheSystem("e\u0301"), "e\u0301");
}

TEST(StringConversion, KeepsAMarkInFront)
{
    // GNUstep takes it away from texts that it makes itself.
    EXPECT_EQ(utf8Of({0xFEFF, 'a'}), "\uFEFFa");
}

TEST(StringConversion, CountsInUnitsOfTwoBytes)
{
    @autoreleasepool {
        EXPECT_EQ(unitsOf(toNSString("a\U0001F511")), u"a\xD83D\xDD11");
    }
}

TEST(StringConversion, PutsTheReplacementCharacterForEachIllFormedByte)
{
    struct Case
    {
        std::string_view illFormed;
        std::string_view meant;
    };
    for (const auto& [illFormed, meant] :
         {Case{"\xFF", "\uFFFD"},
          Case{"a\xFFz", "a\uFFFDz"},
          Case{"a\x80\x80z", "a\uFFFD\uFFFDz"},
          Case{"a\xC3", "a\uFFFD"},                       // the beginning of a character
          Case{"\xE2\x82z", "\uFFFD\uFFFDz"},             // the same, in the middle
          Case{"\xF0\x9F\x94z", "\uFFFD\uFFFD\uFFFDz"},   // the same, of four bytes
          Case{"a\xED\xA0\xBDz", "a\uFFFD\uFFFD\uFFFDz"}, // half of a surrogate pair
          Case{"\xC0\xAF", "\uFFFD\uFFFD"},               // longer than it need be
          Case{
              "12\xFF"
              "34",
              "12\uFFFD34"}})
    {
        EXPECT_EQ(throughTheSystem(illFormed), meant);
    }
}

TEST(StringConversion, PutsTheReplacementCharacterForHalfASurrogatePair)
{
    EXPECT_EQ(utf8Of({'a', 0xD83D, 'z'}), "a\uFFFDz");
    EXPECT_EQ(utf8Of({'a', 0xDD11, 'z'}), "a\uFFFDz");
    EXPECT_EQ(utf8Of({'a', 0xD83D}), "a\uFFFD");
    EXPECT_EQ(utf8Of({0xDD11, 0xD83D}), "\uFFFD\uFFFD") << "the wrong way round";
    EXPECT_EQ(utf8Of({0xD83D, 0xDD11}), "\U0001F511") << "a whole pair";
}

TEST(StringConversion, GivesNothingForNoText)
{
    EXPECT_EQ(toUtf8(nil), "");
}

TEST(StringConversion, TakesTextsOfAnyLength)
{
    std::string text;
    for (int number = 0; text.size() < 1'000'000; ++number) {
        text.append(std::to_string(number)).append("\u00E9\U0001F511");
    }
    EXPECT_TRUE(throughTheSystem(text) == text);
}

TEST(StringConversion, TakesNoMoreThanItIsGiven)
{
    const std::string message = "Your code is 123456.";
    EXPECT_EQ(throughTheSystem(std::string_view(message).substr(13, 6)), "123456");
}

} // namespace
} // namespace orlimo

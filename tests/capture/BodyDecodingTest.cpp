#include "capture/BodyDecoding.h"

#include "tests/capture/reference/BodyBytes.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;
using testing::IsEmpty;
using Lines = std::vector<std::string>;
using OptionalText = std::optional<std::string>;

std::string marker()
{
    return "4E53537472696E67";
}

std::string stringPreamble()
{
    return "019584012B";
}

/// What becomes of one body, and what is logged on the way.
struct Decoding
{
    OptionalText messageText;
    Lines lines;

    friend bool operator==(const Decoding&, const Decoding&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Decoding& decoding)
    {
        return stream << testing::PrintToString(decoding.messageText) << " after "
                      << testing::PrintToString(decoding.lines);
    }
};

Decoding decodingOf(const std::string& hexadecimalText)
{
    const OutputCapture capture;
    OptionalText messageText = decodeAttributedBody(hexadecimalText);
    return {std::move(messageText), capture.lines()};
}

/// The hexadecimal text of a body whose string is `bytes`: length, words and all that follows.
std::string bodyWith(std::string_view bytes)
{
    return marker() + stringPreamble() + asHexadecimal(bytes);
}

std::string repeated(const std::string& text, std::size_t times)
{
    std::string whole;
    for (std::size_t time = 0; time < times; ++time) {
        whole += text;
    }
    return whole;
}

// The words.

TEST(BodyDecoding, LengthOfOneByte)
{
    EXPECT_EQ(
        decodingOf(marker() + stringPreamble() + "05" + "48656C6C6F"),
        (Decoding{"Hello", {"first not 129 5"}}));
}

TEST(BodyDecoding, LengthOfTwoBytesLowByteFirst)
{
    const std::string messageText = repeated("0123456789", 30);
    EXPECT_EQ(
        decodingOf(marker() + stringPreamble() + "812C01" + asHexadecimal(messageText)),
        (Decoding{messageText, {"first 129"}}));
}

TEST(BodyDecoding, LengthOfTwoBytesMayBeSmall)
{
    EXPECT_EQ(decodingOf(bodyWith("\x81\x05\0Hello"s)), (Decoding{"Hello", {"first 129"}}));
}

TEST(BodyDecoding, LongestWordsOfEitherForm)
{
    const std::string shorter(255, 's');
    EXPECT_EQ(decodingOf(bodyWith("\xFF" + shorter)), (Decoding{shorter, {"first not 129 255"}}));
    const std::string longer(65535, 'l');
    EXPECT_EQ(decodingOf(bodyWith("\x81\xFF\xFF" + longer)), (Decoding{longer, {"first 129"}}));
}

TEST(BodyDecoding, WhatFollowsTheStringIsIgnored)
{
    EXPECT_EQ(
        decodingOf(bodyWith("\x05Hello\x86\x84\x02iI and \xFF\xFE bytes that are no text")),
        (Decoding{"Hello", {"first not 129 5"}}));
    EXPECT_EQ(
        decodingOf(bodyWith("\x81\x05\0Hello\x86\x84\xFF"s)), (Decoding{"Hello", {"first 129"}}));
}

TEST(BodyDecoding, WhatStandsBeforeTheMarkerIsIgnored)
{
    EXPECT_EQ(
        decodingOf("040B0195 no hexadecimal text, of odd length " + bodyWith("\x05Hello")),
        (Decoding{"Hello", {"first not 129 5"}}));
}

TEST(BodyDecoding, LowerCaseDecodesTheSame)
{
    std::string body = bodyWith("\x0BjKlMnO\xC3\xBC-\xC3\x9F");
    for (char& character : body) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    EXPECT_EQ(decodingOf(body), (Decoding{"jKlMnOü-ß", {"first not 129 11"}}));
}

TEST(BodyDecoding, OtherRunIsNotRemoved)
{
    // Its first byte is then the length, and its second the word.
    EXPECT_EQ(
        decodingOf(marker() + "019484012B" + "05" + "48656C6C6F"),
        (Decoding{std::nullopt, {"first not 129 1"}}));
}

TEST(BodyDecoding, FixedRunIsRemovedInsideTheWords)
{
    EXPECT_EQ(
        decodingOf(marker() + stringPreamble() + "05" + "4865" + stringPreamble() + "6C6C6F"),
        (Decoding{"Hello", {"first not 129 5"}}));
}

TEST(BodyDecoding, FixedRunIsRemovedAcrossBytes)
{
    EXPECT_EQ(
        decodingOf(marker() + "05" + "4" + stringPreamble() + "8" + "656C6C6F"),
        (Decoding{"Hello", {"first not 129 5"}}));
    // The bytes 60 19 58 40 12 B5: the run is what stands between the first digit and the last.
    EXPECT_EQ(decodingOf(marker() + "01" + "6019584012B5"), (Decoding{"e", {"first not 129 1"}}));
}

TEST(BodyDecoding, FixedRunIsRemovedEverywhereAndOnce)
{
    EXPECT_EQ(
        decodingOf(
            marker() + stringPreamble() + stringPreamble() + "02" + stringPreamble() + "4869" +
            stringPreamble()),
        (Decoding{"Hi", {"first not 129 2"}}));
    // What comes together where a run was is not looked at again: 01 95 84 01 2B stays.
    EXPECT_EQ(
        decodingOf(marker() + "01958" + stringPreamble() + "4012B"),
        (Decoding{std::nullopt, {"first not 129 1"}}));
}

TEST(BodyDecoding, FixedRunMayBeMissing)
{
    EXPECT_EQ(
        decodingOf(marker() + asHexadecimal("\x05Hello")),
        (Decoding{"Hello", {"first not 129 5"}}));
}

TEST(BodyDecoding, SecondMarkerEndsTheBody)
{
    EXPECT_EQ(
        decodingOf(bodyWith("\x05Hello") + bodyWith("\x05World")),
        (Decoding{"Hello", {"first not 129 5"}}));
    EXPECT_EQ(
        decodingOf(bodyWith("\x02Hi") + marker() + "no hexadecimal text" + marker()),
        (Decoding{"Hi", {"first not 129 2"}}));
}

TEST(BodyDecoding, MarkerIsFoundAcrossBytesToo)
{
    EXPECT_EQ(decodingOf("0" + marker() + "02" + "4869"), (Decoding{"Hi", {"first not 129 2"}}));
}

TEST(BodyDecoding, Length82IsOneByte)
{
    const std::string messageText(130, 'x');
    EXPECT_EQ(
        decodingOf(bodyWith("\x82" + messageText + "more")),
        (Decoding{messageText, {"first not 129 130"}}));
}

TEST(BodyDecoding, Length80IsOneByte)
{
    const std::string messageText(128, 'x');
    EXPECT_EQ(
        decodingOf(bodyWith("\x80" + messageText)), (Decoding{messageText, {"first not 129 128"}}));
}

TEST(BodyDecoding, WordsOfEveryKind)
{
    for (const std::string& messageText :
         {"a\0b"s,
          "Grüße"s,
          "Ваш код: 482913"s,
          "確認コード"s,
          "👍🏽 1️⃣"s,
          "\uFFFC photo"s})
    {
        EXPECT_EQ(
            decodingOf(bodyWith(archivedLength(messageText.size()) + messageText)),
            (Decoding{messageText, {"first not 129 " + std::to_string(messageText.size())}}));
    }
}

TEST(BodyDecoding, IllFormedWordsWithOneByteLengthAreNothing)
{
    for (const std::string& messageText :
         {"\xFF"s, "\xC0\xAF"s, "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xE2\x82"s, "\x80"s})
    {
        EXPECT_EQ(
            decodingOf(bodyWith(archivedLength(messageText.size()) + messageText)),
            (Decoding{std::nullopt, {"first not 129 " + std::to_string(messageText.size())}}));
    }
}

TEST(BodyDecoding, LengthThatCutsCharacterIsNothing)
{
    EXPECT_EQ(
        decodingOf(bodyWith("\x02\xE2\x82\xAC")), (Decoding{std::nullopt, {"first not 129 2"}}));
}

TEST(BodyDecoding, MutableStringsAsTheyAreStored)
{
    EXPECT_EQ(
        decodingOf(asHexadecimal(mutableStringBody("Your code is 482913"))),
        (Decoding{"Your code is 482913", {"first not 129 19"}}));
    const std::string longWords =
        "Votre code : 482913. " + repeated("Ne le partagez jamais é. ", 12);
    EXPECT_EQ(
        decodingOf(asHexadecimal(mutableStringBody(longWords))),
        (Decoding{longWords, {"first 129"}}));
}

TEST(BodyDecoding, ImmutableStringsAsTheyAreStoredAreNothing)
{
    EXPECT_EQ(
        decodingOf(asHexadecimal(immutableStringBody("Your code is 482913"))),
        (Decoding{std::nullopt, {"first not 129 1"}}));
}

TEST(BodyDecoding, NonAsciiCharactersCountAsCharacters)
{
    // Five characters of seven bytes; seven could not be cut into pairs.
    EXPECT_EQ(decodingOf(marker() + "0141" + "€"), (Decoding{"A", {"first not 129 1"}}));
    // Upper case makes the ligature and the sharp s two letters each, which decode as such:
    // "FI" is the byte F0, "SS" is 33.
    EXPECT_EQ(decodingOf(marker() + "01" + "ß"), (Decoding{"3", {"first not 129 1"}}));
    EXPECT_EQ(decodingOf(marker() + "01" + "ﬁ"), (Decoding{std::nullopt, {"first not 129 1"}}));
}

// The fatal stops.

struct MalformedBody
{
    std::string name;
    std::string hexadecimalText;
    Lines lines;
    std::string reason;
};

void PrintTo(const MalformedBody& body, std::ostream* stream)
{
    *stream << body.name;
}

class BodyDecodingDeathTest : public testing::TestWithParam<MalformedBody>
{};

TEST_P(BodyDecodingDeathTest, StopsTheProgram)
{
    const MalformedBody& body = GetParam();
    expectFatalStop(
        [&] { (void)decodeAttributedBody(body.hexadecimalText); },
        body.lines,
        {"capture/BodyDecoding.cpp", body.reason});
}

constexpr const char* noString = "a message body holds no string";
constexpr const char* nothingFollows = "nothing follows the string's class name in a message body";
constexpr const char* halfByte = "a message body ends in the middle of a byte";
constexpr const char* noLength = "the string in a message body has no length";
constexpr const char* cutShort = "the string in a message body is cut short";
constexpr const char* lengthCutShort = "the length in a message body is cut short";
constexpr const char* notUtf8 = "the string in a message body is not UTF-8";

INSTANTIATE_TEST_SUITE_P(
    MalformedBodies,
    BodyDecodingDeathTest,
    testing::Values(
        MalformedBody{"Empty", "", {}, noString},
        MalformedBody{"MarkerAbsent", "040B73747265616D7479706564", {}, noString},
        MalformedBody{"MarkerCutShort", "4E53537472696E6", {}, noString},
        MalformedBody{"MarkerAlone", marker(), {}, nothingFollows},
        MalformedBody{"MarkerTwice", marker() + marker(), {}, nothingFollows},
        MalformedBody{"NothingAfterFixedRun", marker() + stringPreamble(), {}, nothingFollows},
        MalformedBody{
            "NothingBetweenMarkers",
            marker() + stringPreamble() + marker() + "0141",
            {},
            nothingFollows},
        MalformedBody{"OneDigit", marker() + stringPreamble() + "0", {}, halfByte},
        MalformedBody{"OddNumberOfDigits", bodyWith("\x05Hello") + "8", {}, halfByte},
        MalformedBody{"OneByteLengthZero", bodyWith("\0Hello"s), {"first not 129 0"}, noLength},
        MalformedBody{"OneByteLengthAlone", bodyWith("\x05"), {"first not 129 5"}, cutShort},
        MalformedBody{"OneByteTooFew", bodyWith("\x05Hell"), {"first not 129 5"}, cutShort},
        MalformedBody{"ImmutableStringAndNoMore", marker() + "01", {"first not 129 1"}, cutShort},
        MalformedBody{"TwoByteLengthAlone", bodyWith("\x81"), {"first 129"}, lengthCutShort},
        MalformedBody{"TwoByteLengthHalf", bodyWith("\x81\x05"), {"first 129"}, lengthCutShort},
        MalformedBody{"TwoByteLengthZero", bodyWith("\x81\0\0Hello"s), {"first 129"}, noLength},
        MalformedBody{"TwoByteTooFew", bodyWith("\x81\x05\0Hell"s), {"first 129"}, cutShort},
        MalformedBody{"TwoByteNoWords", bodyWith("\x81\x05\0"s), {"first 129"}, cutShort},
        MalformedBody{
            "TwoByteHighByteFirst", bodyWith("\x81\0\x05Hello"s), {"first 129"}, cutShort},
        MalformedBody{"TwoByteNotUtf8", bodyWith("\x81\x02\0\xC0\xAF"s), {"first 129"}, notUtf8},
        MalformedBody{
            "TwoByteSurrogate", bodyWith("\x81\x03\0\xED\xA0\x80"s), {"first 129"}, notUtf8},
        MalformedBody{
            "TwoByteCutCharacter", bodyWith("\x81\x02\0\xE2\x82\xAC"s), {"first 129"}, notUtf8}),
    [](const auto& given) { return given.param.name; });

// The bytes.

std::vector<std::uint8_t> bytes(std::initializer_list<int> values)
{
    return {values.begin(), values.end()};
}

TEST(HexToBytes, PairsOfDigits)
{
    EXPECT_THAT(hexToBytes(""), IsEmpty());
    EXPECT_EQ(hexToBytes("00017F80FF"), bytes({0x00, 0x01, 0x7F, 0x80, 0xFF}));
    EXPECT_EQ(hexToBytes("abcdef"), hexToBytes("ABCDEF"));
    EXPECT_EQ(
        hexToBytes("0123456789ABCDEF"), bytes({0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}));
}

TEST(HexToBytes, OtherCharactersThatTheTableNames)
{
    EXPECT_EQ(hexToBytes("GP@ -"s + "0"), bytes({0, 0, 0}));
    EXPECT_EQ(hexToBytes("QqVvWw"), bytes({0x11, 0x66, 0x77}));
}

/// What the definition of the table says, row by row.
int valueInTable(int character)
{
    const int index = (character & 0x1F) ^ 0x10;
    if (index <= 9) {
        return index;
    }
    if (index <= 16) {
        return 0;
    }
    return index <= 22 ? index - 7 : 0;
}

TEST(HexToBytes, EveryAsciiCharacterHasItsValueInTheTable)
{
    for (int high = 0; high < 0x80; ++high) {
        for (int low = 0; low < 0x80; ++low) {
            if (high == '\r' && low == '\n') {
                continue; // one character, see below
            }
            const std::string pair{static_cast<char>(high), static_cast<char>(low)};
            ASSERT_EQ(hexToBytes(pair), bytes({valueInTable(high) * 16 + valueInTable(low)}))
                << high << " " << low;
        }
    }
}

TEST(HexToBytes, BytesOfOtherCharactersAreLookedUpLikeAnyOther)
{
    // The bytes C3 B1, and no more of them than there are characters.
    const int value = valueInTable(0xC3) * 16 + valueInTable(0xB1);
    for (const std::string& text : {"ñ"s, "ññ"s, "ñ7"s}) {
        EXPECT_EQ(hexToBytes(text), bytes({value})) << text;
    }
    EXPECT_EQ(hexToBytes("ñ77"), bytes({value, 0x77}));
}

TEST(HexToBytes, LengthIsCountedInCharacters)
{
    // A letter and its mark are one of three characters; the pairs are taken from the five bytes.
    EXPECT_EQ(
        hexToBytes("e\u030112"),
        bytes(
            {valueInTable('e') * 16 + valueInTable(0xCC),
             valueInTable(0x81) * 16 + valueInTable('1')}));
    EXPECT_EQ(hexToBytes("\r\n"), bytes({0}));
    EXPECT_EQ(hexToBytes("\r\n11"), bytes({0, 0x11}));
}

TEST(HexToBytesDeathTest, OddLengthStopsTheProgram)
{
    for (const std::string& text : {"1"s, "123"s}) {
        expectFatalStop(
            [&] { (void)hexToBytes(text); }, {}, {"capture/BodyDecoding.cpp", halfByte});
    }
}

} // namespace

} // namespace orlimo

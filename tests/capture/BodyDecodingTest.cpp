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

const std::string marker = "4E53537472696E67";
const std::string stringPreamble = "019584012B";

/// The hexadecimal text of a body whose string is `bytes`: its length, its text and all that
/// follows.
std::string bodyWith(std::string_view bytes)
{
    return marker + stringPreamble + asHexadecimal(bytes);
}

struct BodyCase
{
    std::string name;
    std::string hexadecimalText;
    OptionalText messageText;
    std::string line;
    friend void PrintTo(const BodyCase& given, std::ostream* stream) { *stream << given.name; }
};

class BodyDecoding : public testing::TestWithParam<BodyCase>
{};

TEST_P(BodyDecoding, YieldsTextAndLogsFormOfLength)
{
    const BodyCase& given = GetParam();
    OptionalText messageText;
    Lines lines;
    {
        const OutputCapture capture;
        messageText = decodeAttributedBody(given.hexadecimalText);
        lines = capture.lines();
    }
    EXPECT_EQ(messageText, given.messageText);
    EXPECT_EQ(lines, Lines{given.line});
}

const std::string text255(255, 's');
const std::string text300(300, 'x');
const std::string text65535(65535, 'l');
const std::string everyKindOfText =
    "a\0b Gr\u00FC\u00DFe \u0412\u0430\u0448 \u78BA \U0001F44D\U0001F3FD \uFFFC"s;

INSTANTIATE_TEST_SUITE_P(
    Bodies,
    BodyDecoding,
    testing::Values(
        BodyCase{
            "LengthOfOneByte",
            marker + stringPreamble + "0548656C6C6F",
            "Hello",
            "first not 129 5"},
        BodyCase{
            "LengthOfTwoBytesLowByteFirst",
            bodyWith("\x81\x2C\x01" + text300),
            text300,
            "first 129"},
        BodyCase{"SmallLengthOfTwoBytes", bodyWith("\x81\x05\0Hello"s), "Hello", "first 129"},
        BodyCase{"LongestOfOneByte", bodyWith("\xFF" + text255), text255, "first not 129 255"},
        BodyCase{"LongestOfTwoBytes", bodyWith("\x81\xFF\xFF" + text65535), text65535, "first 129"},
        BodyCase{
            "Length80IsOneByte",
            bodyWith("\x80" + std::string(128, 'x')),
            std::string(128, 'x'),
            "first not 129 128"},
        BodyCase{
            "Length82IsOneByte",
            bodyWith("\x82" + std::string(130, 'x') + "more"),
            std::string(130, 'x'),
            "first not 129 130"},
        BodyCase{
            "TrailingBytesAreIgnored",
            bodyWith("\x05Hello\x86\x84\x02iI and \xFF\xFE bytes that are no text"),
            "Hello",
            "first not 129 5"},
        BodyCase{
            "LeadingTextIsIgnored",
            "040B0195 no hexadecimal text, of odd length " + bodyWith("\x05Hello"),
            "Hello",
            "first not 129 5"},
        BodyCase{
            "LowerCase",
            "4e53537472696e67019584012b0b6a4b6c4d6e4fc3bc2dc39f",
            "jKlMnO\u00FC-\u00DF",
            "first not 129 11"},
        BodyCase{
            "OtherPreambleIsNotRemoved", // its first byte is then the length
            marker + "019484012B" + "0548656C6C6F",
            {},
            "first not 129 1"},
        BodyCase{
            "MissingPreamble", marker + asHexadecimal("\x05Hello"), "Hello", "first not 129 5"},
        BodyCase{
            "PreambleIsRemovedEverywhere",
            marker + stringPreamble + stringPreamble + "02" + stringPreamble + "4869" +
                stringPreamble,
            "Hi",
            "first not 129 2"},
        BodyCase{
            // The bytes 60 19 58 40 12 B5: the preamble is between the first digit and the last.
            "PreambleIsRemovedAcrossBytes",
            marker + "01" + "6019584012B5",
            "e",
            "first not 129 1"},
        BodyCase{
            "PreambleThatRemovalCreatesStays",
            marker + "01958" + stringPreamble + "4012B",
            {},
            "first not 129 1"},
        BodyCase{
            "SecondMarkerEndsBody",
            bodyWith("\x02Hi") + marker + "no hexadecimal text" + marker,
            "Hi",
            "first not 129 2"},
        BodyCase{"MarkerAcrossBytes", "0" + marker + "02" + "4869", "Hi", "first not 129 2"},
        BodyCase{
            "TextOfEveryKind",
            bodyWith(archivedLength(everyKindOfText.size()) + everyKindOfText),
            everyKindOfText,
            "first not 129 " + std::to_string(everyKindOfText.size())},
        BodyCase{"IllFormedText", bodyWith("\x02\xC0\xAF"), {}, "first not 129 2"},
        BodyCase{"TruncatedCharacter", bodyWith("\x02\xE2\x82\xAC"), {}, "first not 129 2"},
        BodyCase{
            "MutableArchive",
            asHexadecimal(mutableStringBody("Your code is 482913")),
            "Your code is 482913",
            "first not 129 19"},
        BodyCase{
            "ImmutableArchive",
            asHexadecimal(immutableStringBody("Your code is 482913")),
            {},
            "first not 129 1"},
        // Five characters of seven bytes; seven could not be divided into pairs.
        BodyCase{"CharactersAreCounted", marker + "0141" + "\u20AC", "A", "first not 129 1"},
        // Upper case makes two letters of these, which decode as such: "SS" is 33, "FI" is F0.
        BodyCase{"SharpS", marker + "01" + "\u00DF", "3", "first not 129 1"},
        BodyCase{"Ligature", marker + "01" + "\uFB01", {}, "first not 129 1"}),
    [](const auto& given) { return given.param.name; });

// The fatal stops.

struct MalformedBody
{
    std::string name;
    std::string hexadecimalText;
    Lines lines;
    std::string reason;
    friend void PrintTo(const MalformedBody& given, std::ostream* stream) { *stream << given.name; }
};

class BodyDecodingDeathTest : public testing::TestWithParam<MalformedBody>
{};

TEST_P(BodyDecodingDeathTest, IsFatal)
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
        MalformedBody{"MarkerAlone", marker, {}, nothingFollows},
        MalformedBody{"MarkerTwice", marker + marker, {}, nothingFollows},
        MalformedBody{"NothingAfterFixedRun", marker + stringPreamble, {}, nothingFollows},
        MalformedBody{
            "NothingBetweenMarkers", marker + stringPreamble + marker + "0141", {}, nothingFollows},
        MalformedBody{"OddNumberOfDigits", bodyWith("\x05Hello") + "8", {}, halfByte},
        MalformedBody{"OneByteLengthZero", bodyWith("\0Hello"s), {"first not 129 0"}, noLength},
        MalformedBody{"OneByteTooFew", bodyWith("\x05Hell"), {"first not 129 5"}, cutShort},
        MalformedBody{"ImmutableStringAndNoMore", marker + "01", {"first not 129 1"}, cutShort},
        MalformedBody{"TwoByteLengthAlone", bodyWith("\x81"), {"first 129"}, lengthCutShort},
        MalformedBody{"TwoByteLengthHalf", bodyWith("\x81\x05"), {"first 129"}, lengthCutShort},
        MalformedBody{"TwoByteLengthZero", bodyWith("\x81\0\0Hello"s), {"first 129"}, noLength},
        MalformedBody{"TwoByteTooFew", bodyWith("\x81\x05\0Hell"s), {"first 129"}, cutShort},
        MalformedBody{
            "TwoByteHighByteFirst", bodyWith("\x81\0\x05Hello"s), {"first 129"}, cutShort},
        MalformedBody{"TwoByteNotUtf8", bodyWith("\x81\x02\0\xC0\xAF"s), {"first 129"}, notUtf8},
        MalformedBody{
            "TwoByteCutCharacter", bodyWith("\x81\x02\0\xE2\x82\xAC"s), {"first 129"}, notUtf8}),
    [](const auto& given) { return given.param.name; });

// The bytes.

std::vector<std::uint8_t> bytes(std::initializer_list<int> values)
{
    return {values.begin(), values.end()};
}

/// The definition of the table, row by row.
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

TEST(HexToBytes, EveryPairOfAsciiCharactersHasItsValueInTheTable)
{
    EXPECT_THAT(hexToBytes(""), IsEmpty());
    EXPECT_EQ(hexToBytes("00017F80FFaf"), bytes({0x00, 0x01, 0x7F, 0x80, 0xFF, 0xAF}));
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

TEST(HexToBytes, PairsOfBytesAreTakenWhileCharactersAreCounted)
{
    const auto value = [](int high, int low) {
        return valueInTable(high) * 16 + valueInTable(low);
    };
    const int ene = value(0xC3, 0xB1);
    for (const std::string& text : {"ñ"s, "ññ"s, "ñ7"s}) {
        EXPECT_EQ(hexToBytes(text), bytes({ene})) << text;
    }
    EXPECT_EQ(hexToBytes("ñ77"), bytes({ene, 0x77}));
    // A letter and its mark are one of three characters; the pairs are taken from the five bytes.
    EXPECT_EQ(hexToBytes("e\u030112"), bytes({value('e', 0xCC), value(0x81, '1')}));
    EXPECT_EQ(hexToBytes("\r\n"), bytes({0}));
    EXPECT_EQ(hexToBytes("\r\n11"), bytes({0, 0x11}));
}

} // namespace

} // namespace orlimo

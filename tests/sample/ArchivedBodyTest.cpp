#include "sample/ArchivedBody.h"

#include "capture/BodyDecoding.h"
#include "sample/SampleStore.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/OutputCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orlimo::sample {
namespace {

using namespace std::string_literals;

constexpr const char* smallA = "a";

// The two archives, written out: what stands before the words' length, between the words and the
// number of characters that the attributes cover, and after it.
const std::string mutableHead =
    "\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01\x40"
    "\x84\x84\x84\x19NSMutableAttributedString\x00\x84\x84\x12NSAttributedString\x00"
    "\x84\x84\x08NSObject\x00\x85\x92\x84\x84\x84\x0FNSMutableString\x01"
    "\x84\x84\x08NSString\x01\x95\x84\x01\x2B"s;
const std::string immutableHead =
    "\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01\x40"
    "\x84\x84\x84\x12NSAttributedString\x00"
    "\x84\x84\x08NSObject\x00\x85\x92\x84\x84\x84\x08NSString\x01\x94\x84\x01\x2B"s;
const std::string attributes = "\x86\x84\x02\x69\x49\x01"s;
const std::string mutableTail =
    "\x92\x84\x84\x84\x0CNSDictionary\x00\x95\x84\x01\x69\x01"
    "\x92\x84\x98\x98\x1D__kIMMessagePartAttributeName\x86"
    "\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x95\x84\x01\x2A\x84\x9B\x9B\x00"
    "\x86\x86\x86"s;
const std::string immutableTail =
    "\x92\x84\x84\x84\x0CNSDictionary\x00\x94\x84\x01\x69\x01"
    "\x92\x84\x96\x96\x1D__kIMMessagePartAttributeName\x86"
    "\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x94\x84\x01\x2A\x84\x99\x99\x00"
    "\x86\x86\x86"s;

std::string bytesOf(std::string_view words, ArchivedString string)
{
    const auto body = archivedBody(words, string);
    return {body.begin(), body.end()};
}

TEST(ArchivedBody, MutableStringWithAShortWord)
{
    EXPECT_EQ(
        bytesOf("Hello", ArchivedString::mutableString),
        mutableHead + "\x05Hello" + attributes + "\x05" + mutableTail);
}

TEST(ArchivedBody, ImmutableStringWithAShortWord)
{
    EXPECT_EQ(
        bytesOf("Hello", ArchivedString::immutableString),
        immutableHead + "\x05Hello" + attributes + "\x05" + immutableTail);
}

TEST(ArchivedBody, MutableStringWith300Bytes)
{
    const std::string words(300, 'x');
    EXPECT_EQ(
        bytesOf(words, ArchivedString::mutableString),
        mutableHead + "\x81\x2C\x01" + words + attributes + "\x81\x2C\x01" + mutableTail);
}

TEST(ArchivedBody, ImmutableStringWith300Bytes)
{
    const std::string words(300, 'x');
    EXPECT_EQ(
        bytesOf(words, ArchivedString::immutableString),
        immutableHead + "\x81\x2C\x01" + words + attributes + "\x81\x2C\x01" + immutableTail);
}

TEST(ArchivedBody, LengthsTakeTwoBytesFrom128On)
{
    const std::string words127(127, 'x');
    EXPECT_EQ(
        bytesOf(words127, ArchivedString::mutableString),
        mutableHead + "\x7F" + words127 + attributes + "\x7F" + mutableTail);
    const std::string words128(128, 'x');
    EXPECT_EQ(
        bytesOf(words128, ArchivedString::mutableString),
        mutableHead + "\x81\x80\x00"s + words128 + attributes + "\x81\x80\x00"s + mutableTail);
}

TEST(ArchivedBody, WordsCountInBytesAndTheirAttributesInUtf16Units)
{
    // One letter of one byte, one of two, one of three, and a picture of four that takes two units.
    const std::string words = smallA + "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"s;
    EXPECT_EQ(
        bytesOf(words, ArchivedString::mutableString),
        mutableHead + "\x0A" + words + attributes + "\x05" + mutableTail);
}

TEST(ArchivedBody, PlaceholderOfAnAttachmentIsOneCharacter)
{
    EXPECT_EQ(
        bytesOf("\xEF\xBF\xBC", ArchivedString::immutableString),
        immutableHead + "\x03\xEF\xBF\xBC" + attributes + "\x01" + immutableTail);
}

TEST(ArchivedBody, NoWordsAtAll)
{
    EXPECT_EQ(
        bytesOf("", ArchivedString::mutableString),
        mutableHead + "\x00"s + attributes + "\x00"s + mutableTail);
}

TEST(ArchivedBody, LongestWordsAre65535Bytes)
{
    const std::string longest(65535, 'x');
    EXPECT_EQ(
        bytesOf(longest, ArchivedString::mutableString),
        mutableHead + "\x81\xFF\xFF" + longest + attributes + "\x81\xFF\xFF" + mutableTail);
    EXPECT_THROW(
        (void)archivedBody(longest + "x", ArchivedString::mutableString), std::length_error);
}

/// The hexadecimal text in which a body comes out of a store.
std::string readBack(const std::string& words, ArchivedString string)
{
    const TemporaryFolder folder;
    SampleStore store(folder.path() / "chat.db", Synchronous::off);
    store.append({.attributedBody = archivedBody(words, string)});
    const auto values =
        StoreContent(folder.path() / "chat.db").column("SELECT HEX(attributedBody) FROM message");
    return values.empty() ? "" : values.front();
}

class DecodedBody : public testing::TestWithParam<std::string>
{};

TEST_P(DecodedBody, HasTheWordsOfTheMutableString)
{
    const OutputCapture log;
    EXPECT_EQ(
        decodeAttributedBody(readBack(GetParam(), ArchivedString::mutableString)), GetParam());
}

TEST_P(DecodedBody, IsNothingForTheImmutableString)
{
    const OutputCapture log;
    EXPECT_EQ(
        decodeAttributedBody(readBack(GetParam(), ArchivedString::immutableString)), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Words,
    DecodedBody,
    testing::Values(
        "x",
        "Your code is 482913.",
        "Gr\xC3\xBC\xC3\x9F"
        "e \xF0\x9F\x98\x80",
        std::string(127, 'a'),
        std::string(128, 'b'),
        std::string(129, 'c'),
        std::string(255, 'd'),
        std::string(256, 'e'),
        std::string(300, 'f')),
    [](const auto& parameter) { return "Of" + std::to_string(parameter.param.size()) + "Bytes"; });

} // namespace
} // namespace orlimo::sample

#include "sample/ArchivedBody.h"

#include "capture/BodyDecoding.h"
#include "sample/SampleStore.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orlimo::sample {
namespace {

using namespace std::string_view_literals;

// The two archives, written out: what stands before the words' length, between the words and the
// number of characters that the attributes cover, and after it.
constexpr std::string_view mutableHead =
    "\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01\x40"
    "\x84\x84\x84\x19NSMutableAttributedString\x00\x84\x84\x12NSAttributedString\x00"
    "\x84\x84\x08NSObject\x00\x85\x92\x84\x84\x84\x0FNSMutableString\x01"
    "\x84\x84\x08NSString\x01\x95\x84\x01\x2B"sv;
constexpr std::string_view immutableHead =
    "\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01\x40"
    "\x84\x84\x84\x12NSAttributedString\x00"
    "\x84\x84\x08NSObject\x00\x85\x92\x84\x84\x84\x08NSString\x01\x94\x84\x01\x2B"sv;
constexpr std::string_view attributes = "\x86\x84\x02\x69\x49\x01"sv;
constexpr std::string_view mutableTail =
    "\x92\x84\x84\x84\x0CNSDictionary\x00\x95\x84\x01\x69\x01"
    "\x92\x84\x98\x98\x1D__kIMMessagePartAttributeName\x86"
    "\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x95\x84\x01\x2A\x84\x9B\x9B\x00"
    "\x86\x86\x86"sv;
constexpr std::string_view immutableTail =
    "\x92\x84\x84\x84\x0CNSDictionary\x00\x94\x84\x01\x69\x01"
    "\x92\x84\x96\x96\x1D__kIMMessagePartAttributeName\x86"
    "\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x94\x84\x01\x2A\x84\x99\x99\x00"
    "\x86\x86\x86"sv;

/// The archive of `words`, whose length in bytes and in UTF-16 units is given as it is stored.
std::string expectedBody(
    ArchivedString string, std::string_view length, std::string_view words, std::string_view units)
{
    const bool isMutable = string == ArchivedString::mutableString;
    std::string body(isMutable ? mutableHead : immutableHead);
    body.append(length).append(words).append(attributes).append(units);
    return body.append(isMutable ? mutableTail : immutableTail);
}

std::string bytesOf(std::string_view words, ArchivedString string)
{
    const auto body = archivedBody(words, string);
    return {body.begin(), body.end()};
}

class ArchivedBody : public testing::TestWithParam<ArchivedString>
{
protected:
    void expect(std::string_view length, std::string_view words, std::string_view units) const
    {
        EXPECT_EQ(bytesOf(words, GetParam()), expectedBody(GetParam(), length, words, units));
    }
};

TEST_P(ArchivedBody, OfAShortWord)
{
    expect("\x05", "Hello", "\x05");
}

TEST_P(ArchivedBody, Of300Bytes)
{
    expect("\x81\x2C\x01", std::string(300, 'x'), "\x81\x2C\x01");
}

TEST_P(ArchivedBody, HasLengthsOfTwoBytesFrom128On)
{
    expect("\x7F", std::string(127, 'x'), "\x7F");
    expect("\x81\x80\x00"sv, std::string(128, 'x'), "\x81\x80\x00"sv);
}

TEST_P(ArchivedBody, CountsWordsInBytesAndTheirAttributesInUtf16Units)
{
    // One letter of one byte, one of two, one of three, and a picture of four that takes two units.
    expect("\x0A", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\x05");
}

TEST_P(ArchivedBody, TakesThePlaceholderOfAnAttachmentForOneCharacter)
{
    expect("\x03", "\xEF\xBF\xBC", "\x01");
}

TEST_P(ArchivedBody, OfNoWords)
{
    expect("\x00"sv, "", "\x00"sv);
}

TEST_P(ArchivedBody, HasWordsOf65535BytesAtTheMost)
{
    const std::string longest(65535, 'x');
    expect("\x81\xFF\xFF", longest, "\x81\xFF\xFF");
    EXPECT_THROW((void)archivedBody(longest + "x", GetParam()), std::length_error);
}

INSTANTIATE_TEST_SUITE_P(
    OfBothStrings,
    ArchivedBody,
    testing::Values(ArchivedString::mutableString, ArchivedString::immutableString),
    [](const auto& parameter) {
        return parameter.param == ArchivedString::mutableString ? "Mutable" : "Immutable";
    });

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

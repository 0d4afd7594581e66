#include "sample/ArchivedBody.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orlimo::sample {
namespace {

using namespace std::string_view_literals;

// The two archives, literally: the bytes before the words' length, those between the words and the
// number of characters that the attributes cover, and those after it.
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

/// The archive of `words`; their length in bytes and in UTF-16 units is given as it is stored.
std::string expectedBody(
    ArchivedString string, std::string_view length, std::string_view words, std::string_view units)
{
    const bool isMutable = string == ArchivedString::mutableString;
    std::string body(isMutable ? mutableHead : immutableHead);
    body.append(length).append(words).append(attributes).append(units);
    return body.append(isMutable ? mutableTail : immutableTail);
}

class ArchivedBody : public testing::TestWithParam<ArchivedString>
{};

TEST_P(ArchivedBody, IsTheStoresOwnByteForByte)
{
    struct Case
    {
        std::string_view length;
        std::string words;
        std::string_view units;
    };
    const std::vector<Case> cases{
        {"\x00"sv, "", "\x00"sv},
        {"\x05", "Hello", "\x05"},
        {"\x7F", std::string(127, 'x'), "\x7F"},
        {"\x81\x80\x00"sv, std::string(128, 'x'), "\x81\x80\x00"sv},
        {"\x81\x2C\x01", std::string(300, 'x'), "\x81\x2C\x01"},
        {"\x81\xFF\xFF", std::string(65535, 'x'), "\x81\xFF\xFF"},
        // Characters of one to four bytes, the last of which has two UTF-16 units.
        {"\x0A", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\x05"},
        {"\x03", "\xEF\xBF\xBC", "\x01"}, // the placeholder of an attachment
    };
    for (const auto& [length, words, units] : cases) {
        const auto body = archivedBody(words, GetParam());
        EXPECT_EQ(
            std::string(body.begin(), body.end()), expectedBody(GetParam(), length, words, units));
    }
    EXPECT_THROW((void)archivedBody(std::string(65536, 'x'), GetParam()), std::length_error);
}

INSTANTIATE_TEST_SUITE_P(
    OfBothStrings,
    ArchivedBody,
    testing::Values(ArchivedString::mutableString, ArchivedString::immutableString),
    [](const auto& parameter) {
        return parameter.param == ArchivedString::mutableString ? "Mutable" : "Immutable";
    });

} // namespace
} // namespace orlimo::sample

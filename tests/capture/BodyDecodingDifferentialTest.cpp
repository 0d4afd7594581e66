#include "capture/BodyDecoding.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/RandomSource.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"

#include <QByteArray>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;

#if defined(ORLIMO_LONG_RUN) && !defined(ORLIMO_SANITIZED)
constexpr int inputs = 40'000;
constexpr int forkedInputs = 4'000;
#else
constexpr int inputs = 3'000;
constexpr int forkedInputs = 50;
#endif

const std::string marker = "4E53537472696E67";
const std::string stringPreamble = "019584012B";

/// Text, well-formed most of the time, and rarely holding what the decoding looks for.
std::string randomMessageText(RandomSource& randomSource)
{
    static const std::vector<std::string> wellFormed{
        "Your code is ", "482913", "é", "確認", "\U0001F44D", "\0"s, "\r\n", "\uFFFC"};
    static const std::vector<std::string> illFormed{
        "\x95", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"};
    static const std::vector<std::string> special{"NSString", "\x01\x95\x84\x01\x2B"};
    std::string messageText;
    if (randomSource.once(40)) {
        return messageText;
    }
    for (std::size_t pieces = 1 + randomSource.below(randomSource.once(3) ? 60 : 10); pieces > 0;
         --pieces)
    {
        messageText += randomSource.oneOf(wellFormed);
    }
    if (randomSource.once(6)) {
        messageText += randomSource.oneOf(illFormed) + randomSource.oneOf(wellFormed);
    }
    if (randomSource.once(8)) {
        messageText += randomSource.oneOf(special) + randomSource.oneOf(wellFormed);
    }
    return messageText;
}

/// A length and text that matches it or, now and then, does not.
std::string randomArchivedString(RandomSource& randomSource)
{
    const std::string messageText = randomMessageText(randomSource);
    std::size_t length = messageText.size();
    if (randomSource.once(6)) {
        length = randomSource.once(2) ? randomSource.below(400) : length + randomSource.below(3);
    }
    switch (randomSource.below(8)) {
    case 0:
        return "\x81"s + static_cast<char>(length % 256) + static_cast<char>(length / 256) +
               messageText;
    case 1:
        return "\x82"s + messageText;
    case 2:
        return static_cast<char>(length) + messageText;
    default:
        return archivedLength(length) + messageText;
    }
}

std::string randomArchive(RandomSource& randomSource)
{
    switch (randomSource.below(4)) {
    case 0:
        return asHexadecimal(mutableStringBody(randomMessageText(randomSource)));
    case 1:
        return asHexadecimal(immutableStringBody(randomMessageText(randomSource)));
    default:
        return marker + stringPreamble + asHexadecimal(randomArchivedString(randomSource)) +
               (randomSource.once(2) ? "8684" : "");
    }
}

/// The first position from `place` on at which a code point begins.
std::size_t codePointFrom(const std::string& text, std::size_t place)
{
    while (place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U) {
        ++place;
    }
    return place;
}

/// A position in `text`, often near the length, where most of the rules apply.
std::size_t randomPosition(RandomSource& randomSource, const std::string& text)
{
    const std::size_t found = text.find(marker);
    if (found == std::string::npos || randomSource.once(2)) {
        return codePointFrom(text, randomSource.below(text.size() + 1));
    }
    const std::size_t afterMarker = found + marker.size() + randomSource.below(16);
    return codePointFrom(text, std::min(afterMarker, text.size()));
}

std::string mutated(RandomSource& randomSource, std::string text)
{
    static const std::vector<std::string> insertions{
        "0",      "7",      "F",    "G",           "q",
        " ",      "-",      "@",    "81",          "82",
        "00",     "\r\n",   "\0"s,  "ß",           "ﬁ",
        "ŉ",      "ΐ",      "ı",    "é",           "e\u0301",
        "\u0301", "\u20E3", "€",    "\U0001F44D",  "\U0001F1E9\U0001F1EA",
        "\u0600", "\u200D", marker, stringPreamble};
    const std::size_t place = randomPosition(randomSource, text);
    switch (randomSource.below(5)) {
    case 0:
        return text.substr(0, place);
    case 1:
        return QByteArray::fromStdString(text).toLower().toStdString();
    case 2:
        return text.erase(place, codePointFrom(text, place + 1) - place);
    default:
        return text.insert(place, randomSource.oneOf(insertions));
    }
}

std::string randomBody(RandomSource& randomSource)
{
    std::string body = randomArchive(randomSource);
    if (randomSource.once(10)) {
        body += randomArchive(randomSource);
    }
    for (std::size_t mutations = randomSource.once(3) ? 1 + randomSource.below(4) : 0;
         mutations > 0;
         --mutations)
    {
        body = mutated(randomSource, body);
    }
    return body;
}

void expectSame(const std::string& body, const ReferenceDecoding& expected)
{
    std::string log;
    std::optional<std::string> messageText;
    {
        const OutputCapture capture;
        messageText = decodeAttributedBody(body);
        log = capture.text();
    }
    ASSERT_EQ(messageText, expected.messageText);
    ASSERT_EQ(log, joined(expected.lines));
}

void expectFatal(const std::string& body, const ReferenceDecoding& expected)
{
    const ForkedRun run = runForked([&] { (void)decodeAttributedBody(body); });
    ASSERT_EQ(run.signal, SIGABRT);
    ASSERT_EQ(run.output, joined(expected.lines));
    ASSERT_THAT(
        run.errors,
        testing::MatchesRegex("Orlimo stops at capture/BodyDecoding\\.cpp:[0-9]+: [^\n]+\n"));
}

TEST(BodyDecodingDifferential, AgreesWithReference)
{
    constexpr std::uint64_t seed = 7365021;
    RandomSource randomSource(seed);
    int messageText = 0;
    int nothing = 0;
    int fatal = 0;
    for (int input = 0; input < inputs; ++input) {
        const std::string body = randomBody(randomSource);
        const ReferenceDecoding expected = referenceDecoding(body);
        SCOPED_TRACE(
            "seed " + std::to_string(seed) + ", input " + std::to_string(input) + ": " +
            testing::PrintToString(body));
        if (!expected.isFatal) {
            ASSERT_NO_FATAL_FAILURE(expectSame(body, expected));
            ++(expected.messageText ? messageText : nothing);
        } else if (fatal < forkedInputs) {
            ASSERT_NO_FATAL_FAILURE(expectFatal(body, expected));
            ++fatal;
        }
    }
    // The inputs are useful only while all outcomes are common.
    EXPECT_GT(messageText, inputs / 4);
    EXPECT_GT(nothing, inputs / 20);
    EXPECT_EQ(fatal, forkedInputs);
}

} // namespace

} // namespace orlimo

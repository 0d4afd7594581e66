#include "capture/CodeExtraction.h"
#include "capture/Preferences.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/reference/RandomSource.h"
#include "tests/capture/reference/ReferenceCodeExtraction.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;

#if defined(ORLIMO_LONG_RUN) && !defined(ORLIMO_SANITIZED)
constexpr int inputs = 60'000;
#else
constexpr int inputs = 5'000;
#endif

/// The zeros of some scripts; the other digits follow each.
constexpr std::array<char32_t, 8> zeros{
    U'0', U'\u0660', U'\u06F0', U'\u0966', U'\u0E50', U'\uFF10', U'\U0001D7CE', U'\U0001E950'};

/// What may stand beside digits: characters that join them and characters that do not.
const std::vector<std::string>& neighbours()
{
    static const std::vector<std::string> choices{
        " ",
        "-",
        ".",
        "a",
        "é",
        "e\u0301",
        "\u0301",
        "\u20E3",
        "\uFE0F\u20E3",
        "\u200D",
        "\u200B",
        "\u0600",
        "\u06DD",
        "\r\n",
        "\r",
        "\n",
        "\0"s,
        "²",
        "①",
        "Ⅷ",
        "五",
        "\u0903",
        "\u1112\u1161\u11AB",
        "\U0001F1E9\U0001F1EA",
        "\U0001F1E9",
        "\U0001F468\u200D\U0001F469\u200D\U0001F467",
        "\U0001F44D\U0001F3FD",
        "\uFFFD",
        "\uFFFC",
        "\U000E0061",
    };
    return choices;
}

std::string runOfDigits(RandomSource& randomSource)
{
    const bool isMixed = randomSource.once(4);
    char32_t zero = randomSource.once(2) ? U'0' : zeros.at(randomSource.below(zeros.size()));
    const std::size_t length = 1 + randomSource.below(8);
    std::string run;
    for (std::size_t digit = 0; digit < length; ++digit) {
        if (isMixed) {
            zero = zeros.at(randomSource.below(zeros.size()));
        }
        run += referenceUtf8(zero + static_cast<char32_t>(randomSource.below(10)));
        if (randomSource.once(40)) {
            run += randomSource.oneOf(neighbours());
        }
    }
    return run;
}

std::string randomText(RandomSource& randomSource)
{
    std::string text;
    for (std::size_t parts = randomSource.below(9); parts > 0; --parts) {
        text += randomSource.once(2) ? runOfDigits(randomSource) : randomSource.oneOf(neighbours());
    }
    return text;
}

TEST(CodeExtractionDifferential, AgreesWithReference)
{
    constexpr std::uint64_t seed = 4829137;
    RandomSource randomSource(seed);
    int withCode = 0;
    for (int input = 0; input < inputs; ++input) {
        const std::string text = randomText(randomSource);
        const bool withFourDigits = randomSource.once(2);
        MemoryUserDefaults defaults;
        defaults.setBool(withFourDigits, preference::fourDigitInclude);

        std::string log;
        std::optional<std::string> code;
        {
            const OutputCapture capture;
            code = extractCode(text, defaults);
            log = capture.text();
        }
        const ReferenceCodes expected = referenceCodes(text, withFourDigits);
        SCOPED_TRACE(
            "seed " + std::to_string(seed) + ", input " + std::to_string(input) + ": " +
            testing::PrintToString(text) + (withFourDigits ? " with" : " without") +
            " four digits");
        ASSERT_EQ(code, expected.code);
        ASSERT_EQ(log, joined(expected.lines));
        withCode += code ? 1 : 0;
    }
    // The inputs are useful only while both outcomes are common.
    EXPECT_GT(withCode, inputs / 5);
    EXPECT_LT(withCode, inputs * 4 / 5);
}

} // namespace

} // namespace orlimo

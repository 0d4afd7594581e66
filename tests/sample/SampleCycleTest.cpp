#include "sample/SampleCycle.h"

#include "capture/BodyDecoding.h"
#include "capture/CodeExtraction.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace orlimo::sample {
namespace {

constexpr int wholeCycle = 12;

std::string hexadecimalBody(const SampleMessage& message)
{
    const auto& body = message.attributedBody.value();
    return asHexadecimal(std::string(body.begin(), body.end()));
}

TEST(SampleCycle, AnnouncedCodesAreThoseThatAreFoundAndNoneRepeats)
{
    MemoryUserDefaults defaults;
    defaults.setBool(true, "fourDigitInclude");
    SampleCycle cycle;
    std::set<std::string> seen;
    for (int number = 0; number < 500 * wholeCycle; ++number) {
        const auto [message, code, description] = cycle.next();
        EXPECT_NE(message.text.has_value(), message.attributedBody.has_value()) << description;
        EXPECT_TRUE(!code || seen.insert(*code).second) << *code;
        if (number < 10 * wholeCycle) {
            const OutputCapture log;
            const auto words =
                message.text ? message.text : decodeAttributedBody(hexadecimalBody(message));
            EXPECT_EQ(words ? extractCode(*words, defaults) : std::nullopt, code) << description;
        }
    }
}

TEST(SampleCycle, HoldsEveryKindOfMessage)
{
    SampleCycle cycle;
    std::set<std::size_t> codeSizes;
    std::set<std::string> kinds;
    for (int number = 0; number < wholeCycle; ++number) {
        const auto [message, code, description] = cycle.next();
        codeSizes.insert(code.value_or("").size());
        std::string kind = "text";
        if (message.attributedBody) {
            const bool isImmutable =
                hexadecimalBody(message).find("019484012B03EFBFBC") != std::string::npos;
            kind = isImmutable                            ? "attachment"
                   : message.attributedBody->size() > 400 ? "long body"
                                                          : "short body";
        }
        kinds.insert(kind + (code ? "" : " without code"));
    }
    // None, four, five and six digits, and six in scripts of two and of three bytes a digit.
    EXPECT_THAT(codeSizes, testing::ElementsAre(0, 4, 5, 6, 12, 18));
    EXPECT_THAT(
        kinds,
        testing::ElementsAre(
            "attachment without code",
            "long body",
            "short body",
            "short body without code",
            "text",
            "text without code"));
}

} // namespace
} // namespace orlimo::sample

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

TEST(SampleCycle, AnnouncedCodesOfEveryKindAreThoseThatAreFoundAndNoneRepeats)
{
    MemoryUserDefaults defaults;
    defaults.setBool(true, "fourDigitInclude");
    SampleCycle cycle;
    std::set<std::string> seen;
    std::set<std::string> kinds;
    for (int number = 0; number < 500 * wholeCycle; ++number) {
        const auto [message, code, description] = cycle.next();
        EXPECT_NE(message.text.has_value(), message.attributedBody.has_value()) << description;
        EXPECT_TRUE(!code || seen.insert(*code).second) << *code;
        if (number < 10 * wholeCycle) {
            const OutputCapture log;
            const auto words =
                message.text ? message.text : decodeAttributedBody(hexadecimalBody(message));
            EXPECT_EQ(words ? extractCode(*words, defaults) : std::nullopt, code) << description;
            const std::string kind = message.text                           ? "text"
                                     : !words                               ? "attachment"
                                     : message.attributedBody->size() > 400 ? "long body"
                                                                            : "body";
            kinds.insert(kind + " " + std::to_string(code.value_or("").size()));
        }
    }
    // By the bytes of the code: six digits have 12 or 18 in scripts of two and of three bytes each.
    EXPECT_THAT(
        kinds,
        testing::ElementsAre(
            "attachment 0",
            "body 0",
            "body 12",
            "body 5",
            "body 6",
            "long body 6",
            "text 0",
            "text 18",
            "text 4",
            "text 5",
            "text 6"));
}

} // namespace
} // namespace orlimo::sample

#include "sample/SampleCycle.h"

#include "capture/BodyDecoding.h"
#include "capture/CodeExtraction.h"
#include "platform/preferences/UserDefaults.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace orlimo::sample {
namespace {

/// Preferences as they are after the first start: everything on.
class AllEnabledDefaults final : public UserDefaults
{
public:
    [[nodiscard]] bool boolForKey(std::string_view /*key*/) const override { return true; }
    void setBool(bool /*value*/, std::string_view /*key*/) override {}
    [[nodiscard]] std::map<std::string, std::string> dictionaryRepresentation() const override
    {
        return {};
    }
};

std::string asHexadecimal(const std::vector<std::uint8_t>& bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text.push_back(digits[byte / 16]);
        text.push_back(digits[byte % 16]);
    }
    return text;
}

/// The code that the program finds in a message.
std::optional<std::string> foundCode(const SampleMessage& message)
{
    const OutputCapture log;
    const auto words = message.text
                           ? message.text
                           : decodeAttributedBody(asHexadecimal(message.attributedBody.value()));
    return words ? extractCode(*words, AllEnabledDefaults()) : std::nullopt;
}

std::vector<CycleMessage> firstMessages(int number)
{
    SampleCycle cycle;
    std::vector<CycleMessage> messages;
    messages.reserve(static_cast<std::size_t>(number));
    for (int index = 0; index < number; ++index) {
        messages.push_back(cycle.next());
    }
    return messages;
}

/// How many bytes of UTF-8 the code has, digits of other scripts included.
std::set<std::size_t> codeLengths(const std::vector<CycleMessage>& messages)
{
    std::set<std::size_t> lengths;
    for (const CycleMessage& each : messages) {
        lengths.insert(each.code.value_or("").size());
    }
    return lengths;
}

constexpr int wholeCycle = 12;

TEST(SampleCycle, AnnouncesExactlyTheCodeThatIsFound)
{
    for (const CycleMessage& each : firstMessages(10 * wholeCycle)) {
        EXPECT_EQ(foundCode(each.message), each.code) << each.description;
    }
}

TEST(SampleCycle, NoCodeComesTwice)
{
    std::set<std::string> seen;
    for (const CycleMessage& each : firstMessages(500 * wholeCycle)) {
        EXPECT_TRUE(!each.code || seen.insert(*each.code).second) << *each.code;
    }
}

TEST(SampleCycle, HoldsEveryKindOfMessage)
{
    const auto messages = firstMessages(wholeCycle);
    // None, four, five and six digits, and six in scripts of two and of three bytes a digit.
    EXPECT_THAT(codeLengths(messages), testing::ElementsAre(0, 4, 5, 6, 12, 18));

    const auto hold = [&messages](const auto& property) {
        return std::any_of(messages.begin(), messages.end(), property);
    };
    EXPECT_TRUE(hold([](const CycleMessage& each) { return each.message.text && each.code; }));
    EXPECT_TRUE(hold([](const CycleMessage& each) { return each.message.text && !each.code; }));
    EXPECT_TRUE(hold([](const CycleMessage& each) {
        return each.message.attributedBody && each.message.attributedBody->size() < 400 &&
               each.code;
    }));
    EXPECT_TRUE(hold([](const CycleMessage& each) {
        return each.message.attributedBody && each.message.attributedBody->size() > 400 &&
               each.code;
    }));
    EXPECT_TRUE(hold([](const CycleMessage& each) {
        const auto& body = each.message.attributedBody;
        return body && asHexadecimal(*body).find("019484012B03EFBFBC") != std::string::npos;
    })) << "an attachment in an immutable string";
}

TEST(SampleCycle, EveryMessageHasItsWordsInOnePlace)
{
    for (const CycleMessage& each : firstMessages(wholeCycle)) {
        EXPECT_NE(each.message.text.has_value(), each.message.attributedBody.has_value())
            << each.description;
    }
}

} // namespace
} // namespace orlimo::sample

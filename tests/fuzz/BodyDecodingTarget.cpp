#include "capture/BodyDecoding.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/reference/ReferenceBodyDecoding.h"
#include "tests/capture/reference/ReferenceUnicode.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/ProgramOutcomes.h"

#include <optional>
#include <string>
#include <variant>

namespace orlimo {

namespace {

/// The first byte says what the others are: any text in place of the hexadecimal one, or the body's
/// own bytes, from which the store makes that.
std::string hexadecimalText(std::string_view input)
{
    if (input.empty()) {
        return {};
    }
    const std::string_view rest = input.substr(1);
    return input.front() == 't' ? referenceRepaired(rest) : asHexadecimal(rest);
}

std::string printed(const ReferenceDecoding& decoding)
{
    if (std::holds_alternative<ReferenceDecoding::Fatal>(decoding.outcome)) {
        return "stop";
    }
    const auto* const words = std::get_if<ReferenceDecoding::MessageText>(&decoding.outcome);
    return words != nullptr ? "words " + words->text : "nothing";
}

std::string outcomeOf(const std::string& text)
{
    try {
        const auto words = decodeAttributedBody(text);
        return words ? "words " + *words : "nothing";
    } catch (const FatalStopException&) {
        return "stop";
    }
}

} // namespace

Finding checkInput(std::string_view input)
{
    const std::string text = hexadecimalText(input);
    logged::clear();
    const std::string outcome = outcomeOf(text);
    const ReferenceDecoding expected = referenceDecoding(text);
    if (auto finding = mismatch("outcome", outcome, printed(expected))) {
        return finding;
    }
    return mismatch("log", logged::lines(), expected.lines);
}

} // namespace orlimo
